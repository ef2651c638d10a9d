// Every message is one printable line that names the file and the place, however strange what it speaks of.
#include <nlohmann/json.hpp>

#include "Headless/CommandFixture.h"

namespace zelkon {
namespace {

using nlohmann::json;

// Colours for a terminal, a line end, a bell, an arrow that turns the line round, and no end.
const std::string kStrange = "\x1b[31m\n\a\xe2\x80\xae" + std::string(100000, 'x');
constexpr const char* kStrangeAsShown = R"(\x1b[31m\n\x07\u202exxxxxxxxx)";

class CommandMessages : public CommandFixture {
 protected:
  // A shell's word that stands for the text.
  static std::string word(const std::string& text) { return "'" + text + "'"; }
  static void expectOneShortLine(const Outcome& outcome, int status) {
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(outcome.errorLines(), 1) << outcome.errors.substr(0, 500);
    EXPECT_EQ(outcome.errors.find("zelkon-plot: "), 0u) << outcome.errors.substr(0, 500);
    EXPECT_LT(outcome.errors.size(), 600u);
    EXPECT_EQ(outcome.errors.find("[json."), std::string::npos) << outcome.errors.substr(0, 500);
    for (size_t i = 0; i + 1 < outcome.errors.size(); ++i)
      ASSERT_TRUE(outcome.errors[i] >= ' ' || outcome.errors[i] < 0) << "a control at " << i;
  }
  // Renders the scenario and looks at the message's place.
  void expectMessage(const std::string& text, const std::string& beginning) {
    SCOPED_TRACE(beginning);
    write("bad.json", text);
    const Outcome outcome = run("render bad.json -o bad.png");
    expectOneShortLine(outcome, 1);
    EXPECT_EQ(outcome.errors.substr(0, 23 + beginning.size()), "zelkon-plot: bad.json: " + beginning);
    EXPECT_FALSE(exists("bad.png"));
  }
  void expectMessage(const json& scenario, const std::string& beginning) { expectMessage(scenario.dump(), beginning); }
  static json withStep(const json& step) { return {{"plot", "pie"}, {"steps", {step}}}; }
};

TEST_F(CommandMessages, ShowWhatTheFileSaysAsOnePrintableLine) {
  expectMessage(json{{"plot", kStrange}, {"data", json::array()}},
                "/plot: Unknown plotName parameter \"" + std::string(kStrangeAsShown));
  expectMessage(json{{"plot", "pie"}, {"data", json::array()}, {"locale", kStrange}},
                "/locale: a locale such as de_DE is expected, not \"" + std::string(kStrangeAsShown));
  expectMessage(json{{"plot", "pie"}, {"data", json::array()}, {kStrange, 1}},
                "/: there is no key \"" + std::string(kStrangeAsShown));
  expectMessage(withStep({{kStrange, 1}}), "/steps/0: no known step (call, ");
  expectMessage(withStep({{"wait", 1}, {kStrange, 1}}), "/steps/0: there is no key \"");
  expectMessage(withStep({{"call", kStrange}}), "/steps/0/call: a chart has no method \"");
  expectMessage(withStep({{"mouse", kStrange}, {"at", {1, 2}}}), "/steps/0/mouse: moved, down, entered or exited is ");
  expectMessage(withStep({{"lifecycle", kStrange}}), "/steps/0/lifecycle: stop or destroy is expected, not \"");
  expectMessage(withStep({{"snapshot", kStrange + "/"}}), "/steps/0/snapshot: a name below the output folder is ");
  expectMessage(withStep({{"layers", "/" + kStrange}}), "/steps/0/layers: a name below the output folder is ");
  expectMessage(withStep({{"print", kStrange}}), "/steps/0/print: a name that ends in .png, .svg or .pdf is ");
  write("play.json", withStep({{"snapshot", kStrange}}).dump());
  expectOneShortLine(run("play play.json"), 1);
}

TEST_F(CommandMessages, OfJSONThatIsNoneGiveLineAndColumn) {
  expectMessage(std::string("{\"plot\": \"pie\", \"data\": []}\n\n  }"), "line 3, column 3: this is not JSON\n");
  expectMessage(std::string("{\"plot\": \"\xff\"}"), "line 1, column 11: this is not JSON\n");
  expectMessage(std::string(), "line 1, column 1: this is not JSON\n");
  expectMessage(std::string("\x1b[31m"), "line 1, column 1: this is not JSON\n");
}

TEST_F(CommandMessages, ANulDoesNotEndTheFile) {
  const std::string whole = R"({"plot": "pie", "data": []})";
  expectMessage(whole + std::string(1, '\0'), "line 1, column 28: this is not JSON\n");
  expectMessage(whole + "\n" + std::string(1, '\0') + "garbage", "line 2, column 1: this is not JSON\n");
}

TEST_F(CommandMessages, ANumberBeyondAllBoundsIsToldWithItsPlace) {
  expectMessage(std::string(R"({"plot": "pie", "data": [{"key": "a", "value": 1e999}]})"), "/data/0/value: ");
  expectMessage(std::string(R"({"plot": "pie", "size": [1, -1e999], "data": []})"), "/size/1: ");
}

TEST_F(CommandMessages, UnknownKeysAndMethodsAreToldWithWhatMayBeMeant) {
  expectMessage(std::string(R"({"plto": "pie", "data": []})"),
                "/: there is no key \"plto\" here; did you mean \"plot\"?\n");
  expectMessage(std::string(R"({"plot": "pie", "data": [], "comment": 1})"), "/: there is no key \"comment\" here\n");
  expectMessage(withStep({{"call", "SetPlotdata"}, {"arguments", json::array()}}),
                "/steps/0/call: a chart has no method \"SetPlotdata\"; did you mean \"SetPlotData\"?\n");
  expectMessage(withStep({{"call", "destroy"}}), "/steps/0/call: a chart has no method \"destroy\"\n");
  expectMessage(withStep({{"call", "SetPlotData"}, {"argument", json::array()}}),
                "/steps/0: there is no key \"argument\" here; did you mean \"arguments\"?\n");
  expectMessage(withStep({{"mouse", "exited"}, {"wait", 1}}),
                "/steps/0: a step does one thing, not \"wait\" and \"mouse\"\n");
  expectMessage(
      withStep({{"Wait", 1}}),
      "/steps/0: no known step (call, wait, mouse, snapshot, layers, print, frame, resize, scroll, lifecycle); "
      "did you mean \"wait\"?\n");
  expectMessage(json{{"plot", "pie"}, {"steps", json::array()}, {"data", json::array()}}, "/data: beside \"steps\" ");
}

TEST_F(CommandMessages, ALocaleThatThereIsNotIsRefused) {
  for (const char* name : {"xx", "german", "", "de_XY", "de DE", "C"}) {
    expectMessage(json{{"plot", "pie"}, {"data", json::array()}, {"locale", name}},
                  "/locale: a locale such as de_DE is expected, not \"" + std::string(name) + "\"\n");
    expectOneShortLine(run("render pie.json -o a.png --locale " + word(name)), 2);
  }
  for (const char* name : {"de", "de_DE", "pt-BR", "zh_Hant_TW", "es_419", "he_IL@calendar=hebrew", "en_US_POSIX"})
    EXPECT_EQ(run("render pie.json -o a.png --locale " + word(name)).status, 0) << name;
}

TEST_F(CommandMessages, ShowNamesOfFilesAsOnePrintableLine) {
  expectOneShortLine(run("render " + word(kStrange) + " -o a.png"), 1);
  expectOneShortLine(run("play " + word(kStrange.substr(0, 40))), 1);
  expectOneShortLine(run("play pie.json --out " + word("pie.json/" + kStrange)), 1);
  expectOneShortLine(run("render pie.json -o " + word(kStrange + ".png")), 1);
  expectOneShortLine(run("render '' -o a.png"), 1);
  EXPECT_EQ(run("render 'a\xff\n.json' -o a.png").errors,
            "zelkon-plot: a\\xff\\n.json: cannot be read: No such file or directory\n");
  EXPECT_EQ(run("render Käufe-支出.json -o a.png").errors,
            "zelkon-plot: Käufe-支出.json: cannot be read: No such file or directory\n");
}

TEST_F(CommandMessages, ShowWordsOfTheCommandLineAsOnePrintableLine) {
  const std::string strange = word(kStrange);
  for (const std::string& words :
       {strange, "--" + strange, "render pie.json -o " + strange, "render pie.json -o a.png --size " + strange,
        "render pie.json -o a.png --scale " + strange, "render pie.json -o a.png --locale " + strange,
        "render pie.json -o a.png --" + strange, "play pie.json " + strange, "play pie.json --max-entries " + strange})
    expectOneShortLine(run(words), 2);
}

TEST_F(CommandMessages, OnlyPlainNumbersAreNumbers) {
  for (const char* number : {"nan", "inf", "infinity", "-inf", "0x10", "' 1'", "'1 '", "1e", "1.2.3", "1,5", "+1",
                             "--1", "1f", "''", "1e999", "0", "-1"}) {
    const std::string text = number;
    expectOneShortLine(run("render pie.json -o a.png --scale=" + text), 2);
    expectOneShortLine(run("render pie.json -o a.png --size=" + text + "x10"), 2);
    expectOneShortLine(run("render pie.json -o a.png --size=10x" + text), 2);
  }
  for (const char* number : {"0.04", "16.1"})
    expectOneShortLine(run(std::string("render pie.json -o a.png --scale ") + number), 2);
  for (const char* number : {"1", "1.5", ".5", "2.", "1e0", "1E+0", "0.05", "16"})
    EXPECT_EQ(run(std::string("render pie.json -o a.png --scale ") + number).status, 0) << number;
  for (const char* size : {"10x10", "10.5x.5", "1e2x1e2"})
    EXPECT_EQ(run(std::string("render pie.json -o a.png --size ") + size).status, 0) << size;
  for (const char* size : {"10", "10x", "32001x10", "x10", "10x10x10", "10X10", "0x10x0x10"})
    expectOneShortLine(run(std::string("render pie.json -o a.png --size ") + size), 2);
}

}  // namespace
}  // namespace zelkon
