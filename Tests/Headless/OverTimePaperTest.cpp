// Paper of amounts over time: whole at any time, without the bubble, and the screen afterwards is as before.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/ScenarioPlayer.h"

namespace zelkon {
namespace {

namespace fs = std::filesystem;

// Three bars of 27 in a plot that begins 33 from the left and 41 from the bottom, or 24 points of a line over it.
struct Kind {
  const char* name;
  int entries;
  const char* overTheFirst;
};

class OverTimePaper : public testing::TestWithParam<Kind> {
 protected:
  OverTimePaper() : folder_(fs::temp_directory_path() / fs::path("zelkon-paper-" + std::to_string(getpid()))) {
    fs::create_directories(folder_);
  }
  ~OverTimePaper() override { fs::remove_all(folder_); }

  // Hands over the amounts and does those steps then; gives the transcript.
  std::vector<std::string> play(const std::string& steps) {
    std::string entries;
    for (int i = 0; i < GetParam().entries; ++i)
      entries += std::string(i > 0 ? "," : "") + R"({"humanX": "May", "humanY": "$tip )" + std::to_string(i) +
                 R"(", "y": "100"})";
    const std::string text = R"({"plot": "spendingOverTimeBarOrLine", "size": [300, 200], "steps": [
        {"call": "SetPlotOptions", "arguments": [[{"key": "DisplayXLabels", "value": false},
                                                  {"key": "DisplayYLabels", "value": false}]]},
        {"call": "SetPlotData", "arguments": [[)" +
                             entries + "]]}, " + steps + "]}";
    std::vector<std::string> lines;
    playScenario(Scenario::parse(text, "test.json"), "test.json", {}, folder_.string(), services_,
                 [&](const std::string& line) { lines.push_back(line); });
    return lines;
  }
  std::string file(const std::string& name) const { return readWholeFile((folder_ / name).string()); }

  HeadlessServices services_;
  fs::path folder_;
};

TEST_P(OverTimePaper, IsTheSameDuringTheOpeningAfterItAndUnderThePointer) {
  const std::string hover = std::string(R"({"mouse": "moved", "at": )") + GetParam().overTheFirst + "}";
  const std::vector<std::string> lines =
      play(R"({"wait": 0.05}, {"print": "opening.svg"}, {"wait": 2}, {"layers": "before"}, {"print": "rest.svg"},
              {"layers": "after"}, )" +
           hover + R"(, {"wait": 0.4}, {"layers": "hovered"}, {"print": "hovered.svg"}, {"wait": 0.4},
              {"layers": "still-hovered"})");
  EXPECT_NE(file("hovered").find("$tip 0"), std::string::npos);
  EXPECT_EQ(file("rest.svg"), file("opening.svg"));
  EXPECT_EQ(file("rest.svg"), file("hovered.svg"));
  EXPECT_EQ(file("rest.svg").find("$tip"), std::string::npos);
  EXPECT_NE(file("rest.svg").find("<path"), std::string::npos);
  EXPECT_EQ(file("after"), file("before"));
  EXPECT_EQ(file("still-hovered"), file("hovered"));
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_NE(lines[0].find("page GraphHasDisplayed()"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Charts, OverTimePaper,
                         testing::Values(Kind{"Bars", 3, "[86, 120]"}, Kind{"Line", 24, "[34, 120]"}),
                         [](const testing::TestParamInfo<Kind>& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace zelkon
