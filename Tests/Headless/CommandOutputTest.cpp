// What cannot be printed is told; a reader that has had enough is not an error.
#include "Headless/CommandFixture.h"

namespace zelkon {
namespace {

using CommandOutput = CommandFixture;

TEST_F(CommandOutput, IsToldWhereTheDiskIsFull) {
  for (const char* words : {"--help", "--version", "render --help", "play pie.json"}) {
    const Outcome outcome = shell("\"$Z\" " + std::string(words) + " >/dev/full");
    EXPECT_EQ(outcome.status, 1) << words;
    EXPECT_EQ(outcome.errors, "zelkon-plot: standard output: cannot be written: No space left on device\n") << words;
  }
}

TEST_F(CommandOutput, IsToldWhereStandardOutputIsClosed) {
  for (const char* words : {"--help", "--version", "play pie.json"}) {
    const Outcome outcome = shell("\"$Z\" " + std::string(words) + " >&-");
    EXPECT_EQ(outcome.status, 1) << words;
    EXPECT_EQ(outcome.errors, "zelkon-plot: standard output: cannot be written: Bad file descriptor\n") << words;
  }
}

TEST_F(CommandOutput, AFileNeverComesInThePlaceOfAClosedStream) {
  writeSteps("steps.json", R"({"call": "SliceColorAtIndex", "arguments": [1, 3, {}]}, {"layers": "layers.json"})");
  EXPECT_EQ(shell("\"$Z\" play steps.json").status, 0);
  const std::string layers = read("layers.json");
  EXPECT_EQ(shell("\"$Z\" play steps.json <&- >&- 2>&-").status, 1);
  EXPECT_EQ(read("layers.json"), layers);
  EXPECT_EQ(shell("\"$Z\" play steps.json 2>&- <&-").status, 0);
  EXPECT_EQ(shell("\"$Z\" render pie.json -o a.png >&- <&- 2>&-").status, 0) << "it has nothing to print";
  EXPECT_EQ(read("a.png").substr(1, 3), "PNG");
  EXPECT_EQ(shell("\"$Z\" play - <&-").errors, "zelkon-plot: standard input: cannot be read: Bad file descriptor\n");
}

TEST_F(CommandOutput, AReaderThatHasHadEnoughIsNoError) {
  std::string calls = R"({"wait": 0.1})";
  for (int i = 0; i < 3000; ++i) calls += R"(, {"call": "SliceColorAtIndex", "arguments": [1, 3, {}]})";
  writeSteps("steps.json", calls + R"(, {"snapshot": "a.png"})");
  for (const char* words : {"--help", "play pie.json", "play steps.json"}) {
    const Outcome outcome =
        shell("{ \"$Z\" " + std::string(words) + "; echo $? >status; } | sleep 0.01; cat status; rm status");
    EXPECT_EQ(outcome.output, "0\n") << words;
    EXPECT_EQ(outcome.errors, "") << words;
  }
  const Outcome ignored = shell("trap '' PIPE; { \"$Z\" play steps.json; echo $? >&2; } | head -n 1 >/dev/null");
  EXPECT_EQ(ignored.errors, "0\n");
  EXPECT_TRUE(exists("a.png"));
}

}  // namespace
}  // namespace zelkon
