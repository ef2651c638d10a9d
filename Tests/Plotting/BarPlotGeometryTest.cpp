// Options, generation, the plot rectangle, the widths of the bars and their rectangles.
#include <gtest/gtest.h>

#include <cmath>

#include "AppKit/NSGraphicsContext.h"
#include "Classes/Plotting/BarPlot.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSException.h"
#include "Support/PlotterHost.h"

namespace zelkon {
namespace {

using Host = PlotterHost<BarPlot>;

// Without value labels the plot begins 33 points from the left and is 57 points narrower than the layer; with category
// labels it begins 56 points from the bottom and is 111 points lower.
ValueDictionary withoutValueLabels() { return {{"DisplayYLabels", false}}; }

std::vector<double> amounts(size_t count, double amount = 100) { return std::vector<double>(count, amount); }

TEST(CashFlowPlot, DataBeforeTheRootLayerAreStoredAndDrawNothing) {
  Host host(600, 311);
  host.plot->setRootLayer(nullptr);
  host.plot->setPlotData(plotAmounts({1, 2}));
  EXPECT_EQ(host.plot->plotData()->count(), 2u);
  host.plot->setRootLayer(host.root);
  EXPECT_EQ(host.root->contents(), nullptr);
  host.plot->setPlotData(host.plot->plotData());
  EXPECT_NE(host.root->contents(), nullptr);
}

TEST(CashFlowPlot, NoDataClearTheDataAndLeaveTheLayers) {
  Host host(600, 311);
  host.plot->setPlotData(plotAmounts({1, 2}));
  host.plot->doDisplay();
  ASSERT_EQ(host.root->sublayers().size(), 2u);
  const CGImageRef picture = host.root->contents();
  host.plot->setPlotData(nullptr);
  EXPECT_EQ(host.plot->plotData(), nullptr);
  EXPECT_EQ(host.root->sublayers().size(), 2u);
  EXPECT_EQ(host.root->contents(), picture);
}

TEST(CashFlowPlot, OptionsComeFromThePageAsTheyAreOrFromTheClass) {
  CashFlowPlot base;
  EXPECT_TRUE(base.valueForPlotOptionKey("DisplayXLabels").isNull());
  Host host(600, 311, {{"DisplayXLabels", "no"}, {"Other", 5}});
  EXPECT_EQ(host.plot->valueForPlotOptionKey("DisplayXLabels"), Value("no"));
  EXPECT_EQ(host.plot->valueForPlotOptionKey("Other"), Value(5));
  host.plot->setPlotOptions(nullptr);
  EXPECT_EQ(host.plot->valueForPlotOptionKey("DisplayXLabels"), Value(true));
}

TEST(CashFlowPlot, AnOptionOfAnUnexpectedTypeStillWinsOverTheDefault) {
  Host host(600, 311, {{"AllValuesPositive", ValueArray{1}}, {"DisplayYLabels", ValueDictionary{}}});
  EXPECT_EQ(host.plot->valueForPlotOptionKey("AllValuesPositive"), Value(ValueArray{1}));
  EXPECT_EQ(host.plot->valueForPlotOptionKey("DisplayYLabels"), Value(ValueDictionary{}));
}

TEST(CashFlowPlot, ALayerWithoutSublayersHasNothingToRemove) {
  CashFlowPlot base;
  const CALayerRef layer = CALayer::layer(), sublayer = CALayer::layer();
  base._destroyLayerHierarchy(layer);
  base._destroyLayerHierarchy(nullptr);
  EXPECT_TRUE(layer->sublayers().empty());
  layer->addSublayer(sublayer);
  layer->addSublayer(CALayer::layer());
  base._destroyLayerHierarchy(layer);
  EXPECT_TRUE(layer->sublayers().empty());
  EXPECT_EQ(sublayer->superlayer(), nullptr);
}

TEST(CashFlowPlot, TheDefaultTextColourIsOneOpaqueBlack) {
  EXPECT_EQ(CashFlowPlot::defaultTextColor(), CashFlowPlot::defaultTextColor());
  EXPECT_EQ(CashFlowPlot::defaultTextColor()->components(), (std::vector<double>{0, 1}));
}

TEST(BarPlot, OptionsHaveTheirDefaults) {
  const BarPlot plot;
  EXPECT_EQ(plot.defaultPlotOptionValueForKey("DisplayXLabels"), Value(true));
  EXPECT_EQ(plot.defaultPlotOptionValueForKey("DisplayYLabels"), Value(true));
  EXPECT_EQ(plot.defaultPlotOptionValueForKey("AllValuesPositive"), Value(false));
  EXPECT_EQ(plot.defaultPlotOptionValueForKey("YTickMarksExtendFullWidth"), Value(false));
  EXPECT_TRUE(plot.defaultPlotOptionValueForKey("CurrencyID").isNull());
  EXPECT_EQ(BarPlot::minimumBarWidth(), 10);
  EXPECT_EQ(BarPlot::minimumBarSpacing(), 40);
}

TEST(BarPlot, OnlyNegativeAmountsReachFromTheLowestToZero) {
  Host host(600, 311);
  host.plot->setPlotData(plotAmounts({-20, -75, -5}));
  EXPECT_EQ(host.plot->_findMinAmount().min, -75);
  EXPECT_EQ(host.plot->_findMinAmount().max, 0);
  host.setOptions({{"AllValuesPositive", true}});
  EXPECT_EQ(host.plot->_findMinAmount().min, 0);
  EXPECT_EQ(host.plot->_findMinAmount().max, 75);
}

TEST(BarPlot, NoAmountsReachFromZeroToZero) {
  Host host(600, 311);
  EXPECT_EQ(host.plot->_findMinAmount().max, 0);
  host.plot->setPlotData(plotAmounts({}));
  EXPECT_EQ(host.plot->_findMinAmount().min, 0);
  EXPECT_EQ(host.plot->_findMinAmount().max, 0);
}

// The option is looked up for each amount: one that has no truth value does no harm where there are none.
TEST(BarPlot, AnOptionWithoutATruthValueRaisesOnlyWhereItIsAskedFor) {
  Host host(600, 311, {{"AllValuesPositive", ValueArray{1}}});
  EXPECT_NO_THROW(host.plot->setPlotData(plotAmounts({})));
  EXPECT_NE(host.root->contents(), nullptr);
  EXPECT_THROW(host.plot->setPlotData(plotAmounts({1})), NSException);
}

TEST(BarPlot, OptionsAreTakenByTheirTruthWhetherNumbersOrBooleans) {
  for (const Value& yes : {Value(true), Value(1), Value(0.5), Value("YES"), Value("1")}) {
    Host host(600, 311, {{"AllValuesPositive", yes}});
    host.plot->setPlotData(plotAmounts({-20}));
    EXPECT_EQ(host.plot->_findMinAmount().max, 20) << yes.description();
  }
  for (const Value& no : {Value(false), Value(0), Value(0.0), Value("NO"), Value("")}) {
    Host host(600, 311, {{"AllValuesPositive", no}});
    host.plot->setPlotData(plotAmounts({-20}));
    EXPECT_EQ(host.plot->_findMinAmount().min, -20) << no.description();
  }
}

// The widest value label, "100", is 39.96 points.
class WideDevice : public PlainDevice {
 public:
  double advanceOfText(const FontFace&, std::string_view text) override {
    return 1.48 * static_cast<double>(text.size());
  }
};

TEST(BarPlot, ThePlotStandsRightOfTheValueLabelsTheirGapTheTickAndItsGap) {
  Host host(600, 311);
  const WideDevice wide;
  host.plot->setPlotData(plotAmounts({100, 50}));
  EXPECT_EQ(host.plot->plotRect(), CGRectMake(85, 56, 600 - 65 - 44, 200));
}

TEST(BarPlot, FullWidthGridlinesTakeNoTickAndNoGapAfterIt) {
  Host host(600, 311, {{"YTickMarksExtendFullWidth", true}});
  const WideDevice wide;
  host.plot->setPlotData(plotAmounts({100, 50}));
  EXPECT_EQ(host.plot->plotRect(), CGRectMake(72, 56, 600 - 52 - 44, 200));
}

TEST(BarPlot, WithoutValueLabelsTickAndGapStay) {
  Host host(600, 311, withoutValueLabels());
  host.plot->setPlotData(plotAmounts({100, 50}));
  EXPECT_EQ(host.plot->plotRect(), CGRectMake(33, 56, 543, 200));
  EXPECT_TRUE(host.plot->yLabels().empty());
  EXPECT_EQ(host.plot->yTickmarks(), (Gridlines{0, 25, 50, 75, 100}));
}

TEST(BarPlot, WithoutCategoryLabelsThePlotReachesDownIntoTheirPlace) {
  Host host(600, 311, {{"DisplayYLabels", false}, {"DisplayXLabels", false}});
  host.plot->setPlotData(plotAmounts({100, 50}));
  EXPECT_EQ(host.plot->plotRect(), CGRectMake(33, 41, 543, 215));
  EXPECT_TRUE(host.drawn().texts.empty());
}

TEST(BarPlot, TheOriginOfTheRootLayersBoundsMovesThePlot) {
  Host host(600, 311, withoutValueLabels());
  host.root->setBounds(CGRectMake(10, 20, 600, 311));
  host.plot->setPlotData(plotAmounts({100, 50}));
  EXPECT_EQ(host.plot->plotRect(), CGRectMake(43, 76, 543, 200));
}

TEST(BarPlot, ThreeBarsInSixHundredPointsAre146WideWithMarginsOf40) {
  Host host(657, 311, withoutValueLabels());
  host.plot->setPlotData(plotAmounts(amounts(3)));
  ASSERT_EQ(host.plot->plotRect().size.width, 600);
  EXPECT_EQ(host.plot->barWidth(), 146);
  EXPECT_EQ(host.plot->barMargin(), 40);
}

TEST(BarPlot, OneBarInFiveHundredPointsIsCappedAndCentred) {
  Host host(557, 311, withoutValueLabels());
  host.plot->setPlotData(plotAmounts(amounts(1)));
  ASSERT_EQ(host.plot->plotRect().size.width, 500);
  EXPECT_EQ(host.plot->barWidth(), 230);
  EXPECT_EQ(host.plot->barMargin(), 135);
}

// Of 421 points 191 are too many: 95 of them go to either margin and the odd one to none.
TEST(BarPlot, WhatACappedBarGivesUpIsAddedToTheMarginsInWholePoints) {
  Host host(558, 311, withoutValueLabels());
  host.plot->setPlotData(plotAmounts(amounts(1)));
  EXPECT_EQ(host.plot->barWidth(), 230);
  EXPECT_EQ(host.plot->barMargin(), 135);
}

struct Widths {
  size_t count;
  double barWidth, barMargin;
};
class BarsInThreeHundredPoints : public testing::TestWithParam<Widths> {};

TEST_P(BarsInThreeHundredPoints, TradeMarginForWidth) {
  Host host(357, 311, withoutValueLabels());
  host.plot->setPlotData(plotAmounts(amounts(GetParam().count)));
  ASSERT_EQ(host.plot->plotRect().size.width, 300);
  EXPECT_EQ(host.plot->barWidth(), GetParam().barWidth);
  EXPECT_EQ(host.plot->barMargin(), GetParam().barMargin);
}

// Halved from 40 while wider than the bars and above 5, then point by point for bars of 10.
INSTANTIATE_TEST_SUITE_P(BarPlot, BarsInThreeHundredPoints,
                         testing::Values(Widths{3, 46, 40}, Widths{4, 50, 20}, Widths{7, 20, 20}, Widths{8, 26, 10},
                                         Widths{19, 10, 5}, Widths{20, 10, 4}, Widths{22, 10, 3}));

TEST(BarPlot, TooManyBarsRaiseAndLeaveTheOldPicture) {
  Host host(357, 311, withoutValueLabels());
  host.plot->setPlotData(plotAmounts(amounts(3)));
  const CGImageRef picture = host.root->contents();
  try {
    host.plot->setPlotData(plotAmounts(amounts(30)));
    FAIL() << "no exception";
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.name(), NSInternalInconsistencyException);
    EXPECT_EQ(exception.reason(),
              "DEBUGGING: BarPlot cannot handle too many bars yet, the margins have shrunk to less than 2 pixels.");
  }
  EXPECT_EQ(host.plot->barMargin(), 3);
  EXPECT_EQ(host.plot->barWidth(), 6);
  EXPECT_EQ(host.root->contents(), picture);
  EXPECT_EQ(host.plot->renderContext(), nullptr);
  EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
}

TEST(BarPlot, NoEntriesGiveAxesAndNoBars) {
  Host host(600, 311);
  host.plot->setPlotData(plotAmounts({}));
  host.plot->doDisplay();
  EXPECT_NE(host.root->contents(), nullptr);
  EXPECT_TRUE(host.root->sublayers().empty());
  EXPECT_EQ(host.plot->yTickmarks(), Gridlines{0});
}

TEST(BarPlot, TheRenderContextLivesForAGenerationOnly) {
  struct Watching : BarPlot {
    bool had = false;
    void createXLabels() override {
      had = renderContext() != nullptr && NSGraphicsContext::currentContext() != nullptr &&
            NSGraphicsContext::currentContext()->graphicsPort() == renderContext().get();
      BarPlot::createXLabels();
    }
  };
  PlotterHost<Watching> host(600, 311);
  host.plot->setPlotData(plotAmounts({1}));
  EXPECT_TRUE(host.plot->had);
  EXPECT_EQ(host.plot->renderContext(), nullptr);
  EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
}

// The failure that handing over those amounts ends with.
std::optional<AssertionFailure> failureOf(BarPlot& plot, const std::vector<double>& given) {
  std::optional<AssertionFailure> failure;
  const auto earlier = NSAssertionHandler::setHandler([&](const AssertionFailure& each) { failure = each; });
  EXPECT_THROW(plot.setPlotData(plotAmounts(given)), NSException);
  NSAssertionHandler::setHandler(earlier);
  return failure;
}

TEST(BarPlot, ALayerWithoutASizeFailsTheContextAssertion) {
  Host host(0, 0);
  const auto failure = failureOf(*host.plot, {1});
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->text, "Invalid parameter not satisfying: NULL != renderContext");
  EXPECT_EQ(failure->operation, "-[BarPlot generatePlot]");
  EXPECT_EQ(failure->object, host.plot.get());
  EXPECT_EQ(failure->file, "Classes/Plotting/BarPlot");
  EXPECT_EQ(failure->line, 319);
}

// A layer less than 111 points high has no room for a plot, and what is below zero would lie above it.
TEST(BarPlot, ABarBelowZeroThatWouldLieAboveItFailsItsAssertion) {
  Host host(657, 61, withoutValueLabels());
  const auto failure = failureOf(*host.plot, {100, -50});
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->text, "Invalid parameter not satisfying: bottom <= zeroLineY");
  EXPECT_EQ(failure->operation, "-[BarPlot renderPlotBody]");
  EXPECT_EQ(failure->file, "Classes/Plotting/BarPlot");
  EXPECT_EQ(failure->line, 882);
  EXPECT_EQ(host.plot->renderContext(), nullptr);
  EXPECT_EQ(host.root->contents(), nullptr);
}

TEST(BarPlot, TheStepsOfAGenerationRunInTheirOrder) {
  struct Ordered : BarPlot {
    std::string steps;
    void createXLabels() override {
      steps += "x labels, ";
      BarPlot::createXLabels();
    }
    void renderXGridlinesAndLabels() override {
      steps += yTickmarks().empty() || barWidth() == 0 ? "too early, " : "x axis, ";
      BarPlot::renderXGridlinesAndLabels();
    }
    void renderPlotBody() override {
      steps += "body, ";
      BarPlot::renderPlotBody();
    }
  };
  PlotterHost<Ordered> host(600, 311);
  host.plot->setPlotData(plotAmounts({1}));
  EXPECT_EQ(host.plot->steps, "x labels, x axis, body, ");
}

// Lines at -50, 0, 50 and 100 over 200 points put zero at a third: 66 points above the plot's bottom at 56.
TEST(BarPlot, BarsStandOnTheZeroLine) {
  Host host(657, 311, withoutValueLabels());
  const PlotEntryListRef data = plotAmounts({100, -50, 0});
  host.plot->setPlotData(data);
  ASSERT_EQ(host.plot->yTickmarks(), (Gridlines{-50, 0, 50, 100}));
  EXPECT_EQ(host.plot->rectForEntry(data->entry(0)), CGRectMake(73, 122, 146, 134));
  EXPECT_EQ(host.plot->rectForEntry(data->entry(1)), CGRectMake(259, 56, 146, 66));
  EXPECT_EQ(host.plot->rectForEntry(data->entry(2)), NSZeroRect);
}

TEST(BarPlot, ATinyAmountStillHasABarOfTwoPointsAndATinyNegativeOneItsTrueHeight) {
  Host host(657, 311, withoutValueLabels());
  const PlotEntryListRef data = plotAmounts({100, -50, 0.001, -0.001});
  host.plot->setPlotData(data);
  EXPECT_EQ(host.plot->rectForEntry(data->entry(2)).size.height, 2);
  EXPECT_EQ(host.plot->rectForEntry(data->entry(3)).size.height, 0);
  EXPECT_EQ(host.plot->rectForEntry(data->entry(3)).origin.y, 122);
}

TEST(BarPlot, WithAllValuesPositiveEveryBarFacesUp) {
  Host host(657, 311, {{"DisplayYLabels", false}, {"AllValuesPositive", 1}});
  const PlotEntryListRef data = plotAmounts({100, -50});
  host.plot->setPlotData(data);
  EXPECT_EQ(host.plot->yTickmarks().front(), 0);
  EXPECT_EQ(host.plot->rectForEntry(data->entry(1)).origin.y, 56);
  EXPECT_EQ(host.plot->rectForEntry(data->entry(1)).size.height, 100);
}

TEST(BarPlot, HitTestingKnowsSlotsEdgesAndGaps) {
  Host host(657, 311, withoutValueLabels());
  const PlotEntryListRef data = plotAmounts({100, -50, 0});
  host.plot->setPlotData(data);
  EXPECT_EQ(host.plot->entryForPoint({73, 122}), data->entry(0));  // left and bottom edges are inside
  EXPECT_EQ(host.plot->entryForPoint({218.9, 255.9}), data->entry(0));
  EXPECT_EQ(host.plot->entryForPoint({219, 130}), nullptr);  // right edge
  EXPECT_EQ(host.plot->entryForPoint({100, 256}), nullptr);  // top edge
  EXPECT_EQ(host.plot->entryForPoint({240, 130}), nullptr);  // between the bars
  EXPECT_EQ(host.plot->entryForPoint({300, 60}), data->entry(1));
  EXPECT_EQ(host.plot->entryForPoint({500, 122}), nullptr);  // over the zero
  EXPECT_EQ(host.plot->rectForEntry(nullptr), NSZeroRect);
}

TEST(BarPlot, EqualEntriesShareTheLaterRectangle) {
  Host host(657, 311, withoutValueLabels());
  const PlotEntryListRef data = plotEntries({plotEntry(5, "Same"), plotEntry(5, "Same"), plotEntry(6, "Same")});
  host.plot->setPlotData(data);
  EXPECT_EQ(host.plot->rectForEntry(data->entry(0)), host.plot->rectForEntry(data->entry(1)));
  EXPECT_EQ(host.plot->rectForEntry(data->entry(0)).origin.x, 259);
  EXPECT_EQ(host.plot->rectForEntry(data->entry(2)).origin.x, 445);
}

TEST(BarPlot, AmountsAtTheEndOfTheNumberRangeDoNoHarm) {
  Host host(657, 311, withoutValueLabels());
  for (const double amount : {1.7e308, -1.7e308, 5e-324}) {
    try {
      host.plot->setPlotData(plotAmounts({amount, 1, -amount}));
      host.plot->doDisplay();
    } catch (const NSException&) {
    }
    EXPECT_EQ(host.plot->renderContext(), nullptr);
  }
}

}  // namespace
}  // namespace zelkon
