// What the libraries cannot have ends the command with a line of its own, not with their signal.
#include "Headless/CommandFixture.h"
#include "Support/PicturePixels.h"

#ifdef __SANITIZE_ADDRESS__
constexpr bool kTakesAllMemory = true;
#else
constexpr bool kTakesAllMemory = false;
#endif

namespace zelkon {
namespace {

class CommandResources : public CommandFixture {
 protected:
  CommandResources() {
    write("bars.json", R"({"plot": "spendingOverTimeBarOrLine", "size": [300, 200],
        "options": [{"key": "CurrencyID", "value": "USD"}], "data": [
        {"humanX": "May", "humanY": "$3", "y": "3"}, {"humanX": "June", "humanY": "$5", "y": "5"}]})");
    write("none.conf", R"(<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd"><fontconfig>
        <dir>)" + (folder_ / "nothing").string() +
                           "</dir></fontconfig>");
  }
  // Both charts, drawn one after another, and a scenario that is played.
  void expectMessage(const std::string& variables, const std::string& message) {
    writeSteps("steps.json", R"({"snapshot": "s.png"})");
    for (const char* words : {"render bars.json -o a.png", "render pie.json -o a.png", "render pie.json -o a.svg",
                              "render pie.json bars.json -o a.png -o b.png", "play steps.json"}) {
      const Outcome outcome = run(words, variables + " ");
      EXPECT_EQ(outcome.status, 1) << words;
      EXPECT_EQ(outcome.errorLines(), 1) << outcome.errors;
      EXPECT_EQ(outcome.errors.find("zelkon-plot: "), 0u) << outcome.errors;
      EXPECT_NE(outcome.errors.find(message), std::string::npos) << outcome.errors;
      EXPECT_FALSE(exists("a.png") || exists("a.svg") || exists("s.png")) << words;
    }
  }
  // Whether the command drew or said in one line why not.
  void expectPictureOrLine(const Outcome& outcome, const std::string& circumstances) {
    SCOPED_TRACE(circumstances + ": " + outcome.errors);
    // The loader itself may not get the memory that it needs.
    if (outcome.status == 127) return;
    EXPECT_TRUE(outcome.status == 0 || outcome.status == 1) << outcome.status;
    EXPECT_EQ(outcome.errorLines(), outcome.status);
    if (outcome.status == 1) {
      EXPECT_EQ(outcome.errors.find("zelkon-plot: "), 0u);
    }
  }
};

TEST_F(CommandResources, FontsThatThereAreNot) {
  expectMessage("FONTCONFIG_FILE=\"$PWD/none.conf\"", "fontconfig finds no fonts\n");
  expectMessage("FONTCONFIG_FILE=/nowhere/fonts.conf",
                "fontconfig has no configuration: FONTCONFIG_FILE is \"/nowhere/fonts.conf\"\n");
  expectMessage("FONTCONFIG_FILE=nowhere.conf",
                "fontconfig has no configuration: FONTCONFIG_FILE is \"nowhere.conf\"\n");
}

TEST_F(CommandResources, AConfigurationOfOnesOwnIsUsed) {
  shell("mkdir own && echo '<?xml version=\"1.0\"?><fontconfig><dir>/usr/share/fonts</dir></fontconfig>' >own/my.conf");
  EXPECT_EQ(run("render bars.json -o a.png", "FONTCONFIG_FILE=\"$PWD/own/my.conf\" ").errors, "");
  EXPECT_EQ(run("render bars.json -o b.png", "FONTCONFIG_PATH=/nowhere:\"$PWD/own\" FONTCONFIG_FILE=my.conf ").errors,
            "");
  EXPECT_TRUE(showTheSame(read("a.png"), read("b.png")));
}

TEST_F(CommandResources, ABackendThatPangoDoesNotHave) {
  write("empty.json", R"({"plot": "pie", "data": []})");
  const Outcome outcome = run("render empty.json -o a.png", "PANGOCAIRO_BACKEND=nonsense ");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.errors, "zelkon-plot: Pango has no backend \"nonsense\", which PANGOCAIRO_BACKEND asks for\n");
  for (const char* backend : {"", "fc", "fontconfig"})
    EXPECT_EQ(run("render empty.json -o a.png", std::string("PANGOCAIRO_BACKEND=") + backend + " ").errors, "");
}

TEST_F(CommandResources, Threads) {
  if (kTakesAllMemory) GTEST_SKIP() << "the sanitizer must be loaded first";
  expectMessage("THREADS=0 LD_PRELOAD='" ZELKON_FEW_THREADS "'", "no thread can be started: ");
  for (int threads = 1; threads < 16; ++threads) {
    const std::string few = "THREADS=" + std::to_string(threads) + " LD_PRELOAD='" ZELKON_FEW_THREADS "' ";
    expectPictureOrLine(run("render bars.json pie.json pie.json -o a.png -o b.png -o c.png", few), few);
  }
}

TEST_F(CommandResources, PicturesAreWrittenWithoutAThreadOfTheirOwn) {
  if (kTakesAllMemory) GTEST_SKIP() << "the sanitizer must be loaded first";
  // As soon as there are threads enough for Pango, which cannot do without, the pictures are written.
  for (int threads = 1; threads < 16; ++threads) {
    SCOPED_TRACE(threads);
    const Outcome outcome = run("render pie.json pie.json pie.json -o a.png -o b.png -o c.png",
                                "THREADS=" + std::to_string(threads) + " LD_PRELOAD='" ZELKON_FEW_THREADS "' ");
    EXPECT_EQ(outcome.status, outcome.errors.find("'[pango]") == std::string::npos ? 0 : 1) << outcome.errors;
    if (outcome.status == 0) {
      EXPECT_TRUE(showTheSame(read("a.png"), read("c.png")));
    }
  }
}

TEST_F(CommandResources, Memory) {
  if (kTakesAllMemory) GTEST_SKIP() << "the sanitizer takes all memory";
  const Outcome least = shell("ulimit -v 150000; \"$Z\" render pie.json -o a.png");
  EXPECT_EQ(least.errors.find("zelkon-plot: there is not memory enough: "), 0u) << least.errors;
  for (int megabytes = 40; megabytes < 800; megabytes += megabytes < 400 ? 15 : 50)
    for (const char* scale : {"1", "8"}) {
      const std::string limit = "ulimit -v " + std::to_string(megabytes * 1000) + "; ";
      expectPictureOrLine(run(std::string("render bars.json pie.json -o a.png -o b.png --scale ") + scale, limit),
                          limit + scale);
    }
}

}  // namespace
}  // namespace zelkon
