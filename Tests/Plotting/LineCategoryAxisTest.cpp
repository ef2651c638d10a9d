// The line's category axis. Three entries in 300 points have slots of 100 that begin at -17, 83 and 183.
#include <gtest/gtest.h>

#include <cmath>

#include "Classes/Plotting/LinePlot.h"
#include "Support/PlotterHost.h"

namespace zelkon {
namespace {

using Host = PlotterHost<LinePlot>;

constexpr const char* kTooLong = "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAA";  // 180 points even at 10

ValueDictionary withoutValueLabels() { return {{"DisplayYLabels", false}}; }

struct Month {
  const char *name, *year;
};
PlotEntryListRef months(const std::vector<Month>& named) {
  std::vector<PlotEntryRef> entries;
  for (const Month& month : named) entries.push_back(plotEntry(10, kTooLong, nullptr, month.name, month.year));
  return plotEntries(entries);
}
struct Axis : Host {
  explicit Axis(const PlotEntryListRef& data, double width = 357) : Host(width, 296, withoutValueLabels()) {
    plot->setPlotData(data);
  }
  std::vector<DrawnLine> ticks() const {
    std::vector<DrawnLine> upright;
    const std::vector<DrawnLine> lines = straightLines(drawn());
    for (const DrawnLine& line : lines)
      if (line.from.x == line.to.x) upright.push_back(line);
    return upright;
  }
};

TEST(LineCategoryAxis, LabelsAreCentredOnTheirPoints) {
  const Axis axis(plotAmounts({1, 2, 3}));
  const Drawn drawn = axis.drawn();
  ASSERT_NE(drawn.text("B"), nullptr);
  // Slots 24 points from the bottom and 15 high; the baseline lies 12 points below their top.
  EXPECT_NEAR(drawn.text("B")->origin.x, 83 + (100 - 7.2) / 2, 1e-9);
  EXPECT_NEAR(drawn.text("B")->origin.y, 24 + 15 - 12, 1e-9);
}

TEST(LineCategoryAxis, LongNamesThatFitAtATighterMarginAreDrawnWhateverElseThereIs) {
  // 88 points at 10: 12 apart, too near for bars.
  std::vector<PlotEntryRef> entries;
  for (int i = 0; i < 3; ++i) entries.push_back(plotEntry(i, "AAAAAAAAAAAAAA", "Medium", "S", "2009"));
  const Axis axis(plotEntries(entries));
  EXPECT_EQ(axis.drawn().countOfText("AAAAAAAAAAAAAA"), 3u);
  EXPECT_EQ(axis.drawn().countOfText("Medium"), 0u);
}

TEST(LineCategoryAxis, MediumNamesComeNext) {
  const Axis axis(plotEntries(std::vector<PlotEntryRef>(3, plotEntry(1, kTooLong, "Medium", "Jan", "2009"))));
  EXPECT_EQ(axis.drawn().countOfText("Medium"), 3u);
  EXPECT_EQ(axis.drawn().countOfText("2009"), 0u);
}

TEST(LineCategoryAxis, LongNamesThatAreLeftStayWhereThereAreNoShorterOnes) {
  const Axis axis(plotEntries(std::vector<PlotEntryRef>(3, plotEntry(1, kTooLong))));
  const Drawn drawn = axis.drawn();
  ASSERT_EQ(drawn.texts.size(), 1u);
  // The middle one over all three slots, -17 to 283, in the full font.
  EXPECT_EQ(drawn.texts[0].text, kTooLong);
  EXPECT_EQ(drawn.texts[0].size, 12);
  EXPECT_NEAR(drawn.texts[0].origin.x, -17 + (300 - 30 * 7.2) / 2, 1e-9);
}

TEST(LineCategoryAxis, MediumNamesThatAreLeftStayWhereThereAreNoShortOnes) {
  const std::string medium(29, 'M');
  const Axis axis(plotEntries(std::vector<PlotEntryRef>(3, plotEntry(1, kTooLong, medium.c_str()))));
  EXPECT_EQ(axis.drawn().countOfText(medium), 1u);
  EXPECT_EQ(axis.drawn().texts.size(), 1u);
}

// In slots of 100: twelve letters are 86.4 points, 13.6 apart; thirteen are 93.6, 6.4 apart, and 14.2 at 11 points.
TEST(LineCategoryAxis, MediumNamesKeepTenPointsApart) {
  for (const auto& [letters, size] : {std::pair(12, 12.0), std::pair(13, 11.0)}) {
    const std::string medium(static_cast<size_t>(letters), 'M');
    const Axis axis(plotEntries(std::vector<PlotEntryRef>(3, plotEntry(1, kTooLong, medium.c_str()))));
    ASSERT_EQ(axis.drawn().countOfText(medium), 3u) << letters;
    EXPECT_EQ(axis.drawn().text(medium)->size, size) << letters;
  }
}

TEST(LineCategoryAxis, ATickStandsBeforeTheJanuaryOfALaterYear) {
  const Axis axis(months({{"Dec", "2009"}, {"Jan", "2010"}, {"Feb", "2010"}}));
  const Drawn drawn = axis.drawn();
  EXPECT_EQ(drawn.countOfText("2009"), 1u);
  EXPECT_EQ(drawn.countOfText("2010"), 1u);
  // Under the left edge of the month's text, -17 + 39.2 = 22.2 and 83 + 39.2 = 122.2, cut to whole points.
  EXPECT_NEAR(drawn.text("2009")->origin.x, 22, 1e-9);
  EXPECT_NEAR(drawn.text("2010")->origin.x, 122, 1e-9);
  EXPECT_NEAR(drawn.text("2010")->origin.y, 10 + 15 - 12, 1e-9);
  EXPECT_EQ(axis.ticks(), (std::vector<DrawnLine>{{{82, 39}, {82, 29}, 0.29}}));
}

TEST(LineCategoryAxis, OneYearHasOneSubtitleAndNoTick) {
  const Axis axis(months({{"Feb", "2010"}, {"Mar", "2010"}}));
  EXPECT_EQ(axis.drawn().countOfText("2010"), 1u);
  EXPECT_TRUE(axis.ticks().empty());
}

TEST(LineCategoryAxis, AChartThatBeginsInJanuaryHasNoTickAtItsEdge) {
  const Axis axis(months({{"Jan", "2010"}, {"Feb", "2010"}, {"Mar", "2010"}}));
  EXPECT_EQ(axis.drawn().countOfText("2010"), 1u);
  EXPECT_TRUE(axis.ticks().empty());
}

TEST(LineCategoryAxis, AFirstSubtitleUnderALaterJanuaryHasATick) {
  const Axis axis(months({{"Dec", ""}, {"Jan", "2010"}, {"Feb", "2010"}}));
  EXPECT_EQ(axis.ticks(), (std::vector<DrawnLine>{{{82, 39}, {82, 29}, 0.29}}));
}

TEST(LineCategoryAxis, AFirstSubtitleUnderAnotherMonthHasNone) {
  const Axis axis(months({{"Dec", ""}, {"Feb", "2010"}, {"Mar", "2010"}}));
  EXPECT_EQ(axis.drawn().countOfText("2010"), 1u);
  EXPECT_TRUE(axis.ticks().empty());
}

TEST(LineCategoryAxis, ANameThatIsNoMonthHasNoTickForTheFirstSubtitle) {
  const Axis axis(months({{"Dec", ""}, {"Q1", "2010"}, {"Mar", "2010"}}));
  EXPECT_TRUE(axis.ticks().empty());
}

TEST(LineCategoryAxis, LaterSubtitlesHaveATickInAnyMonth) {
  const Axis axis(months({{"Apr", "2009"}, {"May", "2010"}, {"Jun", "2011"}}));
  EXPECT_EQ(axis.ticks(), (std::vector<DrawnLine>{{{82, 39}, {82, 29}, 0.29}, {{182, 39}, {182, 29}, 0.29}}));
}

TEST(LineCategoryAxis, TwoYearsOfMonthsThinToQuarterStarts) {
  const char* const names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  std::vector<Month> named;
  for (int i = 0; i < 24; ++i) named.push_back({names[i % 12], i < 12 ? "2009" : "2010"});
  const Axis axis(months(named), 57 + 24 * 11);  // a quarter every 33 points
  const Drawn drawn = axis.drawn();
  for (const char* name : {"Jan", "Apr", "Jul", "Oct"}) EXPECT_EQ(drawn.countOfText(name), 2u) << name;
  EXPECT_EQ(drawn.countOfText("Feb"), 0u);
  EXPECT_EQ(drawn.countOfText("2009"), 1u);
  EXPECT_EQ(drawn.countOfText("2010"), 1u);
  ASSERT_EQ(axis.ticks().size(), 1u);
  EXPECT_EQ(axis.ticks()[0].from.x, std::floor(33 - 5.5 + 12 * 11) - 1);
}

TEST(LineCategoryAxis, ASubtitleLeftOfTheChartIsCutTowardsZero) {
  // Slots of 150 from -42; eleven letters are 79.2 wide and begin at -6.6.
  const Axis axis(months({{"AAAAAAAAAAA", "2009"}, {"Feb", "2009"}}));
  EXPECT_NEAR(axis.drawn().text("AAAAAAAAAAA")->origin.x, -6.6, 1e-9);
  EXPECT_NEAR(axis.drawn().text("2009")->origin.x, -6, 1e-9);
}

TEST(LineCategoryAxis, ASetWithMissingNamesIsLaidOutFromTheFirstSlot) {
  const Axis axis(plotEntries({plotEntry(1, kTooLong), plotEntry(2, kTooLong, "M"), plotEntry(3, kTooLong)}));
  ASSERT_EQ(axis.plot->xMediumLabels().size(), 1u);
  ASSERT_EQ(axis.drawn().texts.size(), 1u);
  EXPECT_NEAR(axis.drawn().text("M")->origin.x, -17 + (100 - 7.2) / 2, 1e-9);
}

TEST(LineCategoryAxis, SubtitlesThatAreNoTextsLeaveTheSetAndThenThereAreNone) {
  std::vector<PlotEntryRef> entries;
  for (const char* month : {"Dec", "Jan", "Feb"}) entries.push_back(plotEntry(10, kTooLong, nullptr, month, "2010"));
  auto numbered = std::make_shared<PlotEntry>(*entries[1]);
  numbered->shortHumanXSubtitle = 2010.0;
  entries[1] = numbered;
  const Axis axis(plotEntries(entries));
  EXPECT_EQ(axis.plot->xSubtitleLabels().size(), 2u);
  EXPECT_EQ(axis.drawn().countOfText("Jan"), 1u);
  EXPECT_EQ(axis.drawn().countOfText("2010"), 0u);
}

TEST(LineCategoryAxis, LabelsOfAnEarlierGenerationStayWhenTheyAreSwitchedOff) {
  Axis axis(plotAmounts({1, 2, 3}));
  axis.setOptions({{"DisplayYLabels", false}, {"DisplayXLabels", false}});
  axis.plot->setPlotData(plotAmounts({1, 2}));
  EXPECT_EQ(axis.plot->plotData()->count(), 2u);
  EXPECT_EQ(axis.plot->pixelsPerRenderPoint(), 150);
  EXPECT_EQ(axis.plot->xLabels().size(), 3u);
  EXPECT_EQ(axis.drawn().countOfText("C"), 1u);
}

TEST(LineCategoryAxis, ComesAfterTheValueAxis) {
  Host host(457, 296);
  host.plot->setPlotData(plotAmounts({100, 50}));
  const Drawn drawn = host.drawn();
  ASSERT_EQ(drawn.texts.size(), 7u);
  EXPECT_EQ(drawn.texts[4].text, "100");
  EXPECT_EQ(drawn.texts[5].text, "A");
  EXPECT_EQ(drawn.texts[6].text, "B");
}

}  // namespace
}  // namespace zelkon
