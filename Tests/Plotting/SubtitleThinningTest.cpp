// Subtitles of whole charts: those that have no room side by side are thinned, and the names over them with them.
#include <gtest/gtest.h>

#include "Classes/Plotting/LinePlot.h"
#include "Support/PlotterHost.h"

namespace zelkon {
namespace {

constexpr const char* kTooLong = "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAA";  // 180 points even at 10

// Twelve entries with the short names a to l and those subtitles, each given to `run` entries in a row.
PlotEntryListRef twelve(const std::vector<std::string>& subtitles) {
  const size_t run = 12 / subtitles.size();
  std::vector<PlotEntryRef> entries;
  for (size_t i = 0; i < 12; ++i)
    entries.push_back(plotEntry(100, kTooLong, nullptr, std::string(1, static_cast<char>('a' + i)).c_str(),
                                subtitles[i / run].c_str()));
  return plotEntries(entries);
}
std::vector<std::string> years(size_t count) {
  std::vector<std::string> names;
  for (size_t i = 0; i < count; ++i) names.push_back(std::to_string(2001 + i));
  return names;
}

template <typename Plot>
struct Chart : PlotterHost<Plot> {
  Chart(double width, const PlotEntryListRef& data) : PlotterHost<Plot>(width, 311, {{"DisplayYLabels", false}}) {
    this->plot->setPlotData(data);
  }
  // The names that are drawn, and the subtitles that are, in their order.
  std::string names() const {
    std::string all;
    const Drawn drawn = this->drawn();
    for (const CGTextRun& run : drawn.texts)
      if (run.text.size() == 1) all += run.text;
    return all;
  }
  std::vector<std::string> subtitles() const {
    std::vector<std::string> all;
    const Drawn drawn = this->drawn();
    for (const CGTextRun& run : drawn.texts)
      if (run.text.size() > 1) all.push_back(run.text);
    return all;
  }
  std::vector<double> separators() const {
    std::vector<double> places;
    const std::vector<DrawnLine> lines = straightLines(this->drawn());
    for (const DrawnLine& line : lines)
      if (line.from.x == line.to.x) places.push_back(line.from.x);
    return places;
  }
};

// Twelve bars in 600 points are 28 wide with margins of 20: slots of 48 from 43 on, subtitles laid 28 apart.
TEST(SubtitlesOfBars, EverySecondGoesWithItsNameWhereTheyAreWiderThanTheBars) {
  const Chart<BarPlot> chart(657, twelve(years(12)));
  ASSERT_EQ(chart.plot->barWidth(), 28);
  ASSERT_EQ(chart.plot->barMargin(), 20);
  EXPECT_EQ(chart.subtitles(), (std::vector<std::string>{"2001", "2003", "2005", "2007", "2009", "2011"}));
  EXPECT_EQ(chart.names(), "acegik");
  EXPECT_EQ(chart.separators(), (std::vector<double>{139, 235, 331, 427, 523}));
  // Under the name's left edge: 139 and half of what its 7.2 points leave of 48, cut to whole points.
  EXPECT_EQ(chart.drawn().text("2003")->origin.x, 159);
}

// 21.6 points fit bars of 28.
TEST(SubtitlesOfBars, AllStayWhereTheyFit) {
  std::vector<std::string> names;
  for (int i = 0; i < 12; ++i) names.push_back("'" + std::to_string(10 + i));
  const Chart<BarPlot> chart(657, twelve(names));
  EXPECT_EQ(chart.subtitles(), names);
  EXPECT_EQ(chart.names(), "abcdefghijkl");
  EXPECT_EQ(chart.separators().size(), 11u);
}

// Runs of two are 56 points apart and their subtitles 64.8 wide.
TEST(SubtitlesOfBars, OfAThinnedRunTheOtherNameStays) {
  const Chart<BarPlot> chart(657,
                             twelve({"Year 2001", "Year 2002", "Year 2003", "Year 2004", "Year 2005", "Year 2006"}));
  EXPECT_EQ(chart.subtitles(), (std::vector<std::string>{"Year 2001", "Year 2003", "Year 2005"}));
  EXPECT_EQ(chart.names(), "abdefhijl");
  EXPECT_EQ(chart.separators(), (std::vector<double>{43 + 4 * 48, 43 + 8 * 48}));
}

// Twelve points of a line in 300 points: slots of 25 from 20.5 on, subtitles laid 25 apart.
TEST(SubtitlesOfALine, EverySecondGoesWithItsNameWhereTheyAreWiderThanThePointsAreApart) {
  const Chart<LinePlot> chart(357, twelve(years(12)));
  ASSERT_EQ(chart.plot->pixelsPerRenderPoint(), 25);
  EXPECT_EQ(chart.subtitles(), (std::vector<std::string>{"2001", "2003", "2005", "2007", "2009", "2011"}));
  EXPECT_EQ(chart.names(), "acegik");
  EXPECT_EQ(chart.separators(), (std::vector<double>{69, 119, 169, 219, 269}));
  // Slot 0 is 20.5 to 45.5 and the name 7.2 wide.
  EXPECT_EQ(chart.drawn().text("2001")->origin.x, 29);
  EXPECT_EQ(chart.drawn().text("2003")->origin.x, 79);
}

TEST(SubtitlesOfALine, LieOneSpacingApart) {
  const Chart<LinePlot> wide(57 + 12 * 29, twelve(years(12))), narrow(57 + 12 * 28.5, twelve(years(12)));
  EXPECT_EQ(wide.subtitles(), years(12)) << "28.8 points in 29";
  EXPECT_EQ(narrow.subtitles().size(), 6u) << "28.8 points in 28.5";
}

// Names of 21.6 points need 31.6 at 12 points and 29.8 at 11: in slots of 30 they shrink, and the subtitles with them.
TEST(SubtitlesOfALine, StandAtTheTopOfTheirRowInTheSizeOfTheirNames) {
  std::vector<PlotEntryRef> entries;
  for (int i = 0; i < 12; ++i) entries.push_back(plotEntry(100, kTooLong, nullptr, "Jan", "2009"));
  const Chart<LinePlot> chart(57 + 12 * 30, plotEntries(entries));
  ASSERT_EQ(chart.drawn().countOfText("2009"), 1u);
  EXPECT_EQ(chart.drawn().text("Jan")->size, 11);
  EXPECT_EQ(chart.drawn().text("2009")->size, 11);
  // 13 high from the top of 10 to 25, the baseline 11 below it.
  EXPECT_NEAR(chart.drawn().text("2009")->origin.y, 25 - 11, 1e-9);
}

TEST(SubtitlesOfALine, OfAThinnedRunTheOtherNameStays) {
  const Chart<LinePlot> chart(357,
                              twelve({"Year 2001", "Year 2002", "Year 2003", "Year 2004", "Year 2005", "Year 2006"}));
  EXPECT_EQ(chart.subtitles(), (std::vector<std::string>{"Year 2001", "Year 2003", "Year 2005"}));
  EXPECT_EQ(chart.names(), "abdefhijl");
}

// The empty one lets the third be kept; drawn it is not, since the last one drawn reads the same.
template <typename Plot>
void expectOneSubtitleAroundAnEmptyOne() {
  const Chart<Plot> chart(
      657, plotEntries({plotEntry(1, kTooLong, nullptr, "a", "2009"), plotEntry(1, kTooLong, nullptr, "b", ""),
                        plotEntry(1, kTooLong, nullptr, "c", "2009"), plotEntry(1, kTooLong, nullptr, "d", "2010")}));
  EXPECT_EQ(chart.subtitles(), (std::vector<std::string>{"2009", "2010"}));
  EXPECT_EQ(chart.names(), "abcd");
  EXPECT_EQ(chart.separators().size(), 1u);
}
TEST(SubtitlesOfBars, AnEmptyOneBetweenTwoEqualOnesStartsNoNewRun) { expectOneSubtitleAroundAnEmptyOne<BarPlot>(); }
TEST(SubtitlesOfALine, AnEmptyOneBetweenTwoEqualOnesStartsNoNewRun) { expectOneSubtitleAroundAnEmptyOne<LinePlot>(); }

}  // namespace
}  // namespace zelkon
