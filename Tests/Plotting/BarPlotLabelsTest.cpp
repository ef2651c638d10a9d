// The labels of both axes and what is painted once: background, gridlines, subtitles and separators.
#include <gtest/gtest.h>

#include <algorithm>

#include "Classes/Plotting/BarPlot.h"
#include "Support/PlotterHost.h"

namespace zelkon {
namespace {

using Host = PlotterHost<BarPlot>;

constexpr const char* kTooLong = "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAA";  // 180 points even at 10

ValueDictionary withoutValueLabels() { return {{"DisplayYLabels", false}}; }

std::vector<std::string> texts(const std::vector<NSAttributedString>& labels) {
  std::vector<std::string> result;
  for (const NSAttributedString& label : labels) result.push_back(label.string());
  return result;
}

// Separators and tick marks in grey 0.29: all but the zero line run up or down.
std::vector<DrawnLine> separators(const Drawn& drawn) {
  std::vector<DrawnLine> lines = straightLines(drawn);
  lines.erase(
      std::remove_if(lines.begin(), lines.end(), [](const DrawnLine& line) { return line.from.x != line.to.x; }),
      lines.end());
  return lines;
}

TEST(Background, FadesFromLightBlueAtTheBottomToWhiteAtTheTop) {
  Host host(600, 311);
  host.plot->setPlotData(plotAmounts({100}));
  const Drawn drawn = host.drawn();
  ASSERT_EQ(drawn.gradients.size(), 1u);
  EXPECT_EQ(drawn.gradients[0].placement, (CGGradientPlacement{{300, 0}, {300, 311}, 0, 1}));
  EXPECT_EQ(drawn.gradients[0].gradient->stops()[0].color, (RGBA{0.75, 0.88, 0.96, 1}));
  EXPECT_EQ(drawn.gradients[0].gradient->stops()[1].color, (RGBA{1, 1, 1, 1}));
}

TEST(Labels, AreLucidaGrandeInTheDefaultTextColourCentredOrRightAligned) {
  const TextAttributes &x = BarPlot::xLabelAttributes(), &y = BarPlot::yLabelAttributes();
  EXPECT_EQ(x.font, NSFontWithName("Lucida Grande", 12));
  EXPECT_EQ(y.font, NSFontWithName("Lucida Grande", 9));
  EXPECT_EQ(x.paragraphStyle, NSParagraphStyle{NSTextAlignment::center});
  EXPECT_EQ(y.paragraphStyle, NSParagraphStyle{NSTextAlignment::right});
  for (const TextAttributes& attributes : {x, y}) EXPECT_EQ(attributes.color, CashFlowPlot::defaultTextColor());
  EXPECT_EQ(&BarPlot::xLabelAttributes(), &x);
}

// Value labels are at most 16.2 points wide: the band is 20...37, ticks run from 49 to 57, the plot from 62.
TEST(ValueAxis, ZeroCrossesThePlotAndOtherValuesHaveATick) {
  Host host(600, 311);
  host.plot->setPlotData(plotAmounts({100}));
  ASSERT_EQ(host.plot->plotRect(), CGRectMake(62, 56, 600 - 42 - 44, 200));
  EXPECT_EQ(straightLines(host.drawn()), (std::vector<DrawnLine>{{{49, 56}, {576, 56}, 0.29},
                                                                 {{49, 106}, {57, 106}, 0.55},
                                                                 {{49, 156}, {57, 156}, 0.55},
                                                                 {{49, 206}, {57, 206}, 0.55},
                                                                 {{49, 256}, {57, 256}, 0.55}}));
  const Drawn drawn = host.drawn();
  for (const DisplayList::Stroke& stroke : drawn.strokes) EXPECT_EQ(stroke.style.width, 1);
}

// -50, 0, 50 and 100 over 200 points: thirds of the plot, cut to whole points.
TEST(ValueAxis, LinesStandOnWholePoints) {
  Host host(600, 311, withoutValueLabels());
  host.plot->setPlotData(plotAmounts({100, -50}));
  ASSERT_EQ(host.plot->plotRect(), CGRectMake(33, 56, 543, 200));
  EXPECT_EQ(straightLines(host.drawn()), (std::vector<DrawnLine>{{{20, 56}, {28, 56}, 0.55},
                                                                 {{20, 122}, {576, 122}, 0.29},
                                                                 {{20, 189}, {28, 189}, 0.55},
                                                                 {{20, 256}, {28, 256}, 0.55}}));
}

TEST(ValueAxis, FullWidthGridlinesRunFromTheLabelsAcrossThePlot) {
  Host host(600, 311, {{"YTickMarksExtendFullWidth", true}});
  host.plot->setPlotData(plotAmounts({100}));
  EXPECT_EQ(straightLines(host.drawn())[1], (DrawnLine{{49, 106}, {576, 106}, 0.55}));
}

TEST(ValueAxis, WithoutValueLabelsTicksAndZeroLineStay) {
  Host host(600, 311, withoutValueLabels());
  host.plot->setPlotData(plotAmounts({100}));
  const std::vector<DrawnLine> lines = straightLines(host.drawn());
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0], (DrawnLine{{20, 56}, {576, 56}, 0.29}));
  EXPECT_EQ(lines[4], (DrawnLine{{20, 256}, {28, 256}, 0.55}));
}

TEST(ValueAxis, LabelsStandAgainstTheTicksAtTheHeightOfTheirLines) {
  Host host(600, 311);
  host.plot->setPlotData(plotAmounts({100}));
  const Drawn drawn = host.drawn();
  // Centred on the line: floor(106 - 5.5) = 100, baseline 2 points above that; right-aligned in 20...37.
  ASSERT_NE(drawn.text("25"), nullptr);
  EXPECT_EQ(drawn.text("25")->size, 9);
  EXPECT_NEAR(drawn.text("25")->origin.x, 37 - 10.8, 1e-9);
  EXPECT_NEAR(drawn.text("25")->origin.y, 102, 1e-9);
  ASSERT_NE(drawn.text("100"), nullptr);
  EXPECT_NEAR(drawn.text("100")->origin.x, 37 - 16.2, 1e-9);
}

TEST(ValueAxis, LabelsAreWholeNumbersOfTheLocaleOrOfTheCurrency) {
  Host host(600, 311);
  host.plot->setPlotData(plotAmounts({4000}));
  EXPECT_EQ(texts(host.plot->yLabels()), (std::vector<std::string>{"0", "1,000", "2,000", "3,000", "4,000"}));
  host.setOptions({{"CurrencyID", "USD"}});
  host.plot->setPlotData(plotAmounts({1}));
  EXPECT_EQ(host.plot->yTickmarks(), (Gridlines{0, 0.25, 0.5, 0.75, 1}));
  EXPECT_EQ(texts(host.plot->yLabels()), (std::vector<std::string>{"$0", "$0", "$0", "$1", "$1"}));
}

TEST(ValueAxis, AnAmountJustAboveARoundOneTakesTheRoundAxis) {
  Host host(600, 311);
  host.plot->setPlotData(plotAmounts({1020}));
  EXPECT_EQ(host.plot->yTickmarks(), (Gridlines{0, 250, 500, 750, 1000}));
}

TEST(ValueAxis, WithoutLabelsTheOldOnesStayAndTheLinesAreNew) {
  Host host(600, 311);
  host.plot->setPlotData(plotAmounts({100}));
  host.setOptions(withoutValueLabels());
  host.plot->setPlotData(plotAmounts({4000}));
  EXPECT_EQ(texts(host.plot->yLabels()), (std::vector<std::string>{"0", "25", "50", "75", "100"}));
  EXPECT_EQ(host.plot->yTickmarks().back(), 4000);
}

TEST(CategoryAxis, ALabelIsCentredUnderItsBar) {
  Host host(657, 311, withoutValueLabels());
  host.plot->setPlotData(plotEntries({plotEntry(1, "Alpha"), plotEntry(2, "Beta"), plotEntry(3, "Gamma")}));
  const Drawn drawn = host.drawn();
  // Slots 186 wide from 53 on; the baseline lies 12 points below the slot's top at 49.
  ASSERT_NE(drawn.text("Alpha"), nullptr);
  EXPECT_EQ(drawn.text("Alpha")->size, 12);
  EXPECT_NEAR(drawn.text("Alpha")->origin.x, 53 + (186 - 36) / 2, 1e-9);
  EXPECT_NEAR(drawn.text("Alpha")->origin.y, 37, 1e-9);
  EXPECT_NEAR(drawn.text("Gamma")->origin.x, 53 + 372 + (186 - 36) / 2, 1e-9);
}

// Three names of 23 characters, 165.6 points: 20.4 apart in slots of 186 and 19.4 in slots of 185.
TEST(CategoryAxis, NamesKeepTwentyPointsApart) {
  const char* const name = "AAAAAAAAAAAAAAAAAAAAAAA";
  for (const auto& [width, size] : {std::pair(657.0, 12.0), std::pair(652.0, 11.0)}) {
    Host host(width, 311, withoutValueLabels());
    host.plot->setPlotData(plotEntries(std::vector<PlotEntryRef>(3, plotEntry(1, name))));
    const Drawn drawn = host.drawn();
    ASSERT_EQ(drawn.countOfText(name), 3u) << width;
    EXPECT_EQ(drawn.text(name)->size, size) << width;
  }
}

TEST(CategoryAxis, LongNamesThatFitAreDrawnWhateverElseThereIs) {
  Host host(1257, 311, withoutValueLabels());
  std::vector<PlotEntryRef> entries;
  for (int i = 0; i < 12; ++i) entries.push_back(plotEntry(i, "March", "Mar.", "M", "2009"));
  host.plot->setPlotData(plotEntries(entries));
  const Drawn drawn = host.drawn();
  EXPECT_EQ(drawn.countOfText("March"), 12u);
  EXPECT_EQ(drawn.countOfText("Mar."), 0u);
  EXPECT_EQ(drawn.countOfText("M"), 0u);
  EXPECT_EQ(drawn.countOfText("2009"), 0u);
}

TEST(CategoryAxis, MediumNamesComeNext) {
  Host host(657, 311, withoutValueLabels());
  std::vector<PlotEntryRef> entries(4, plotEntry(1, kTooLong, "Medium", "S", "2009"));
  host.plot->setPlotData(plotEntries(entries));
  EXPECT_EQ(host.drawn().countOfText("Medium"), 4u);
  EXPECT_EQ(host.drawn().countOfText("S"), 0u);
}

// As long names do: 165.6 points are 20.4 apart in slots of 186 and 19.4 in slots of 185.
TEST(CategoryAxis, MediumNamesKeepTwentyPointsApart) {
  const char* const name = "AAAAAAAAAAAAAAAAAAAAAAA";
  const std::string tooLong(40, 'B');
  for (const auto& [width, size] : {std::pair(657.0, 12.0), std::pair(652.0, 11.0)}) {
    Host host(width, 311, withoutValueLabels());
    host.plot->setPlotData(plotEntries(std::vector<PlotEntryRef>(3, plotEntry(1, tooLong.c_str(), name))));
    const Drawn drawn = host.drawn();
    ASSERT_EQ(drawn.countOfText(name), 3u) << width;
    EXPECT_EQ(drawn.text(name)->size, size) << width;
  }
}

TEST(CategoryAxis, ShortNamesComeNextAlsoWithoutMediumOnes) {
  Host host(657, 311, withoutValueLabels());
  host.plot->setPlotData(plotEntries(std::vector<PlotEntryRef>(4, plotEntry(1, kTooLong, nullptr, "S"))));
  EXPECT_EQ(host.drawn().countOfText("S"), 4u);
  host.plot->setPlotData(plotEntries(std::vector<PlotEntryRef>(4, plotEntry(1, kTooLong, kTooLong, "S"))));
  EXPECT_EQ(host.drawn().countOfText("S"), 4u);
}

TEST(CategoryAxis, WithNeitherTheLongNamesThatAreLeftAreDrawn) {
  Host host(657, 311, withoutValueLabels());
  host.plot->setPlotData(plotEntries(std::vector<PlotEntryRef>(4, plotEntry(1, kTooLong))));
  EXPECT_EQ(host.drawn().countOfText(kTooLong), 1u);
}

TEST(CategoryAxis, WithoutCategoryLabelsNoneAreMade) {
  Host host(657, 311, {{"DisplayXLabels", false}});
  host.plot->setPlotData(plotAmounts({1, 2}));
  EXPECT_TRUE(host.plot->xLabels().empty());
  EXPECT_EQ(host.drawn().countOfText("A"), 0u);
}

TEST(CategoryAxis, LabelsOfAnEarlierGenerationAreKeptMeasuredAndDrawn) {
  Host host(657, 311);
  host.plot->setPlotData(plotAmounts({1, 2}));
  host.setOptions({{"DisplayXLabels", false}});
  host.plot->setPlotData(plotAmounts({3}));
  EXPECT_EQ(host.plot->xLabels().size(), 2u);
  EXPECT_EQ(host.plot->plotRect().origin.y, 56);
  EXPECT_EQ(host.drawn().countOfText("B"), 1u);
}

TEST(CategoryAxis, SetsSkipWhatIsNoText) {
  Host host(657, 311);
  auto odd = std::make_shared<PlotEntry>(*plotEntry(2, "B", nullptr, "b"));
  odd->shortHumanXSubtitle = 2010;
  host.plot->setPlotData(
      plotEntries({plotEntry(1, "A", "Am", nullptr, "2009"), odd, plotEntry(3, "C", nullptr, "c", "")}));
  EXPECT_EQ(texts(host.plot->xLabels()), (std::vector<std::string>{"A", "B", "C"}));
  EXPECT_EQ(texts(host.plot->xMediumLabels()), (std::vector<std::string>{"Am"}));
  EXPECT_EQ(texts(host.plot->xShortLabels()), (std::vector<std::string>{"b", "c"}));
  EXPECT_EQ(texts(host.plot->xSubtitleLabels()), (std::vector<std::string>{"2009", ""}));
}

// Four bars in 600 points: slots 140 wide from 53 on.
PlotEntryListRef fourMonths(const std::vector<const char*>& subtitles) {
  const char* const names[] = {"Nov", "Dec", "Jan", "Feb"};
  std::vector<PlotEntryRef> entries;
  for (size_t i = 0; i < 4; ++i) entries.push_back(plotEntry(100, kTooLong, nullptr, names[i], subtitles[i]));
  return plotEntries(entries);
}

TEST(Subtitles, ARunIsCaptionedOnceAndASeparatorDividesRuns) {
  Host host(657, 311, withoutValueLabels());
  host.plot->setPlotData(fourMonths({"2009", "2009", "2010", "2010"}));
  const Drawn drawn = host.drawn();
  EXPECT_EQ(drawn.countOfText("2009"), 1u);
  EXPECT_EQ(drawn.countOfText("2010"), 1u);
  // Under the left edge of the month's text, cut to a whole point; baselines 14 points below the months'.
  EXPECT_NEAR(drawn.text("Nov")->origin.x, 53 + (140 - 21.6) / 2, 1e-9);
  EXPECT_NEAR(drawn.text("2009")->origin.x, 112, 1e-9);
  EXPECT_NEAR(drawn.text("2009")->origin.y, 23, 1e-9);
  EXPECT_EQ(drawn.text("2009")->size, 12);
  EXPECT_NEAR(drawn.text("2010")->origin.x, 392, 1e-9);
  EXPECT_EQ(separators(drawn), (std::vector<DrawnLine>{{{333, 55}, {333, 34}, 0.29}}));
  for (const DisplayList::Stroke& stroke : drawn.strokes) EXPECT_EQ(stroke.style.width, 1);
}

// Two bars of 230 with margins of 43: slots of 273 from 54.5 on. A name of 14.4 points begins 129.3 within its slot.
TEST(Subtitles, PlacesOfSubtitlesAndSeparatorsAreCutToWholePoints) {
  Host host(657, 311, withoutValueLabels());
  const std::string tooLong(60, 'A');
  host.plot->setPlotData(plotEntries({plotEntry(100, tooLong.c_str(), nullptr, "De", "2009"),
                                      plotEntry(100, tooLong.c_str(), nullptr, "Ja", "2010")}));
  const Drawn drawn = host.drawn();
  ASSERT_NE(drawn.text("2010"), nullptr);
  EXPECT_NEAR(drawn.text("De")->origin.x, 183.8, 1e-9);
  EXPECT_EQ(drawn.text("2009")->origin.x, 183);
  EXPECT_NEAR(drawn.text("Ja")->origin.x, 456.8, 1e-9);
  EXPECT_EQ(drawn.text("2010")->origin.x, 456);
  EXPECT_EQ(separators(drawn), (std::vector<DrawnLine>{{{327, 55}, {327, 34}, 0.29}}));
}

TEST(Subtitles, EverySeparatorReachesFromBelowTheZeroLine) {
  Host host(657, 311, withoutValueLabels());
  std::vector<PlotEntryRef> entries;
  for (const char* year : {"2007", "2008", "2009", "2010"})
    entries.push_back(plotEntry(-10, kTooLong, nullptr, "Jan", year));
  entries[0] = plotEntry(10, kTooLong, nullptr, "Jan", "2007");
  host.plot->setPlotData(plotEntries(entries));
  const std::vector<DrawnLine> lines = separators(host.drawn());
  ASSERT_EQ(lines.size(), 3u);
  for (const DrawnLine& line : lines) {
    EXPECT_EQ(line.from.y, 56 + 100 - 1);
    EXPECT_EQ(line.to.y, 34);
  }
}

TEST(Subtitles, FewerSubtitlesThanShortNamesDrawNone) {
  Host host(657, 311, withoutValueLabels());
  host.plot->setPlotData(fourMonths({"2009", "2009", nullptr, "2010"}));
  const Drawn drawn = host.drawn();
  EXPECT_EQ(drawn.countOfText("2009") + drawn.countOfText("2010"), 0u);
  EXPECT_EQ(drawn.countOfText("Nov"), 1u);
  EXPECT_TRUE(separators(drawn).empty());
}

}  // namespace
}  // namespace zelkon
