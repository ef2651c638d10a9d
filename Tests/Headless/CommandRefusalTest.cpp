// A picture is drawn of all that the file says or not at all; a page that is played goes on.
#include "Headless/CommandFixture.h"
#include "Support/PicturePixels.h"

namespace zelkon {
namespace {

class CommandRefusal : public CommandFixture {
 protected:
  // Renders in every format and looks at the message behind the name of the file.
  void expectRefused(const std::string& scenario, const std::string& place, const std::string& reason) {
    SCOPED_TRACE(scenario.substr(0, 300));
    write("bad.json", scenario);
    for (const char* picture : {"bad.png", "bad.svg", "bad.pdf"}) {
      const Outcome outcome = run(std::string("render bad.json -o ") + picture);
      EXPECT_EQ(outcome.status, 1);
      EXPECT_EQ(outcome.errorLines(), 1) << outcome.errors;
      EXPECT_EQ(outcome.errors.find("zelkon-plot: bad.json: " + place + ": the chart does not take this: "), 0u)
          << outcome.errors;
      EXPECT_NE(outcome.errors.find(reason), std::string::npos) << outcome.errors;
      EXPECT_FALSE(exists(picture));
    }
    const Outcome played = run("play bad.json");
    EXPECT_EQ(played.status, 0) << played.errors;
    EXPECT_NE(played.output.find(" log "), std::string::npos) << played.output;
    EXPECT_NE(played.output.find(reason), std::string::npos) << played.output;
  }
  static std::string overTime(const std::string& rest) {
    return R"({"plot": "spendingOverTimeBarOrLine", "size": [300, 200], )" + rest + "}";
  }
  static std::string entry(const std::string& amount) {
    return R"({"humanX": "May", "humanY": "$3", "y": )" + amount + "}";
  }
};

TEST_F(CommandRefusal, OfAnAmountThatIsNoNumber) {
  expectRefused(overTime("\"data\": [" + entry("\"n/a\"") + "]"), "/data", "didScanYValue");
  expectRefused(R"({"plot": "pie", "data": [{"key": "Rent", "value": "12"}]})", "/data", "decimalValue");
  expectRefused(R"({"plot": "pie", "data": [{"key": "Rent", "value": [1]}]})", "/data", "decimalValue");
}

TEST_F(CommandRefusal, OfOptionsThatAreNone) {
  expectRefused(overTime("\"options\": [3], \"data\": [" + entry("\"3\"") + "]"), "/options", "valueForUndefinedKey");
}

TEST_F(CommandRefusal, OfAChartThatHasNoRoomForItsLabels) {
  expectRefused(overTime(R"("options": [{"key": "CurrencyID", "value": ")" + std::string(1000, 'X') + R"("}],
                            "data": [)" +
                         entry("\"3\"") + "]"),
                "/data", "too many bars");
}

TEST_F(CommandRefusal, NamesTheStep) {
  expectRefused(overTime("\"steps\": [{\"wait\": 0}, {\"call\": \"SetPlotData\", \"arguments\": [[" + entry("\"n/a\"") +
                         "]]}, {\"wait\": 1}]"),
                "/steps/1", "didScanYValue");
  expectRefused(R"({"plot": "pie", "steps": [{"call": "SliceColorAtIndex", "arguments": []}]})", "/steps/0",
                "integerValue");
}

TEST_F(CommandRefusal, OfAFrameThatHasNoRoom) {
  expectRefused(R"({"plot": "spendingOverTimeBarOrLine", "size": [0, 0], "steps": [
      {"call": "SetPlotOptions", "arguments": [[{"key": "CurrencyID", "value": ")" +
                    std::string(1000, 'X') + R"("}]]}, {"call": "SetPlotData", "arguments": [[)" + entry("\"3\"") +
                    R"(]]}, {"frame": [300, 200]}, {"wait": 1}]})",
                "/steps/2", "too many bars");
}

TEST_F(CommandRefusal, LeavesThePicturesBeforeIt) {
  write("bad.json", overTime("\"data\": [" + entry("\"n/a\"") + "]"));
  EXPECT_EQ(run("render pie.json bad.json -o a.png -o b.png").status, 1);
  EXPECT_TRUE(exists("a.png"));
  EXPECT_FALSE(exists("b.png"));
}

TEST_F(CommandRefusal, NothingToShowIsNoRefusal) {
  for (const char* plot : {"pie", "spendingOverTimeBarOrLine"}) {
    write("empty.json", R"({"plot": ")" + std::string(plot) + R"(", "options": [], "data": []})");
    EXPECT_EQ(run("render empty.json -o empty.png").status, 0);
  }
}

TEST_F(CommandRefusal, WhatTheLastStepCallsIsDrawn) {
  const std::string call = R"({"call": "SetPlotData", "arguments": [[{"key": "Rent", "value": 3}]]})";
  writeSteps("steps.json", call);
  writeSteps("waiting.json", call + R"(, {"wait": 0})");
  EXPECT_EQ(run("render steps.json waiting.json -o a.png -o b.png").status, 0);
  writeSteps("snapshot.json", call + R"(, {"snapshot": "c.png"})");
  EXPECT_EQ(run("play snapshot.json").status, 0);
  EXPECT_TRUE(showTheSame(read("a.png"), read("c.png")));
}

}  // namespace
}  // namespace zelkon
