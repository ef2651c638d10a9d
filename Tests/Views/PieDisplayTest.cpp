// Coming on screen, going away and scrolling.
#include <gtest/gtest.h>

#include <cmath>

#include "Classes/Views/NonretainedLayer.h"
#include "Classes/Views/PiePlotView.h"
#include "Foundation/NSNotificationCenter.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

PiePlotView& pieOf(ViewHost& host) { return static_cast<PiePlotView&>(*host.view); }

const std::vector<PageCall> displayedOnce{{"SpendingTrendsHaveDisplayed", {}}};

struct Row {
  CALayerRef layer;
  const char* key;
  const char* keyPath;
};
std::vector<Row> startupRows(PiePlotView& pie) {
  return {{pie.slicesLayer(), "com.zelkon.slicesLayerStartingOpacity", "opacity"},
          {pie.slicesLayer(), "com.zelkon.slicesLayerStartingTransform", "transform"},
          {pie.plotHighlightLayer(), "com.zelkon.plotHighlightLayerStartingOpacity", "opacity"},
          {pie.plotHighlightLayer(), "com.zelkon.plotHighlightLayerStartingTransform", "transform"},
          {pie.dropShadowLayer(), "com.zelkon.dropShadowLayerStartingTransform", "transform"}};
}

void expectAtRest(PiePlotView& pie) {
  for (const CALayerRef& layer : {pie.slicesLayer(), pie.plotHighlightLayer(), pie.dropShadowLayer()}) {
    EXPECT_EQ(layer->opacity(), 1);
    EXPECT_EQ(layer->transform(), CATransform3DIdentity);
  }
}

TEST(PieDisplay, StartingDisplaysOneTurnLater) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  host.view->webPlugInStart();
  EXPECT_TRUE(pieOf(host).initialDisplay());
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 0u);
  host.turn();
  EXPECT_FALSE(pieOf(host).initialDisplay());
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 5u);
}

TEST(PieDisplay, FiveAnimationsBringTheContainersToRest) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  host.view->webPlugInStart();
  host.turn();
  PiePlotView& pie = pieOf(host);
  for (const Row& row : startupRows(pie)) {
    const CABasicAnimation* animation = row.layer->animationForKey(row.key);
    ASSERT_NE(animation, nullptr) << row.key;
    EXPECT_EQ(animation->keyPath, row.keyPath);
    EXPECT_EQ(animation->duration, 0.25);
    EXPECT_EQ(animation->timingFunction, kCAMediaTimingFunctionDefault);
    EXPECT_FALSE(animation->removedOnCompletion);
    EXPECT_EQ(animation->valueForKey("key"), Value(row.key));
    EXPECT_EQ(animation->valueForKey("layer").object<NonretainedLayer>()->nonretainedObjectValue(), row.layer);
    EXPECT_EQ(animation->delegate.lock(), std::static_pointer_cast<CALayerPlotView>(host.view));
    if (std::string(row.keyPath) == "opacity")
      EXPECT_EQ(std::get<double>(*animation->toValue), 1);
    else
      EXPECT_EQ(std::get<CATransform3D>(*animation->toValue), CATransform3DIdentity);
  }
  EXPECT_EQ(pie.dropShadowLayer()->animationForKey("opacity"), nullptr) << "its opacity jumps";
  expectAtRest(pie);
}

TEST(PieDisplay, HalfWayThroughThePieHasGrownTurnedAndFadedByTheDefaultCurve) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  host.view->webPlugInStart();
  host.turn();
  PiePlotView& pie = pieOf(host);
  const double start = CACurrentMediaTime();
  const CALayerProperties first = pie.slicesLayer()->presentation(start);
  EXPECT_NEAR(first.opacity, 0, 1e-9);
  EXPECT_NEAR(first.transform.m11, -0.1, 1e-9);
  const CALayerProperties half = pie.slicesLayer()->presentation(start + 0.125);
  EXPECT_NEAR(half.opacity, 0.8024, 1e-4);
  const double angle = 3.141592653589793 * (1 - 0.8024), scale = 0.1 + 0.9 * 0.8024;
  EXPECT_NEAR(half.transform.m11, scale * std::cos(angle), 1e-3);
  EXPECT_NEAR(half.transform.m12, scale * std::sin(angle), 1e-3);
  const CALayerProperties strip = pie.dropShadowLayer()->presentation(start + 0.125);
  EXPECT_NEAR(strip.transform.m11, 0.01 + 0.99 * 0.8024, 1e-3);
  EXPECT_EQ(strip.transform.m22, 1);
  EXPECT_EQ(strip.opacity, 1);
}

TEST(PieDisplay, ThePageHearsOnceWhenAllFiveHaveStopped) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  host.view->webPlugInStart();
  host.turn();
  host.turn(0.2);
  EXPECT_TRUE(host.page->calls.empty());
  host.turn(0.05);
  EXPECT_EQ(host.page->calls, displayedOnce);
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 0u);
  host.turn(1);
  EXPECT_EQ(host.page->calls, displayedOnce);
}

TEST(PieDisplay, DataBeforeTheDisplayAnimatesInWithTheRest) {
  ViewHost host;
  host.view->webPlugInStart();
  host.call("SetPlotData", {pageAmounts({1, 3})});
  EXPECT_EQ(pieOf(host).slicesLayer()->opacity(), 0);
  host.turn();
  host.turn(0.3);
  expectAtRest(pieOf(host));
  EXPECT_EQ(host.page->calls, displayedOnce);
}

TEST(PieDisplay, DataAfterTheDisplayIsLaidOutAtRest) {
  ViewHost host;
  host.display();
  EXPECT_EQ(host.page->calls, displayedOnce);
  host.call("SetPlotData", {pageAmounts({1, 3})});
  expectAtRest(pieOf(host));
  EXPECT_EQ(pieOf(host).slicesLayer()->sublayers().size(), 2u);
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 0u);
  host.turn(1);
  EXPECT_EQ(host.page->calls, displayedOnce);
}

TEST(PieDisplay, AnEmptyPieGrowsInAndIsReported) {
  ViewHost host;
  host.call("SetPlotData", {pageArray({})});
  host.display();
  EXPECT_EQ(pieOf(host).slicesLayer()->sublayers().size(), 1u);
  EXPECT_EQ(host.page->calls, displayedOnce);
}

TEST(PieDisplay, WithoutDataTheGlossAndTheShadowAloneAnimateAndAreReported) {
  ViewHost host;
  host.view->webPlugInStart();
  host.turn();
  EXPECT_TRUE(pieOf(host).slicesLayer()->sublayers().empty());
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 5u);
  host.turn(0.3);
  EXPECT_EQ(host.page->calls, displayedOnce);
}

TEST(PieDisplay, DisplayingAgainRunsTheAnimationsAgain) {
  ViewHost host;
  host.display();
  host.view->doDisplay();
  CATransaction::flush();
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 5u);
  host.turn(0.3);
  EXPECT_EQ(host.page->calls.size(), 2u);
}

TEST(PieDisplay, ADisplayDuringTheOpeningIsReportedWhenItsOwnAnimationsEnd) {
  ViewHost host;
  host.view->webPlugInStart();
  host.turn();
  host.turn(0.1);
  host.view->doDisplay();
  host.turn();
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 5u) << "the replaced animations were not among them";
  host.turn(0.2);
  EXPECT_TRUE(host.page->calls.empty());
  host.turn(0.1);
  EXPECT_EQ(host.page->calls, displayedOnce);
}

TEST(PieDisplay, AViewWithoutALayerDisplaysWithoutHarm) {
  ViewHost host("pie", {0, 0});
  ASSERT_EQ(host.view->layer(), nullptr);
  host.view->webPlugInStart();
  host.turn();
  host.turn(0.3);
  EXPECT_FALSE(pieOf(host).initialDisplay());
  host.setFrame(CGRectMake(0, 0, 300, 200));
  EXPECT_NE(host.view->layer(), nullptr);
}

TEST(PieDisplay, ReplacingDataDuringTheOpeningKeepsItsAnimations) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  host.view->webPlugInStart();
  host.turn();
  host.turn(0.1);
  host.call("SetPlotData", {pageAmounts({1, 1, 1})});
  host.setFrame(CGRectMake(0, 0, 320, 220));
  EXPECT_EQ(host.view->numberOfPendingAnimations(), 5u);
  host.turn(0.2);
  EXPECT_EQ(host.page->calls, displayedOnce);
}

TEST(PieDisplay, ThePageMayReplaceTheDataWhenItHearsOfTheEnd) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  host.page->onCall = [&] { host.call("SetPlotData", {pageAmounts({1, 1, 1})}); };
  host.display();
  EXPECT_EQ(host.page->calls, displayedOnce);
  EXPECT_EQ(pieOf(host).slicesLayer()->sublayers().size(), 3u);
  expectAtRest(pieOf(host));
}

TEST(PieDisplay, ThePageMayTakeTheViewAwayWhenItHearsOfTheEnd) {
  ViewHost host;
  host.page->onCall = [&] {
    host.view->webPlugInStop();
    host.view->webPlugInDestroy();
    host.view->removeFromSuperview();
  };
  host.display();
  EXPECT_EQ(host.page->calls, displayedOnce);
}

TEST(PieDisplay, StoppingBeforeTheFirstTurnCancelsTheDisplay) {
  ViewHost host;
  host.view->webPlugInStart();
  host.view->webPlugInStop();
  host.turn();
  EXPECT_TRUE(pieOf(host).initialDisplay());
  EXPECT_TRUE(host.view->isHidden());
  EXPECT_TRUE(host.page->calls.empty());
}

TEST(PieDisplay, StoppingHidesWithoutFading) {
  ViewHost host;
  host.display();
  const CALayerRef root = host.view->layer();
  host.view->webPlugInStop();
  EXPECT_TRUE(root->isHidden());
  EXPECT_EQ(root->animationForKey("hidden"), nullptr);
}

TEST(PieDisplay, AStoppedViewLeavesNothingBehind) {
  std::weak_ptr<CALayer> root;
  std::weak_ptr<CALayerPlotView> view;
  {
    ViewHost host;
    host.call("SetPlotData", {pageAmounts({1, 3})});
    host.view->webPlugInStart();
    host.turn();
    root = host.view->layer();
    view = host.view;
    host.view->webPlugInStop();
    host.view->removeFromSuperview();
  }
  CATransaction::flush();
  EXPECT_TRUE(root.expired());
  EXPECT_TRUE(view.expired());
}

TEST(PieDisplay, AViewDroppedInTheMiddleOfItsOpeningIsFreed) {
  std::weak_ptr<CALayer> slices;
  {
    ViewHost host;
    host.view->webPlugInStart();
    host.turn();
    slices = pieOf(host).slicesLayer();
    host.view->removeFromSuperview();
  }
  CATransaction::flush();
  EXPECT_TRUE(slices.expired());
}

struct Scrolled : ViewHost {
  std::shared_ptr<NSScrollView> scroller = std::make_shared<NSScrollView>(CGRectMake(0, 0, 200, 200));
  std::shared_ptr<NSClipView> clip = std::make_shared<NSClipView>(CGRectMake(0, 0, 200, 200));
  size_t before = NSNotificationCenter::defaultCenter().observerCount();
  Scrolled() {
    view->removeFromSuperview();
    window->contentView()->addSubview(scroller);
    scroller->setContentView(clip);
    clip->addSubview(view);
  }
  size_t observing() const { return NSNotificationCenter::defaultCenter().observerCount() - before; }
};

TEST(PieDisplay, ScrollingRedisplaysTheSuperview) {
  Scrolled host;
  EXPECT_EQ(host.observing(), 2u);
  host.clip->setNeedsDisplay(false);
  host.clip->scrollToPoint({0, 50});
  EXPECT_TRUE(host.clip->needsDisplay());
  host.clip->setNeedsDisplay(false);
  host.clip->setFrame(CGRectMake(0, 0, 180, 180));
  EXPECT_TRUE(host.clip->needsDisplay());
}

TEST(PieDisplay, AViewScrolledWhollyOutOfSightCausesNoRedisplay) {
  Scrolled host;
  host.clip->setNeedsDisplay(false);
  host.clip->scrollToPoint({0, 5000});
  EXPECT_FALSE(host.clip->needsDisplay());
}

TEST(PieDisplay, DestroyingEndsTheObservation) {
  Scrolled host;
  host.view->webPlugInDestroy();
  EXPECT_EQ(host.observing(), 0u);
  host.clip->setNeedsDisplay(false);
  host.clip->scrollToPoint({0, 50});
  EXPECT_FALSE(host.clip->needsDisplay());
}

TEST(PieDisplay, AViewOutsideAScrollViewObservesNothingAndIsSafelyDestroyed) {
  const size_t before = NSNotificationCenter::defaultCenter().observerCount();
  ViewHost host;
  EXPECT_EQ(NSNotificationCenter::defaultCenter().observerCount(), before);
  host.view->webPlugInDestroy();
  host.view->webPlugInDestroy();
}

}  // namespace
}  // namespace zelkon
