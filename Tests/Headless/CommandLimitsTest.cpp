// What a file may hold at most is stated, told with its place, and can be raised.
#include "Headless/CommandFixture.h"

namespace zelkon {
namespace {

class CommandLimits : public CommandFixture {
 protected:
  void expectMessage(const Outcome& outcome, const std::string& message) {
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "zelkon-plot: " + message + "\n");
  }
  static std::string repeated(const std::string& text, size_t count) {
    std::string result = text;
    for (size_t i = 1; i < count; ++i) result += "," + text;
    return result;
  }
};

TEST_F(CommandLimits, EntriesOfOneArray) {
  const size_t most = 1048576;
  write("most.json", R"({"plot": "pie", "data": [)" + repeated("0", most + 1) + "]}");
  expectMessage(run("render most.json -o a.png"), "most.json: /data: more than 1048576 entries");
  write("few.json", R"({"plot": "pie", "data": [)" + repeated(R"({"key": "a", "value": 1})", 4) + "]}");
  expectMessage(run("render few.json -o a.png --max-entries 3"), "few.json: /data: more than 3 entries");
  EXPECT_EQ(run("render few.json -o a.png --max-entries 4").status, 0);
  writeSteps("steps.json", R"({"wait": 0}, {"call": "SetPlotData", "arguments": [[1, 2, 3, 4]]})");
  expectMessage(run("play steps.json --max-entries 3"), "steps.json: /steps/1/arguments/0: more than 3 entries");
  writeSteps("steps.json", repeated(R"({"wait": 0})", 4));
  expectMessage(run("play steps.json --max-entries 3"), "steps.json: /steps: more than 3 entries");
}

TEST_F(CommandLimits, ReadingStopsAtTheFirstEntryTooMany) {
  // What follows is no JSON, and is not looked at.
  write("few.json", R"({"plot": "pie", "data": [1, 2, 3, 4, nonsense)");
  expectMessage(run("render few.json -o a.png --max-entries 3"), "few.json: /data: more than 3 entries");
}

TEST_F(CommandLimits, PixelsOfOnePicture) {
  expectMessage(run("render pie.json -o a.png --size 20000x20000"),
                "pie.json: --size: a picture of 20000 x 20000 pixels is larger than 100000000 pixels in all");
  expectMessage(run("render pie.json -o a.png --scale 2 --max-pixels 239999"),
                "pie.json: /size: a picture of 600 x 400 pixels is larger than 239999 pixels in all");
  EXPECT_EQ(run("render pie.json -o a.png --scale 2 --max-pixels 240000").status, 0);
  EXPECT_EQ(run("render pie.json -o a.svg --scale 2 --max-pixels 1").status, 0) << "it has no pixels";
}

TEST_F(CommandLimits, PixelsOfThePicturesOfSteps) {
  writeSteps("steps.json", R"({"snapshot": "a.png"}, {"frame": [400, 200]}, {"snapshot": "b.png"})");
  expectMessage(run("play steps.json --max-pixels 70000"),
                "steps.json: /steps/1/frame: a picture of 400 x 200 pixels is larger than 70000 pixels in all");
  EXPECT_FALSE(exists("a.png"));
  writeSteps("steps.json", R"({"resize": [400, 200]}, {"print": "a.pdf"}, {"resize": [10, 10]}, {"print": "b.png"})");
  EXPECT_EQ(run("play steps.json --max-pixels 70000").status, 0);
  EXPECT_TRUE(exists("b.png"));
}

TEST_F(CommandLimits, SecondsThatTheStepsWaitInAll) {
  writeSteps("steps.json", R"({"wait": 3600}, {"mouse": "exited"}, {"wait": 0.5})");
  expectMessage(run("play steps.json"), "steps.json: /steps/2/wait: the steps wait longer than 3600 seconds in all");
  writeSteps("steps.json", R"({"wait": 1}, {"wait": 1.5})");
  expectMessage(run("play steps.json --max-wait 2.25"),
                "steps.json: /steps/1/wait: the steps wait longer than 2.25 seconds in all");
  EXPECT_EQ(run("play steps.json --max-wait 2.5").status, 0);
  writeSteps("steps.json", R"({"wait": 3601})");
  expectMessage(run("play steps.json"), "steps.json: /steps/0/wait: seconds from 0 to 3600 are expected");
}

TEST_F(CommandLimits, BytesOfOneFile) {
  const std::string size = std::to_string(read("pie.json").size());
  EXPECT_EQ(run("render pie.json -o a.png --max-input " + size).status, 0);
  EXPECT_EQ(run("render - -o a.png --max-input " + size, "cat pie.json | ").status, 0);
  expectMessage(run("render pie.json -o b.png --max-input 10"), "pie.json: there are more than 10 bytes");
  expectMessage(run("render - -o b.png --max-input 10", "cat pie.json | "),
                "standard input: there are more than 10 bytes");
  expectMessage(run("render /dev/zero -o b.png --max-input 1000000"), "/dev/zero: there are more than 1000000 bytes");
}

TEST_F(CommandLimits, NestingNeverUsesUpTheStack) {
  for (const char* opening : {"[", R"({"a":)"}) {
    std::string nested;
    for (int i = 0; i < 1000000; ++i) nested += opening;
    write("deep.json", R"({"plot": "pie", "data": [)" + nested);
    const Outcome outcome = shell("ulimit -s 512; \"$Z\" render deep.json -o a.png");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.errors.find("values nested more than 64 deep\n"), std::string::npos) << outcome.errors;
    EXPECT_EQ(outcome.errors.find("zelkon-plot: deep.json: /data"), 0u) << outcome.errors;
    EXPECT_LT(outcome.errors.size(), 200u);
  }
}

TEST_F(CommandLimits, AreNumbersAboveNothing) {
  for (const char* words :
       {"--max-entries 0", "--max-entries 1.5", "--max-pixels 0", "--max-pixels nan", "--max-wait -1", "--max-wait inf",
        "--max-input 0", "--max-input 1e99", "--max-input 0x10"}) {
    const Outcome outcome = run(std::string("render pie.json -o a.png ") + words);
    EXPECT_EQ(outcome.status, 2) << words;
    EXPECT_EQ(outcome.errorLines(), 1) << outcome.errors;
  }
}

TEST_F(CommandLimits, StandInTheHelp) {
  for (const char* command : {"render", "play"}) {
    const std::string help = run(std::string(command) + " --help").output;
    for (const char* option : {"--max-entries", "--max-pixels", "--max-wait", "--max-input"})
      EXPECT_NE(help.find(option), std::string::npos) << option;
    for (const char* bound : {"1048576", "100000000", "3600", "268435456"})
      EXPECT_NE(help.find(bound), std::string::npos) << bound;
  }
}

}  // namespace
}  // namespace zelkon
