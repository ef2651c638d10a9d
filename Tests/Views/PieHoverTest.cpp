// Hover and click: hit test, visual states, and what the page hears.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Classes/Views/PiePlotView.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

constexpr int64_t notFound = std::numeric_limits<int64_t>::max();
constexpr double pi = 3.141592653589793;

PiePlotView& pieOf(ViewHost& host) { return static_cast<PiePlotView&>(*host.view); }
PiePlotEntryRef entryAt(ViewHost& host, size_t index) { return pieOf(host).piePlotData()->entries().at(index); }

PageCall hoverCall(int64_t index, int64_t previous) { return {"SpendingTrendsSliceHoverIndex", {index, previous}}; }

// A displayed pie around (150, 108.5) with radius 81.5.
struct Pie : ViewHost {
  explicit Pie(const std::vector<double>& amounts) {
    call("SetPlotData", {pageAmounts(amounts)});
    display();
    page->calls.clear();
  }
  // The pointer at an angle, half way out.
  void moveTo(double angle) { move(150 + 40 * std::cos(angle), 108.5 + 40 * std::sin(angle)); }
  void moveToCorner() { move(2, 198); }
};

void expectResting(ViewHost& host, size_t index) {
  const PiePlotEntryRef entry = entryAt(host, index);
  const auto slice = entry->layerValue.lock();
  const CALayerRef label = entry->textLayerValue.lock();
  EXPECT_FALSE(entry->hover);
  EXPECT_TRUE(slice->filters().empty());
  EXPECT_EQ(slice->sliceBorderColor(), nullptr);
  EXPECT_EQ(slice->sliceBorderWidth(), 0);
  EXPECT_TRUE(label->isHidden());
  EXPECT_NEAR(label->transform().m11, 1, 1e-12);
}

void expectHovered(ViewHost& host, size_t index) {
  const PiePlotEntryRef entry = entryAt(host, index);
  const auto slice = entry->layerValue.lock();
  const CALayerRef label = entry->textLayerValue.lock();
  EXPECT_TRUE(entry->hover);
  ASSERT_EQ(slice->filters().size(), 1u);
  EXPECT_EQ(std::get<CIExposureAdjust>(*slice->filters()[0]).inputEV, 0.5);
  ASSERT_NE(slice->sliceBorderColor(), nullptr);
  EXPECT_EQ(slice->sliceBorderColor()->components(), (std::vector<double>{1, 0.25}));
  EXPECT_EQ(slice->sliceBorderWidth(), 1);
  EXPECT_FALSE(label->isHidden());
  EXPECT_NEAR(label->transform().m11, -1, 1e-12);
  EXPECT_NEAR(label->transform().m22, -1, 1e-12);
}

TEST(PieHover, TheTrackingAreaCoversTheVisiblePartOfTheKeyWindow) {
  ViewHost host;
  ASSERT_EQ(host.view->trackingAreas().size(), 1u);
  const NSTrackingAreaRef area = host.view->trackingAreas()[0];
  EXPECT_EQ(area->options, 0x223u);
  EXPECT_EQ(area->rect, NSZeroRect);
  EXPECT_EQ(area->owner.lock(), host.view);
  host.setFrame(CGRectMake(0, 0, 320, 200));
  ASSERT_EQ(host.view->trackingAreas().size(), 1u);
  EXPECT_NE(host.view->trackingAreas()[0], area) << "replaced";
  host.view->webPlugInStop();
  EXPECT_TRUE(host.view->trackingAreas().empty());
}

TEST(PieHover, TheAngleOfAPointFindsItsSlice) {
  Pie pie({1, 3});
  const PiePlotView& view = pieOf(pie);
  EXPECT_EQ(view._entryForPoint({180, 138.5}), entryAt(pie, 0)) << "up and to the right";
  EXPECT_EQ(view._entryForPoint({150, 60}), entryAt(pie, 1)) << "straight below";
  EXPECT_EQ(view._entryForPoint({150, 108.5}), entryAt(pie, 0)) << "the centre";
  EXPECT_EQ(view._entryForPoint({100, 108.5}), entryAt(pie, 1)) << "to the left";
  EXPECT_EQ(view._entryForPoint({190, 108.4}), entryAt(pie, 1)) << "just below three o'clock";
}

TEST(PieHover, TheRimBelongsToThePieAndNothingFartherOut) {
  Pie pie({1, 3});
  const PiePlotView& view = pieOf(pie);
  EXPECT_EQ(view._entryForPoint({150 + 81.5, 108.5}), entryAt(pie, 0));
  EXPECT_EQ(view._entryForPoint({150 + 81.5001, 108.5}), nullptr);
  EXPECT_EQ(view._entryForPoint({150, 108.5 - 81.5}), entryAt(pie, 1));
  EXPECT_EQ(view._entryForPoint({std::nan(""), 108.5}), nullptr);
}

TEST(PieHover, RoundingNeverLosesTheLastSlice) {
  Pie pie({0.1, 0.1, 0.1, 0.1, 0.1, 0.1, 0.1});
  EXPECT_EQ(pieOf(pie)._entryForPoint({200, 108.5 - 1e-6}), entryAt(pie, 6));
}

TEST(PieHover, AClickTellsThePageTheSlice) {
  Pie pie({1, 3});
  pie.click(150, 108.5);
  pie.click(150 + 81.5, 108.5);
  pie.click(150, 60);
  pie.click(150 + 82, 108.5);
  EXPECT_EQ(pie.page->calls, (std::vector<PageCall>{{"SpendingTrendsSliceClicked", {0}},
                                                    {"SpendingTrendsSliceClicked", {0}},
                                                    {"SpendingTrendsSliceClicked", {1}}}));
}

TEST(PieHover, MovingWithinOneSliceIsToldOnce) {
  Pie pie({1, 3});
  pie.moveTo(0.2);
  pie.moveTo(0.4);
  pie.moveTo(0.6);
  EXPECT_EQ(pie.page->calls.size(), 1u);
}

TEST(PieHover, ComingFromOutsideThePreviousIndexIsTheLargestInteger) {
  Pie pie({1, 1, 1, 1});
  pie.moveTo(0.75 * pi);
  EXPECT_EQ(pie.page->calls, (std::vector<PageCall>{hoverCall(1, notFound)}));
  EXPECT_EQ(notFound, 9223372036854775807);
}

TEST(PieHover, MovingOnOffAndOutIsToldWithBothIndices) {
  Pie pie({1, 1, 1, 1});
  pie.moveTo(1.25 * pi);
  pie.moveTo(0.25 * pi);
  pie.moveToCorner();
  pie.moveToCorner();
  pie.exit();
  EXPECT_EQ(pie.page->calls,
            (std::vector<PageCall>{hoverCall(2, notFound), hoverCall(0, 2), hoverCall(-1, 0), hoverCall(-1, -1)}));
  EXPECT_EQ(pieOf(pie).currentHoverEntry(), nullptr);
}

TEST(PieHover, LeavingTheViewFromASliceIsToldWithoutIndices) {
  Pie pie({1, 1});
  pie.moveTo(1);
  EXPECT_EQ(pieOf(pie).currentHoverEntry(), entryAt(pie, 0));
  pie.exit();
  EXPECT_EQ(pie.page->calls.back(), hoverCall(-1, -1));
  EXPECT_EQ(pieOf(pie).currentHoverEntry(), nullptr);
  expectResting(pie, 0);
}

TEST(PieHover, AfterAFrameChangeUnderThePointerLeavingIsToldAndTheSliceCanBeHoveredAgain) {
  for (const CGSize size : {CGSize{320, 240}, CGSize{120, 100}}) {
    Pie pie({1, 3});
    const CGPoint onFirst{180, 130};
    pie.window->sendMouseMoved(onFirst);
    pie.setFrame(CGRectMake(0, 0, size.width, size.height));
    pie.window->sendMouseExited();
    EXPECT_EQ(pie.page->calls, (std::vector<PageCall>{hoverCall(0, notFound), hoverCall(-1, -1)})) << size.width;
    EXPECT_EQ(pieOf(pie).currentHoverEntry(), nullptr);
    pie.setFrame(CGRectMake(0, 0, 300, 200));
    pie.window->sendMouseMoved(onFirst);
    EXPECT_EQ(pie.page->calls.back(), hoverCall(0, notFound));
    EXPECT_EQ(pie.page->calls.size(), 3u);
  }
}

TEST(PieHover, EnteringTheViewDoesNothing) {
  Pie pie({1, 1});
  pie.view->mouseEntered({NSEvent::Type::mouseEntered, {170, 110}});
  EXPECT_TRUE(pie.page->calls.empty());
  EXPECT_EQ(pieOf(pie).currentHoverEntry(), nullptr);
}

TEST(PieHover, AnEmptyPieReportsNoHits) {
  ViewHost host;
  host.call("SetPlotData", {pageArray({})});
  host.display();
  host.page->calls.clear();
  host.move(150, 108.5);
  host.click(150, 108.5);
  EXPECT_TRUE(host.page->calls.empty());
}

TEST(PieHover, AHoveredSliceIsBrighterOutlinedInFrontAndLabelled) {
  Pie pie({1, 1, 2});
  pie.moveTo(0.25 * pi);
  expectHovered(pie, 0);
  expectResting(pie, 1);
  const auto slices = pieOf(pie).slicesLayer()->sublayers();
  EXPECT_EQ(slices.back(), entryAt(pie, 0)->layerValue.lock());
  EXPECT_EQ(slices.size(), 3u);
}

// The borders in a slice's picture: the colour and the width of each stroke.
std::vector<std::pair<RGBA, double>> drawnBorders(const CALayer& slice) {
  std::vector<std::pair<RGBA, double>> borders;
  for (const DisplayList::Command& command : slice.contents()->recording()->commands())
    if (const auto* stroke = std::get_if<DisplayList::Stroke>(&command))
      borders.emplace_back(stroke->color, stroke->style.width);
  return borders;
}

TEST(PieHover, TheBorderShowsWhenTheSliceIsNextDrawn) {
  Pie pie({1, 1, 2});
  const auto slice = entryAt(pie, 0)->layerValue.lock();
  ASSERT_FALSE(slice->needsDisplay());
  ASSERT_TRUE(drawnBorders(*slice).empty());
  // As moveTo(0.25 * pi), before anything is laid out or drawn.
  pie.view->mouseMoved({NSEvent::Type::mouseMoved, {180, 138.5}});
  ASSERT_EQ(slice->sliceBorderWidth(), 1);
  EXPECT_FALSE(slice->needsDisplay()) << "only laid out anew";
  CATransaction::flush();
  EXPECT_TRUE(drawnBorders(*slice).empty());
  slice->setNeedsDisplay();
  CATransaction::flush();
  EXPECT_EQ(drawnBorders(*slice), (std::vector<std::pair<RGBA, double>>{{{1, 1, 1, 0.25}, 1}}));
}

TEST(PieHover, TheLabelTurnsUprightAndFadesInByImplicitAnimations) {
  Pie pie({1, 1, 2});
  const CALayerRef label = entryAt(pie, 0)->textLayerValue.lock();
  pie.moveTo(0.25 * pi);
  EXPECT_NE(label->animationForKey("transform"), nullptr);
  EXPECT_NE(label->animationForKey("hidden"), nullptr);
  pie.turn(0.5);
  EXPECT_EQ(label->animationForKey("transform"), nullptr);
}

TEST(PieHover, HalfWayTheLabelHasTurnedAndFadedByTheDefaultCurve) {
  Pie pie({1, 1, 2});
  const CALayerRef label = entryAt(pie, 0)->textLayerValue.lock();
  pie.moveTo(0.25 * pi);
  const CALayerProperties half = label->presentation(CACurrentMediaTime() + 0.125);
  EXPECT_NEAR(half.hiddenFade, 0.8024, 1e-4);
  EXPECT_NEAR(half.transform.m11, std::cos(-pi * 0.8024), 1e-3);
  EXPECT_NEAR(half.transform.m12, std::sin(-pi * 0.8024), 1e-3) << "clockwise";
  EXPECT_NEAR(half.transform.m11 * half.transform.m22 - half.transform.m12 * half.transform.m21, 1, 1e-9)
      << "turned, not shrunk";
}

TEST(PieHover, AHoverThatEndsEarlyTurnsBackFromWhereTheLabelIs) {
  Pie pie({1, 1, 2});
  const CALayerRef label = entryAt(pie, 0)->textLayerValue.lock();
  pie.moveTo(0.25 * pi);
  pie.turn(0.125);
  const CALayerProperties left = label->presentation(CACurrentMediaTime());
  pie.moveToCorner();
  const CALayerProperties back = label->presentation(CACurrentMediaTime());
  EXPECT_NEAR(back.transform.m11, left.transform.m11, 1e-9);
  EXPECT_NEAR(back.transform.m12, left.transform.m12, 1e-9);
  EXPECT_NEAR(back.hiddenFade, left.hiddenFade, 1e-9);
  pie.turn(0.25);
  EXPECT_EQ(label->presentation(CACurrentMediaTime()).hiddenFade, 0);
}

TEST(PieHover, LeavingASliceTakesItBackToRestInItsPlaceInFront) {
  Pie pie({1, 1, 2});
  pie.moveTo(0.25 * pi);
  pie.moveTo(0.75 * pi);
  expectResting(pie, 0);
  expectHovered(pie, 1);
  pie.moveToCorner();
  expectResting(pie, 1);
  const auto slices = pieOf(pie).slicesLayer()->sublayers();
  EXPECT_EQ(slices[2], entryAt(pie, 1)->layerValue.lock());
  EXPECT_EQ(slices[1], entryAt(pie, 0)->layerValue.lock());
}

TEST(PieHover, ThePageHighlightsASliceWithoutBeingCalledBack) {
  Pie pie({1, 1, 2});
  ASSERT_TRUE(pie.call("HoverEntryAtIndex", {true, 1}));
  expectHovered(pie, 1);
  EXPECT_EQ(pieOf(pie).currentHoverEntry(), nullptr);
  EXPECT_TRUE(pie.page->calls.empty());
  pie.call("HoverEntryAtIndex", {true, 2.0});
  expectResting(pie, 1);
  expectHovered(pie, 2);
  EXPECT_TRUE(pie.page->calls.empty());
  pie.moveTo(0.25 * pi);
  expectResting(pie, 2);
  expectHovered(pie, 0);
}

TEST(PieHover, HighlightingTheSameSliceTwiceTurnsItsLabelOnce) {
  Pie pie({1, 1, 2});
  pie.call("HoverEntryAtIndex", {true, 1});
  pie.call("HoverEntryAtIndex", {true, 1});
  expectHovered(pie, 1);
  pie.call("HoverEntryAtIndex", {false, 1});
  expectResting(pie, 1);
}

TEST(PieHover, AnIndexWithoutASliceClearsAllHoverStates) {
  for (const Value& index : {Value(-1), Value(3), Value(1e300), Value(-1e300)}) {
    Pie pie({1, 1, 2});
    pie.call("HoverEntryAtIndex", {true, 0});
    pie.call("HoverEntryAtIndex", {true, index});
    for (size_t i = 0; i < 3; ++i) expectResting(pie, i);
  }
  Pie pie({1, 1, 2});
  pie.call("HoverEntryAtIndex", {true, 0});
  pie.call("HoverEntryAtIndex", {});
  expectResting(pie, 0);
}

TEST(PieHover, WithoutDataThePageHighlightsNothing) {
  ViewHost host;
  EXPECT_TRUE(host.call("HoverEntryAtIndex", {true, 0}));
  EXPECT_TRUE(host.log.empty());
}

TEST(PieHover, ANewLayoutMakesLayersAtRestThoughTheEntryStillCarriesItsHover) {
  Pie pie({1, 1, 2});
  pie.moveTo(0.25 * pi);
  pie.setFrame(CGRectMake(0, 0, 320, 200));
  const PiePlotEntryRef entry = entryAt(pie, 0);
  EXPECT_TRUE(entry->hover);
  EXPECT_TRUE(entry->layerValue.lock()->filters().empty());
  pie.call("HoverEntryAtIndex", {true, 0});
  EXPECT_TRUE(entry->layerValue.lock()->filters().empty()) << "not brightened again while it carries the mark";
  pie.call("HoverEntryAtIndex", {false, 0});
  pie.call("HoverEntryAtIndex", {true, 0});
  EXPECT_FALSE(entry->layerValue.lock()->filters().empty());
}

TEST(PieHover, ThePageMayReplaceTheDataWhileItIsTold) {
  Pie pie({1, 1, 2});
  pie.page->onCall = [&] {
    pie.page->onCall = nullptr;
    pie.call("SetPlotData", {pageAmounts({5, 5})});
    pie.call("HoverEntryAtIndex", {true, 1});
  };
  pie.moveTo(0.25 * pi);
  EXPECT_EQ(pie.page->calls, (std::vector<PageCall>{hoverCall(0, notFound)}));
  EXPECT_EQ(pieOf(pie).piePlotData()->count(), 2u);
  expectResting(pie, 1);
  pie.moveTo(0.3 * pi);
  EXPECT_EQ(pie.page->calls.back(), hoverCall(0, notFound)) << "the old entry is not among the new ones";
  expectHovered(pie, 0);
}

TEST(PieHover, AfterTheDataWasReplacedLeavingTellsThatTheOldSliceIsNotFound) {
  Pie pie({1, 1, 2});
  pie.moveTo(0.25 * pi);
  pie.call("SetPlotData", {pageAmounts({5, 5})});
  pie.moveToCorner();
  EXPECT_EQ(pie.page->calls.back(), hoverCall(-1, notFound));
}

TEST(PieHover, ThePageMayTakeTheViewAwayWhileItIsTold) {
  for (const bool clicks : {false, true}) {
    Pie pie({1, 1, 2});
    std::shared_ptr<CALayerPlotView> view = pie.view;
    const std::weak_ptr<CALayerPlotView> watched = view;
    pie.view = std::make_shared<PiePlotView>(Value());
    pie.page->onCall = [&] {
      view->webPlugInStop();
      view->webPlugInDestroy();
      view->removeFromSuperview();
      view = nullptr;
      EXPECT_FALSE(watched.expired()) << "the view keeps itself while it calls";
    };
    PiePlotView& alone = static_cast<PiePlotView&>(*view);
    const NSEvent event{NSEvent::Type::mouseMoved, {170, 120}};
    if (clicks)
      alone.mouseDown(event);
    else
      alone.mouseMoved(event);
    EXPECT_EQ(pie.page->calls.size(), 1u);
    EXPECT_TRUE(watched.expired());
  }
}

TEST(PieHover, ThePageMayMoveThePointerWhileItIsTold) {
  Pie pie({1, 1, 2});
  pie.page->onCall = [&] {
    pie.page->onCall = nullptr;
    pie.moveTo(1.5 * pi);
  };
  pie.moveTo(0.25 * pi);
  EXPECT_EQ(pie.page->calls, (std::vector<PageCall>{hoverCall(0, notFound), hoverCall(2, 0)}));
}

TEST(PieHover, EventsOfTheWindowReachThePie) {
  Pie pie({1, 1, 2});
  pie.setFrame(CGRectMake(100, 50, 300, 200));
  pie.window->sendMouseMoved({100 + 170, 50 + 130});
  pie.window->sendMouseDown({100 + 170, 50 + 130});
  pie.window->sendMouseMoved({600, 600});
  EXPECT_EQ(pie.page->calls,
            (std::vector<PageCall>{hoverCall(0, notFound), {"SpendingTrendsSliceClicked", {0}}, hoverCall(-1, -1)}));
}

}  // namespace
}  // namespace zelkon
