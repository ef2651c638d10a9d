// Which subtitles are kept for a row of names, where they lie, and which names go with those that are not.
#include <gtest/gtest.h>

#include "Classes/Plotting/BarPlot.h"
#include "Support/PlotterHost.h"

namespace zelkon {
namespace {

std::vector<std::string> texts(const std::vector<NSAttributedString>& labels) {
  std::vector<std::string> result;
  for (const NSAttributedString& label : labels) result.push_back(label.string());
  return result;
}

TEST(Subtitles, TheirRectanglesLieEdgeToEdgeFromFourPointsRightOfTheBars) {
  const BarPlot plot;
  const std::vector<CGRect> rects = plot.subtitleRectsWithStartingRect(CGRectMake(0, 20, 30, 15), 3, 53);
  EXPECT_EQ(rects,
            (std::vector<CGRect>{CGRectMake(57, 20, 30, 15), CGRectMake(87, 20, 30, 15), CGRectMake(117, 20, 30, 15)}));
}

// Eight years, each 28.8 points wide, under rectangles that far apart.
struct Years {
  std::vector<NSAttributedString> subtitles, labels;
  std::vector<CGRect> rects;
  explicit Years(double spacing) {
    for (int i = 0; i < 8; ++i) {
      subtitles.emplace_back(std::to_string(2001 + i), BarPlot::xLabelAttributes());
      labels.emplace_back("L" + std::to_string(i), BarPlot::xLabelAttributes());
      rects.push_back(CGRectMake(spacing * i, 20, spacing, 20));
    }
  }
};

TEST(AdjustedSubtitles, CountsThatDifferChangeNothing) {
  const PlainDevice device;
  const BarPlot plot;
  Years years(40);
  years.labels.pop_back();
  const std::vector<CGRect> rects = years.rects;
  EXPECT_FALSE(plot.adjustedSubtitles(years.subtitles, years.rects, years.labels).has_value());
  EXPECT_EQ(years.rects, rects);
  EXPECT_EQ(years.labels.size(), 7u);
}

TEST(AdjustedSubtitles, WhatFitsIsAlignedToTheTopOfItsRectangle) {
  const PlainDevice device;
  const BarPlot plot;
  Years years(40);
  const auto shown = plot.adjustedSubtitles(years.subtitles, years.rects, years.labels);
  ASSERT_TRUE(shown.has_value());
  EXPECT_EQ(texts(*shown), texts(years.subtitles));
  EXPECT_EQ(years.rects[1].origin, CGPointMake(40, 25));
  EXPECT_DOUBLE_EQ(years.rects[1].size.width, 28.8);
  EXPECT_EQ(years.rects[1].size.height, 15);
}

TEST(AdjustedSubtitles, SubtitlesTakeTheFontOfTheirLabels) {
  const PlainDevice device;
  const BarPlot plot;
  Years years(40);
  years.labels[0] = years.labels[0].withFont(years.labels[0].attributesAtStart().font->withSize(10));
  const auto shown = plot.adjustedSubtitles(years.subtitles, years.rects, years.labels);
  EXPECT_EQ((*shown)[0].attributesAtStart().font->pointSize(), 10);
  EXPECT_EQ((*shown)[1].attributesAtStart().font->pointSize(), 12);
}

TEST(AdjustedSubtitles, OfARunTheFirstIsKept) {
  const PlainDevice device;
  const BarPlot plot;
  Years years(40);
  for (const size_t i : {1, 2, 5}) years.subtitles[i] = years.subtitles[i - 1];
  const auto shown = plot.adjustedSubtitles(years.subtitles, years.rects, years.labels);
  EXPECT_EQ(texts(*shown), (std::vector<std::string>{"2001", "", "", "2004", "2005", "", "2007", "2008"}));
  for (const size_t i : {1, 2, 5}) EXPECT_EQ(years.rects[i], NSZeroRect) << i;
  EXPECT_EQ(years.labels[1].string(), "L1");
}

TEST(AdjustedSubtitles, AnEmptyLabelHidesItsSubtitleAndTheNextOfTheRunShowsIt) {
  const PlainDevice device;
  const BarPlot plot;
  Years years(40);
  years.subtitles[1] = years.subtitles[0];
  years.labels[0] = {};
  const auto shown = plot.adjustedSubtitles(years.subtitles, years.rects, years.labels);
  EXPECT_TRUE((*shown)[0].isEmpty());
  EXPECT_EQ((*shown)[1].string(), "2001");
  EXPECT_EQ(years.rects[0].size, CGSizeMake(0, 0));
}

TEST(AdjustedSubtitles, EverySecondStaysWhenThatIsEnough) {
  const PlainDevice device;
  const BarPlot plot;
  Years years(15);
  const auto shown = plot.adjustedSubtitles(years.subtitles, years.rects, years.labels);
  EXPECT_EQ(texts(*shown), (std::vector<std::string>{"2001", "", "2003", "", "2005", "", "2007", ""}));
  EXPECT_EQ(texts(years.labels), (std::vector<std::string>{"L0", "", "L2", "", "L4", "", "L6", ""}));
  EXPECT_EQ(years.rects[1], NSZeroRect);
}

TEST(AdjustedSubtitles, ThenEveryThirdOfThoseThatWereLeft) {
  const PlainDevice device;
  const BarPlot plot;
  Years years(14);
  const auto shown = plot.adjustedSubtitles(years.subtitles, years.rects, years.labels);
  EXPECT_EQ(texts(*shown), (std::vector<std::string>{"2001", "", "", "", "", "", "2007", ""}));
  EXPECT_EQ(texts(years.labels), (std::vector<std::string>{"L0", "", "", "", "", "", "L6", ""}));
}

// Years in pairs 28 points apart, each 28.8 wide: every second year goes, with the first name of its pair.
TEST(AdjustedSubtitles, OfARunOnlyTheNameOverItsSubtitleGoesWithIt) {
  const PlainDevice device;
  const BarPlot plot;
  Years years(14);
  for (const size_t i : {1, 3, 5, 7}) years.subtitles[i] = years.subtitles[i - 1];
  const auto shown = plot.adjustedSubtitles(years.subtitles, years.rects, years.labels);
  EXPECT_EQ(texts(*shown), (std::vector<std::string>{"2001", "", "", "", "2005", "", "", ""}));
  EXPECT_EQ(texts(years.labels), (std::vector<std::string>{"L0", "L1", "", "L3", "L4", "L5", "", "L7"}));
}

TEST(AdjustedSubtitles, AnEmptySubtitleBetweenTwoEqualOnesLetsBothStay) {
  const PlainDevice device;
  const BarPlot plot;
  Years years(40);
  years.subtitles.resize(3);
  years.labels.resize(3);
  years.rects.resize(3);
  years.subtitles[1] = {"", BarPlot::xLabelAttributes()};
  years.subtitles[2] = years.subtitles[0];
  const auto shown = plot.adjustedSubtitles(years.subtitles, years.rects, years.labels);
  EXPECT_EQ(texts(*shown), (std::vector<std::string>{"2001", "", "2001"}));
  EXPECT_EQ(years.rects[1].size.width, 0);
  EXPECT_DOUBLE_EQ(years.rects[2].size.width, 28.8);
  EXPECT_EQ(texts(years.labels), (std::vector<std::string>{"L0", "L1", "L2"}));
}

TEST(AdjustedSubtitles, NoneAreNone) {
  const BarPlot plot;
  std::vector<CGRect> rects;
  std::vector<NSAttributedString> labels;
  EXPECT_TRUE(plot.adjustedSubtitles({}, rects, labels)->empty());
}

TEST(RectsOverlap, LooksAtNeighboursThatHaveAWidth) {
  const CGRect a = CGRectMake(0, 0, 10, 10), touching = CGRectMake(10, 0, 10, 10), over = CGRectMake(9, 0, 10, 10);
  EXPECT_FALSE(BarPlot::_rectsOverlap({}));
  EXPECT_FALSE(BarPlot::_rectsOverlap({a, touching}));
  EXPECT_TRUE(BarPlot::_rectsOverlap({a, over}));
  EXPECT_TRUE(BarPlot::_rectsOverlap({a, NSZeroRect, NSZeroRect, over}));
  EXPECT_FALSE(BarPlot::_rectsOverlap({a, CGRectMake(50, 0, 1, 1), over}));  // only neighbours are compared
  EXPECT_FALSE(BarPlot::_rectsOverlap({NSZeroRect, a}));
  EXPECT_FALSE(BarPlot::_rectsOverlap({a, CGRectMake(5, 0, -2, 10), over}));  // a width, though no area
}

}  // namespace
}  // namespace zelkon
