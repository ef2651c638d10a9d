// Every input that is kept runs through its target.
#include <gtest/gtest.h>

#include <filesystem>

#include "Fuzz/FuzzTargets.h"
#include "Hosts/Headless/OutputFile.h"

namespace zelkon {
namespace {

namespace fs = std::filesystem;

using Target = void (*)(const uint8_t*, size_t);

// The number of files below the folder, each of which went through the target.
size_t runFolder(const fs::path& folder, Target target) {
  size_t count = 0;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    SCOPED_TRACE(entry.path().string());
    const std::string input = readWholeFile(entry.path().string());
    target(reinterpret_cast<const uint8_t*>(input.data()), input.size());
    ++count;
  }
  return count;
}

const fs::path corpus = fs::path("Tests") / "Fuzz" / "Corpus";

TEST(Corpus, ScenariosArePlayed) {
  EXPECT_GT(runFolder(corpus / "Scenarios", fuzzScenario), 0u);
  EXPECT_GT(runFolder("Examples", fuzzScenario), 0u);
}

TEST(Corpus, StepsArePlayed) { EXPECT_GT(runFolder(corpus / "Steps", fuzzSteps), 0u); }

TEST(Corpus, PageArraysAreHandedOver) { EXPECT_GT(runFolder(corpus / "PageArrays", fuzzPageArray), 0u); }

TEST(Corpus, NothingAtAllIsAnInputToo) {
  for (const Target target : {fuzzScenario, fuzzSteps, fuzzPageArray}) target(nullptr, 0);
}

}  // namespace
}  // namespace zelkon
