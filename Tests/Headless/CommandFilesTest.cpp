// Where the command writes: below --out alone, never through a link, and nothing unfinished is left behind.
#include "Headless/CommandFixture.h"

namespace zelkon {
namespace {

namespace fs = std::filesystem;

class CommandFiles : public CommandFixture {
 protected:
  CommandFiles() {
    fs::create_directories(folder_ / "out" / "inner");
    fs::create_directories(folder_ / "elsewhere");
    write("elsewhere/kept", "as it was");
  }
  // Plays a step that writes a file of that name, as JSON has it, into out/.
  Outcome play(const std::string& kind, const std::string& name) {
    writeSteps("files.json", R"({"wait": 0}, {")" + kind + R"(": ")" + name + R"("})");
    return run("play files.json --out out");
  }
  void expectRefused(const Outcome& outcome, const std::string& place) {
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors.find("zelkon-plot: files.json: " + place + ": "), 0u) << outcome.errors;
    EXPECT_EQ(outcome.errorLines(), 1) << outcome.errors;
    EXPECT_EQ(files("elsewhere"), 1u);
    EXPECT_EQ(read("elsewhere/kept"), "as it was");
    EXPECT_EQ(files("out"), 1u);
    EXPECT_EQ(files("out/inner"), 0u);
    EXPECT_EQ(files(), 4u);
  }
};

TEST_F(CommandFiles, NamesOfStepsAreRelativeToOut) {
  for (const char* kind : {"snapshot", "print", "layers"}) {
    const std::string name = std::string(kind) + ".png";
    EXPECT_EQ(play(kind, name).status, 0);
    EXPECT_TRUE(exists("out/" + name));
    EXPECT_EQ(play(kind, "inner/./" + name).status, 0);
    EXPECT_TRUE(exists("out/inner/" + name));
  }
}

TEST_F(CommandFiles, WithoutOutNamesAreRelativeToTheWorkingFolder) {
  writeSteps("files.json", R"({"snapshot": "a.png"}, {"layers": "out/a.json"})");
  EXPECT_EQ(run("play files.json").status, 0);
  EXPECT_TRUE(exists("a.png"));
  EXPECT_TRUE(exists("out/a.json"));
  fs::remove(folder_ / "a.png");
  writeSteps("files.json", R"({"snapshot": "../a.png"})");
  EXPECT_EQ(shell("cd out && \"$Z\" play ../files.json").status, 1);
  EXPECT_FALSE(exists("a.png"));
}

TEST_F(CommandFiles, NamesCannotLeaveOut) {
  for (const char* kind : {"snapshot", "print", "layers"}) {
    for (const std::string& name :
         {std::string("../elsewhere/a.png"), std::string("inner/../../elsewhere/a.png"), std::string(".."),
          (folder_ / "elsewhere" / "a.png").string(), std::string("a.png\\u0000.png"), std::string(""),
          std::string("inner/.."), std::string("inner/"), std::string(".")}) {
      SCOPED_TRACE(kind + (" " + name));
      expectRefused(play(kind, name), std::string("/steps/1/") + kind);
    }
  }
}

TEST_F(CommandFiles, ANameThatCannotBeUsedIsRefusedBeforeAnythingHappens) {
  writeSteps("files.json", R"({"call": "SliceColorAtIndex", "arguments": [1, 3, {}]}, {"snapshot": "a.png"},
                              {"print": "../b.png"})");
  const Outcome outcome = run("play files.json --out out");
  expectRefused(outcome, "/steps/2/print");
  EXPECT_EQ(outcome.output, "");
}

TEST_F(CommandFiles, ALinkedFolderIsNotFollowed) {
  fs::create_directory_symlink(folder_ / "elsewhere", folder_ / "out" / "link");
  const Outcome outcome = play("snapshot", "link/a.png");
  EXPECT_EQ(outcome.errors,
            "zelkon-plot: files.json: /steps/1/snapshot: out/link/a.png: cannot be written: \"link\" "
            "is a symbolic link, which could lead out of the folder\n");
  fs::remove(folder_ / "out" / "link");
  expectRefused(outcome, "/steps/1/snapshot");
  fs::create_directory_symlink("inner", folder_ / "out" / "link");
  EXPECT_EQ(play("snapshot", "link/a.png").status, 1) << "where it leads to may change at any time";
}

TEST_F(CommandFiles, ALinkedFileIsNotWrittenThrough) {
  fs::create_symlink(folder_ / "elsewhere" / "kept", folder_ / "out" / "a.png");
  const Outcome outcome = play("layers", "a.png");
  EXPECT_TRUE(fs::is_symlink(folder_ / "out" / "a.png"));
  fs::remove(folder_ / "out" / "a.png");
  expectRefused(outcome, "/steps/1/layers");
}

TEST_F(CommandFiles, OutItselfMayBeALink) {
  fs::create_directory_symlink(folder_ / "out", folder_ / "link");
  writeSteps("files.json", R"({"snapshot": "a.png"})");
  EXPECT_EQ(run("play files.json --out link").status, 0);
  EXPECT_TRUE(exists("out/a.png"));
}

TEST_F(CommandFiles, AFileThatCannotBeWrittenIsToldWithItsStep) {
  expectRefused(play("snapshot", "absent/a.png"), "/steps/1/snapshot");
  expectRefused(play("print", "a.gif"), "/steps/1/print");
  expectRefused(play("snapshot", "inner"), "/steps/1/snapshot");
  expectRefused(play("snapshot", std::string(300, 'x')), "/steps/1/snapshot");
}

TEST_F(CommandFiles, RenderWritesNothingButItsPicture) {
  for (const char* kind : {"snapshot", "print", "layers"}) {
    writeSteps("files.json", R"({"wait": 0}, {")" + std::string(kind) + R"(": "a.png"})");
    const Outcome outcome = run("render files.json -o out/b.png");
    expectRefused(outcome, std::string("/steps/1/") + kind);
  }
}

TEST_F(CommandFiles, AnUnfinishedFileIsNeverWrittenThroughALink) {
  // Names that can be foreseen: with the numbers of the processes to come.
  for (int i = 0; i < 2000; ++i)
    fs::create_symlink(folder_ / "elsewhere" / "new",
                       folder_ / "out" / ("a.png.part" + std::to_string(getpid() + 1 + i)));
  EXPECT_EQ(run("render pie.json -o out/a.png").status, 0);
  EXPECT_FALSE(fs::is_symlink(folder_ / "out" / "a.png"));
  EXPECT_EQ(files("elsewhere"), 1u);
}

TEST_F(CommandFiles, AWrittenFileHasTheModeOfTheUsersMask) {
  EXPECT_EQ(shell("umask 027; \"$Z\" render pie.json -o a.png; umask 0; \"$Z\" render pie.json -o b.png").status, 0);
  EXPECT_EQ(fs::status(folder_ / "a.png").permissions(), static_cast<fs::perms>(0640));
  EXPECT_EQ(fs::status(folder_ / "b.png").permissions(), static_cast<fs::perms>(0666));
}

TEST_F(CommandFiles, NothingIsLeftWhereAFileGrowsBeyondTheLimit) {
  const Outcome outcome = shell("ulimit -c 0; ulimit -f 1; \"$Z\" render pie.json -o out/a.png --scale 4");
  EXPECT_EQ(outcome.status, 128 + SIGXFSZ);
  EXPECT_EQ(files("out"), 1u);
  const Outcome ignored = shell("trap '' XFSZ; ulimit -f 1; \"$Z\" render pie.json -o out/a.png --scale 4");
  EXPECT_EQ(ignored.status, 1);
  EXPECT_EQ(ignored.errors, "zelkon-plot: out/a.png: cannot be written: File too large\n");
  EXPECT_EQ(files("out"), 1u);
}

}  // namespace
}  // namespace zelkon
