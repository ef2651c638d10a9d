// The view of amounts over time: which chart it chooses, how it opens, what later data and frames do, and printing.
#include <gtest/gtest.h>

#include "AppKit/NSGraphicsContext.h"
#include "Classes/Views/BarOrLineView.h"
#include "Classes/Views/SpendingOverTimeBarView.h"
#include "Support/ChartHost.h"

namespace zelkon {
namespace {

const std::vector<PageCall> kDisplayed{{"GraphHasDisplayed", {}}};

TEST(BarOrLineView, TheFactoryMakesTheViewOfSpendingOverTime) {
  const ChartHost host;
  EXPECT_NE(dynamic_cast<SpendingOverTimeBarView*>(host.view.get()), nullptr);
  EXPECT_EQ(host.view->className(), "SpendingOverTimeBarView");
  EXPECT_EQ(host.view->startupAnimationsDidCompleteJSFunction(), "GraphHasDisplayed");
}

TEST(BarOrLineView, TheFirstFrameMakesTheRootLayerAndNoPlotter) {
  const ChartHost host({600, 300});
  const CALayerRef root = host.view->layer();
  ASSERT_NE(root, nullptr);
  EXPECT_TRUE(host.view->wantsLayer());
  EXPECT_EQ(root->autoresizingMask(), 18u);
  EXPECT_EQ(root->bounds(), CGRectMake(0, 0, 600, 300));
  EXPECT_EQ(root->position(), CGPointMake(300, 150));
  EXPECT_EQ(host.plotter(), nullptr);
}

TEST(BarOrLineView, ARootLayerLiesOnWholePointsAroundTheViewsCentre) {
  const ChartHost host({600.4, 300.5});
  // 601 by 301 around (300.2, 150.25) begins at (-0.3, -0.25).
  EXPECT_EQ(host.view->layer()->frame(), CGRectMake(-1, -1, 602, 302));
}

TEST(BarOrLineView, ARootLayerTakesItsNewPlaceAtOnce) {
  ChartHost host;
  host.show(chartOf(2));
  host.view->setFrame(CGRectMake(0, 0, 600.4, 300.5));
  EXPECT_EQ(host.view->layer()->frame(), CGRectMake(-1, -1, 602, 302));
  EXPECT_EQ(host.view->layer()->animationForKey("bounds"), nullptr);
  EXPECT_EQ(host.view->layer()->animationForKey("position"), nullptr);
}

TEST(BarOrLineView, EveryFrameAddsATrackingAreaOfTheVisibleRect) {
  ChartHost host;
  ASSERT_EQ(host.view->trackingAreas().size(), 1u);
  EXPECT_EQ(host.view->trackingAreas()[0]->options, 0x223u);
  EXPECT_EQ(host.view->trackingAreas()[0]->rect, NSZeroRect);
  host.setFrame(CGRectMake(0, 0, 500, 300));
  EXPECT_EQ(host.view->trackingAreas().size(), 2u);
}

TEST(BarOrLineView, TenEntriesAreBarsAndTwelveALineInFiveHundredPoints) {
  ChartHost ten({500, 300}), twelve({500, 300});
  ten.setData(chartOf(10));
  twelve.setData(chartOf(12));
  ASSERT_NE(ten.plotter(), nullptr);
  EXPECT_FALSE(ten.isLine());
  EXPECT_TRUE(twelve.isLine());
}

TEST(BarOrLineView, AnExactFitGivesBarsAndAPointLessALine) {
  ChartHost exact({460, 300}), narrower({459.9, 300});
  exact.setData(chartOf(10));
  narrower.setData(chartOf(10));
  ASSERT_NE(exact.plotter(), nullptr);
  EXPECT_FALSE(exact.isLine());
  EXPECT_TRUE(narrower.isLine());
}

TEST(BarOrLineView, AnEmptyArrayStoresNoEntriesAndMakesBars) {
  ChartHost host;
  host.show(pageArray({}));
  ASSERT_NE(host.data(), nullptr);
  EXPECT_EQ(host.data()->count(), 0u);
  ASSERT_NE(host.plotter(), nullptr);
  EXPECT_FALSE(host.isLine());
  EXPECT_TRUE(host.page->calls.empty());  // no animation ends
}

TEST(BarOrLineView, DataBeforeTheFrameWaitForIt) {
  ChartHost host({0, 0});
  host.setData(chartOf(3));
  EXPECT_EQ(host.plotter(), nullptr);
  host.setFrame(CGRectMake(0, 0, 657, 311));
  ASSERT_NE(host.plotter(), nullptr);
  host.turn(2);
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLineView, ThePageHearsOnceAfterTheTallestBar) {
  ChartHost host;
  host.setData(chartAmounts({"100", "50"}));  // 200 and 100 points: 0.2 and 0.1 seconds
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 2u);
  host.turn(0.11);
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 1u);
  EXPECT_TRUE(host.page->calls.empty());
  host.turn(0.1);
  EXPECT_EQ(host.page->calls, kDisplayed);
  host.turn(2);
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLineView, ADisplayDuringTheOpeningIsReportedWhenItsOwnBarsHaveGrown) {
  ChartHost host;
  host.setData(chartAmounts({"100", "50"}));  // 0.2 and 0.1 seconds
  host.turn(0.05);
  host.view->doDisplay();
  host.turn();
  host.turn(0.17);
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 1u) << "the second set's tall bar";
  EXPECT_TRUE(host.page->calls.empty());
  host.turn(0.05);
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLineView, ThePageHearsOnceAfterTheLineIsWipedIn) {
  ChartHost host({300, 311});
  host.setData(chartOf(12));
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 1u);
  host.turn(0.9);
  EXPECT_TRUE(host.page->calls.empty());
  host.turn(0.2);
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLineView, ABarOfNoHeightEndsWithTheOthers) {
  ChartHost host;
  host.show(chartAmounts({"100", "-50", "-0.001"}));
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLineView, OptionsAreThoseOfTheTimeTheChartIsMade) {
  ChartHost host;
  host.setOptions({ValueDictionary{{"key", "DisplayYLabels"}, {"value", false}}});
  host.show(chartOf(3));
  EXPECT_EQ(host.plotter()->plotRect().origin.x, 33);
  host.setOptions({ValueDictionary{{"key", "DisplayYLabels"}, {"value", true}},
                   ValueDictionary{{"key", "AllValuesPositive"}, {"value", true}}});
  EXPECT_EQ(host.plotter()->valueForPlotOptionKey("DisplayYLabels"), Value(false));
  EXPECT_EQ(host.plotter()->valueForPlotOptionKey("AllValuesPositive"), Value(false));
}

TEST(BarOrLineView, LaterDataLeaveTheChartShowingTheFirst) {
  ChartHost host;
  host.show(chartAmounts({"100", "50"}));
  const BarPlot* const plotter = host.plotter();
  const CGImageRef picture = host.view->layer()->contents();
  host.show(chartAmounts({"1", "2", "3"}));
  EXPECT_EQ(host.plotter(), plotter);
  EXPECT_EQ(host.view->layer()->contents(), picture);
  EXPECT_EQ(host.plotter()->plotData()->count(), 2u);
  EXPECT_EQ(host.data()->count(), 3u);  // stored all the same
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLineView, LaterDataPlaceTheFirstBarsAgainOverThemselves) {
  ChartHost host;
  host.show(chartAmounts({"100", "50"}));
  ASSERT_EQ(host.view->layer()->sublayers().size(), 2u);
  host.show(chartAmounts({"1", "2", "3"}));
  const std::vector<CALayerRef> bars = host.view->layer()->sublayers();
  ASSERT_EQ(bars.size(), 4u);
  EXPECT_EQ(bars[2]->bounds(), bars[0]->bounds());
  EXPECT_TRUE(bars[2]->animationKeys().empty());
}

TEST(BarOrLineView, AFrameChangeDuringTheOpeningLeavesTheTree) {
  ChartHost host;
  host.setData(chartOf(2));
  const std::vector<CALayerRef> bars = host.view->layer()->sublayers();
  ASSERT_EQ(bars.size(), 2u);
  const size_t areas = host.view->trackingAreas().size();
  host.setFrame(CGRectMake(0, 0, 400, 200));
  EXPECT_EQ(host.view->layer()->sublayers(), bars);
  EXPECT_EQ(host.view->trackingAreas().size(), areas);
  EXPECT_TRUE(host.page->calls.empty());
}

TEST(BarOrLineView, ALaterFrameChangePlacesTheSameBarsAgainAndKeepsTheKindOfChart) {
  ChartHost host;
  host.show(chartOf(10));
  const std::vector<CALayerRef> bars = host.view->layer()->sublayers();
  const CGImageRef picture = host.view->layer()->contents();
  host.setFrame(CGRectMake(0, 0, 100, 50));
  EXPECT_FALSE(host.isLine());
  const std::vector<CALayerRef> again = host.view->layer()->sublayers();
  ASSERT_EQ(again.size(), bars.size());
  EXPECT_NE(again[0], bars[0]);
  EXPECT_EQ(again[0]->bounds(), bars[0]->bounds());
  EXPECT_TRUE(again[0]->animationKeys().empty());
  EXPECT_EQ(host.view->layer()->contents(), picture);
  EXPECT_EQ(host.view->layer()->bounds(), CGRectMake(0, 0, 100, 50));
  host.turn(2);
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLineView, AThousandFrameChangesKeepOneSetOfBars) {
  ChartHost host;
  host.show(chartOf(3));
  for (int i = 0; i < 1000; ++i) {
    host.view->setFrame(CGRectMake(0, 0, 200 + i % 300, 100 + i % 200));
    if (i % 10 == 0) host.moveOver(1);
  }
  host.turn(1);
  EXPECT_LE(host.view->layer()->sublayers().size(), 4u);
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLineView, TooManyBarsAreLoggedAndThePageGoesOn) {
  ChartHost host({110, 311});
  host.setData(chartOf(3));  // fit the view but not the plot in it
  ASSERT_EQ(host.log.size(), 2u);
  EXPECT_EQ(host.log[0],
            "Exception thrown while processing javascript bridge at [SpendingOverTimeBarView js_setPlotData:].");
  EXPECT_EQ(host.log[1],
            "DEBUGGING: BarPlot cannot handle too many bars yet, the margins have shrunk to less than 2 pixels.");
  EXPECT_EQ(host.view->layer()->contents(), nullptr);
  host.turn(2);
  host.setData(chartOf(3));
  host.setFrame(CGRectMake(0, 0, 600, 311));
  host.turn(2);
  EXPECT_TRUE(host.page->calls.empty());
}

// The texts drawn when the view prints.
Drawn printOf(const ChartHost& host) {
  RecordingContext context;
  host.view->renderForPrintingInContext(context);
  return Drawn(*context.snapshot());
}

TEST(BarOrLinePrinting, DrawsTheTreeAndThenItsLayersASecondTime) {
  ChartHost host;
  host.show(chartOf(2));
  ASSERT_EQ(host.view->layer()->sublayers().size(), 2u);
  const Drawn paper = printOf(host);
  EXPECT_EQ(host.view->layer()->sublayers().size(), 4u);  // displayed once more for the paper
  // The background, two bars with the tree, and four bars on their own.
  EXPECT_EQ(paper.gradients.size(), 1u + 2 + 4);
}

TEST(BarOrLinePrinting, AfterTheOpeningDoesNotCallThePageAgain) {
  ChartHost host;
  host.show(chartOf(2));
  printOf(host);
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 0u);
  host.turn(0.1);
  host.turn(2);
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLinePrinting, DuringTheOpeningStillCallsItOnce) {
  ChartHost host;
  host.setData(chartOf(2));
  printOf(host);
  host.turn(0.1);
  host.turn(2);
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLinePrinting, DrawsALineWithTheTreeAndThenBothOfItsBodiesOnTheirOwn) {
  ChartHost host({300, 311});
  host.show(chartOf(12));
  ASSERT_EQ(host.view->layer()->sublayers().size(), 1u);
  const Drawn paper = printOf(host);
  EXPECT_EQ(host.view->layer()->sublayers().size(), 2u);
  EXPECT_EQ(paper.gradients.size(), 1u + 1 + 2);  // the background, the body with the tree, and two on their own
  size_t lines = 0;
  for (const DisplayList::Stroke& stroke : paper.strokes) lines += stroke.style.width == 2 ? 1 : 0;
  EXPECT_EQ(lines, 3u);
  host.turn(0.1);
  host.turn(2);
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLinePrinting, DuringTheWipeDrawsTheWholeLineAndThePageHearsOnce) {
  ChartHost host({300, 311});
  host.setData(chartOf(12));
  host.turn();
  host.turn(0.3);
  const Drawn paper = printOf(host);
  for (const DisplayList::Stroke& stroke : paper.strokes) {
    if (stroke.style.width == 2) {
      EXPECT_EQ(stroke.path.elements().size(), 12u);
    }
  }
  EXPECT_EQ(paper.gradients.size(), 1u + 1 + 2);
  host.turn(0.1);
  EXPECT_TRUE(host.page->calls.empty());
  host.turn(2);
  EXPECT_EQ(host.page->calls, kDisplayed);
}

TEST(BarOrLinePrinting, WithoutDataDrawsNothing) {
  const ChartHost host;
  EXPECT_TRUE(printOf(host).strokes.empty());
  const ChartHost without({0, 0});
  EXPECT_TRUE(printOf(without).texts.empty());
}

TEST(BarOrLinePrinting, GoesThroughDrawRectForAContextThatIsNotTheScreen) {
  ChartHost host;
  host.show(chartOf(2));
  RecordingContext context;
  NSGraphicsContext::setCurrentContext(NSGraphicsContext::graphicsContextWithGraphicsPort(&context, false));
  host.view->drawRect(host.view->bounds());
  NSGraphicsContext::setCurrentContext(nullptr);
  EXPECT_FALSE(context.snapshot()->isEmpty());
}

TEST(BarOrLineView, ScrollingMarksTheSuperviewUntilTheViewIsDestroyed) {
  ChartHost host({600, 300});
  const auto scroll = std::make_shared<NSScrollView>(CGRectMake(0, 0, 300, 300));
  const auto clip = std::make_shared<NSClipView>(CGRectMake(0, 0, 300, 300));
  const auto document = std::make_shared<NSView>(CGRectMake(0, 0, 600, 1000));
  host.window->contentView()->addSubview(scroll);
  scroll->setContentView(clip);
  clip->addSubview(document);
  document->addSubview(host.view);
  document->setNeedsDisplay(false);
  clip->scrollToPoint({0, 50});
  EXPECT_TRUE(document->needsDisplay());
  document->setNeedsDisplay(false);
  clip->scrollToPoint({0, 700});  // out of sight
  EXPECT_FALSE(document->needsDisplay());
  clip->scrollToPoint({0, 0});
  EXPECT_TRUE(document->needsDisplay());
  document->setNeedsDisplay(false);
  host.view->webPlugInDestroy();
  clip->scrollToPoint({0, 20});
  EXPECT_FALSE(document->needsDisplay());
}

TEST(BarOrLineView, StoppingHidesAndALaterFrameStartsANewRootLayer) {
  ChartHost host;
  host.show(chartOf(2));
  host.view->webPlugInStop();
  EXPECT_TRUE(host.view->isHidden());
  EXPECT_EQ(host.view->layer(), nullptr);
  host.moveOver(0);
  EXPECT_EQ(host.chart().currentHoverLayer(), nullptr);
  host.setFrame(CGRectMake(0, 0, 500, 311));
  EXPECT_NE(host.view->layer(), nullptr);
}

}  // namespace
}  // namespace zelkon
