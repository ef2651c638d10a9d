#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/ScenarioPlayer.h"

namespace zelkon {
namespace {

namespace fs = std::filesystem;

class ScenarioPlayerTest : public testing::Test {
 protected:
  ScenarioPlayerTest() : folder_(fs::temp_directory_path() / fs::path("zelkon-player-" + std::to_string(getpid()))) {
    fs::create_directories(folder_);
  }
  ~ScenarioPlayerTest() override { fs::remove_all(folder_); }

  std::vector<std::string> play(const std::string& text) {
    std::vector<std::string> lines;
    playScenario(Scenario::parse(text, "test.json"), "test.json", {}, folder_.string(), services_,
                 [&](const std::string& line) { lines.push_back(line); });
    return lines;
  }
  std::string file(const std::string& name) const { return readWholeFile((folder_ / name).string()); }

  HeadlessServices services_;
  fs::path folder_;
};

using Lines = std::vector<std::string>;

constexpr const char* kPie = R"("plot": "pie", "size": [300, 200], )";

TEST_F(ScenarioPlayerTest, OpeningOfAPieIsReportedOnceWhenItsQuarterSecondIsOver) {
  EXPECT_EQ(play(std::string("{") + kPie +
                 R"("steps": [{"call": "SetPlotData", "arguments": [[{"key": "Rent", "value": 3}]]}, {"wait": 2}]})"),
            (Lines{"0.250 page SpendingTrendsHaveDisplayed()"}));
}

TEST_F(ScenarioPlayerTest, AChartWithoutStepsRunsItsOpeningToTheEnd) {
  EXPECT_EQ(play(std::string("{") + kPie + R"("data": [{"key": "Rent", "value": 3}]})"),
            (Lines{"0.250 page SpendingTrendsHaveDisplayed()"}));
}

TEST_F(ScenarioPlayerTest, TheColourAskedForIsAResultLine) {
  const Lines lines =
      play(std::string("{") + kPie + R"("steps": [{"call": "SliceColorAtIndex", "arguments": [1, 3, {}]}]})");
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].substr(0, 32), "0.000 result SliceColorAtIndex {");
  for (const char* key : {"\"red\":0.8199999928474426", "\"green\":0.2049999982", "\"blue\":0.24189", "\"alpha\":1"})
    EXPECT_NE(lines[0].find(key), std::string::npos) << key << " in " << lines[0];
}

TEST_F(ScenarioPlayerTest, ACallThatRaisesIsLoggedAndThePageGoesOn) {
  const Lines lines = play(std::string("{") + kPie + R"("steps": [
      {"call": "SliceColorAtIndex", "arguments": []}, {"wait": 1}]})");
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0],
            "0.000 log Exception thrown while processing javascript bridge at [PiePlotView "
            "sliceColorAtIndex:sliceCount:components:].");
  EXPECT_EQ(lines[1].find("0.000 log -[WebUndefined integerValue]: unrecognized selector"), 0u) << lines[1];
  EXPECT_EQ(lines[2], "0.250 page SpendingTrendsHaveDisplayed()");
}

TEST_F(ScenarioPlayerTest, AFrameThatRaisesIsLoggedAndTheScenarioGoesOn) {
  // The view has its data before it has a size; the first one has no room for two bars beside their labels.
  const Lines lines = play(R"({"plot": "spendingOverTimeBarOrLine", "size": [0, 0], "steps": [
      {"call": "SetPlotData", "arguments": [[{"humanX": "a", "humanY": "a", "y": "1"},
                                             {"humanX": "b", "humanY": "b", "y": "1000000"}]]},
      {"frame": [70, 100]}, {"wait": 1}, {"layers": "after.json"}]})");
  EXPECT_EQ(lines, (Lines{"0.000 log DEBUGGING: BarPlot cannot handle too many bars yet, the margins have shrunk to "
                          "less than 2 pixels."}));
  EXPECT_FALSE(file("after.json").empty());
}

TEST_F(ScenarioPlayerTest, HoveringTellsThePageNewAndPreviousSlice) {
  // Centre (150, 91.5) from below: 108.5 from the top.
  EXPECT_EQ(
      play(std::string("{") + kPie + R"("steps": [
      {"call": "SetPlotData", "arguments": [[{"key": "A", "value": 1}, {"key": "B", "value": 3}]]}, {"wait": 1},
      {"mouse": "moved", "at": [170, 90]}, {"wait": 0.5}, {"mouse": "moved", "at": [150, 150]},
      {"mouse": "down", "at": [150, 150]}, {"mouse": "moved", "at": [5, 5]}, {"mouse": "exited"}]})"),
      (Lines{"0.250 page SpendingTrendsHaveDisplayed()",
             "1.000 page SpendingTrendsSliceHoverIndex(0, 9223372036854775807)",
             "1.500 page SpendingTrendsSliceHoverIndex(1, 0)", "1.500 page SpendingTrendsSliceClicked(1)",
             "1.500 page SpendingTrendsSliceHoverIndex(-1, 1)", "1.500 page SpendingTrendsSliceHoverIndex(-1, -1)"}));
}

TEST_F(ScenarioPlayerTest, AFreshViewAfterAResizeMakesNoPageCall) {
  EXPECT_EQ(play(std::string("{") + kPie + R"("steps": [
      {"call": "SetPlotData", "arguments": [[{"key": "A", "value": 1}]]}, {"wait": 1},
      {"mouse": "moved", "at": [150, 100]}, {"resize": [400, 260]}, {"wait": 1}, {"layers": "after.json"}]})"),
            (Lines{"0.250 page SpendingTrendsHaveDisplayed()",
                   "1.000 page SpendingTrendsSliceHoverIndex(0, 9223372036854775807)"}));
  EXPECT_NE(file("after.json").find("\"com.zelkon.slicesLayer\""), std::string::npos);
}

TEST_F(ScenarioPlayerTest, AFreshViewHasTheDataOfTheLastCallThatDidNotRaise) {
  const Lines lines = play(std::string("{") + kPie + R"("steps": [
      {"call": "SetPlotData", "arguments": [[{"key": "Rent", "value": 1}, {"key": "Travel", "value": 3}]]},
      {"call": "SetPlotData", "arguments": [[{"key": "Food", "value": 1}, 5]]},
      {"wait": 1}, {"resize": [400, 300]}, {"mouse": "moved", "at": [150, 60]}]})");
  // The bad call is logged once; above and left of the centre is the second slice of the good one.
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0],
            "0.000 log Exception thrown while processing javascript bridge at [PiePlotView js_setPlotData:].");
  EXPECT_EQ(lines[2], "0.250 page SpendingTrendsHaveDisplayed()");
  EXPECT_EQ(lines[3], "1.000 page SpendingTrendsSliceHoverIndex(1, 9223372036854775807)");
}

TEST_F(ScenarioPlayerTest, AResizeDuringTheOpeningStillOwesThePageItsCall) {
  EXPECT_EQ(play(std::string("{") + kPie + R"("steps": [
      {"call": "SetPlotData", "arguments": [[{"key": "A", "value": 1}]]}, {"wait": 0.1}, {"resize": [400, 260]},
      {"wait": 1}]})"),
            (Lines{"0.100 page SpendingTrendsHaveDisplayed()"}));
}

TEST_F(ScenarioPlayerTest, ExceptionsOfScriptCallsReachTheLog) {
  const Lines lines = play(std::string("{") + kPie +
                           R"("steps": [{"call": "SetPlotData", "arguments": [[{"key": "A", "value": [1]}]]}]})");
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0],
            "0.000 log Exception thrown while processing javascript bridge at [PiePlotView js_setPlotData:].");
  EXPECT_EQ(lines[1].substr(0, 10), "0.000 log ");
}

TEST_F(ScenarioPlayerTest, UnknownPlotIsAnErrorThatNamesFileAndValue) {
  try {
    play(R"({"plot": "Pie", "data": []})");
    FAIL() << "no error";
  } catch (const ScenarioError& error) {
    EXPECT_STREQ(error.what(), "test.json: /plot: Unknown plotName parameter \"Pie\"");
  }
}

TEST_F(ScenarioPlayerTest, PicturesHaveTheSizeTimesTheScale) {
  PlayOptions options;
  options.scale = 2;
  const Scenario scenario = Scenario::parse(std::string("{") + kPie + R"("data": [{"key": "A", "value": 1}]})", "t");
  const std::string png = renderScenario(scenario, "t", options, "png", services_, [](const std::string&) {});
  ASSERT_GT(png.size(), 24u);
  EXPECT_EQ(png.substr(1, 3), "PNG");
  const auto number = [&](size_t at) {
    return static_cast<unsigned char>(png[at + 2]) * 256 + static_cast<unsigned char>(png[at + 3]);
  };
  EXPECT_EQ(number(16), 600);
  EXPECT_EQ(number(20), 400);
}

TEST_F(ScenarioPlayerTest, PrintsStayDrawings) {
  play(std::string("{") + kPie + R"("steps": [
      {"call": "SetPlotData", "arguments": [[{"key": "Groceries", "value": 1}, {"key": "Rent", "value": 2}]]},
      {"wait": 1}, {"mouse": "moved", "at": [170, 60]}, {"wait": 1}, {"print": "pie.svg"}, {"print": "pie.pdf"}]})");
  const std::string svg = file("pie.svg");
  EXPECT_NE(svg.find("<path"), std::string::npos);
  EXPECT_NE(svg.find("Groceries"), std::string::npos) << "the hovered slice's label is text";
  EXPECT_EQ(file("pie.pdf").substr(0, 5), "%PDF-");
}

TEST_F(ScenarioPlayerTest, AFileThatCannotBeWrittenIsNamedAndNothingIsLeft) {
  EXPECT_THROW(writeWholeFile((folder_ / "absent" / "a.png").string(), "x"), FileError);
  fs::create_directories(folder_ / "taken.png");
  EXPECT_THROW(writeWholeFile((folder_ / "taken.png").string(), "x"), FileError);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()), 1);
}

TEST_F(ScenarioPlayerTest, DegenerateDataNeitherHangNorCrash) {
  for (const char* data :
       {"[]", R"([{"key": "A", "value": 0}])", R"([{"key": "A", "value": -5}, {"key": "B", "value": 5}])",
        R"([{"key": "A", "value": 1e308}, {"key": "B", "value": 1e308}])"}) {
    for (const char* size : {"[0, 0]", "[1, 1]", "[20, 37]", "[300, 200]"}) {
      const std::string text = std::string(R"({"plot": "pie", "size": )") + size + R"(, "data": )" + data + "}";
      EXPECT_NO_THROW(play(text)) << text;
    }
  }
}

}  // namespace
}  // namespace zelkon
