// The command as a shell sees it: exit statuses, the one error line, and no half-written files.
#include "Headless/CommandFixture.h"

namespace zelkon {
namespace {

using CommandTest = CommandFixture;

TEST_F(CommandTest, RendersEveryFormat) {
  for (const char* name : {"pie.png", "pie.svg", "pie.pdf"}) {
    EXPECT_EQ(run(std::string("render pie.json -o ") + name).status, 0) << name;
    EXPECT_TRUE(exists(name)) << name;
  }
}

TEST_F(CommandTest, RendersSeveralFilesInOneProcess) {
  EXPECT_EQ(run("render pie.json pie.json -o a.png -o b.svg --scale 2").status, 0);
  EXPECT_TRUE(exists("a.png"));
  EXPECT_TRUE(exists("b.svg"));
}

TEST_F(CommandTest, StopsAtTheFirstOfSeveralFilesThatFails) {
  write("broken.json", "{");
  const Outcome unreadable = run("render pie.json broken.json pie.json -o a.png -o b.png -o c.png");
  EXPECT_EQ(unreadable.status, 1);
  EXPECT_EQ(std::count(unreadable.errors.begin(), unreadable.errors.end(), '\n'), 1) << unreadable.errors;
  EXPECT_NE(unreadable.errors.find("broken.json"), std::string::npos) << unreadable.errors;
  EXPECT_TRUE(exists("a.png"));
  EXPECT_EQ(files(), 3u);
}

TEST_F(CommandTest, APictureThatCannotBeWrittenComesBeforeAFileThatCannotBeRead) {
  write("broken.json", "{");
  const Outcome outcome = run("render pie.json broken.json -o no/a.png -o b.png");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
  EXPECT_NE(outcome.errors.find("no/a.png"), std::string::npos) << outcome.errors;
  EXPECT_EQ(files(), 2u);
}

TEST_F(CommandTest, ReadsStandardInput) {
  EXPECT_EQ(run("render - -o in.png", "cat pie.json | ").status, 0);
  EXPECT_TRUE(exists("in.png"));
}

TEST_F(CommandTest, PlayPrintsTheTranscript) {
  const Outcome outcome = run("play pie.json");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.output, "0.250 page SpendingTrendsHaveDisplayed()\n");
}

TEST_F(CommandTest, MalformedJSON) {
  write("bad.json", "{\"plot\": \"pie\",,}");
  const Outcome outcome = run("render bad.json -o bad.png");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "zelkon-plot: bad.json: line 1, column 16: this is not JSON\n");
  EXPECT_FALSE(exists("bad.png"));
}

TEST_F(CommandTest, MissingKey) {
  write("bad.json", R"({"plot": "pie"})");
  const Outcome outcome = run("render bad.json -o bad.png");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "zelkon-plot: bad.json: /: \"data\" is missing\n");
  EXPECT_FALSE(exists("bad.png"));
}

TEST_F(CommandTest, UnknownPlot) {
  write("bad.json", R"({"plot": "donut", "data": []})");
  const Outcome outcome = run("render bad.json -o bad.png");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "zelkon-plot: bad.json: /plot: Unknown plotName parameter \"donut\"\n");
  EXPECT_FALSE(exists("bad.png"));
}

TEST_F(CommandTest, UnreadableInput) {
  const Outcome outcome = run("render absent.json -o a.png");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "zelkon-plot: absent.json: cannot be read: No such file or directory\n");
}

TEST_F(CommandTest, UnwritableOutput) {
  const size_t before = files();
  const Outcome outcome = run("render pie.json -o absent/pie.png");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "zelkon-plot: absent/pie.png: cannot be written: No such file or directory\n");
  EXPECT_EQ(files(), before);
}

TEST_F(CommandTest, WrongUsage) {
  for (const char* arguments :
       {"", "draw pie.json", "render pie.json", "render pie.json -o pie.gif", "render pie.json -o a.png -o b.png",
        "render pie.json -o a.png --size wide", "render pie.json -o a.png --scale 0"}) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 2) << arguments;
    EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << arguments << outcome.errors;
  }
  EXPECT_EQ(files(), 1u);
}

TEST_F(CommandTest, HelpAndVersion) {
  EXPECT_EQ(run("--help").status, 0);
  const Outcome version = run("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.output.substr(0, 12), "zelkon-plot ");
}

}  // namespace
}  // namespace zelkon
