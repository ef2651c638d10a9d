#include <gtest/gtest.h>

#include <functional>

#include "AppKit/NSWindow.h"

namespace zelkon {
namespace {

constexpr unsigned hoverOptions = 0x223;

class RecordingView : public NSView {
 public:
  explicit RecordingView(CGRect frame) : NSView(frame) {}
  void mouseDown(const NSEvent& event) override { note("down", event); }
  void mouseEntered(const NSEvent& event) override { note("entered", event); }
  void mouseMoved(const NSEvent& event) override { note("moved", event); }
  void mouseExited(const NSEvent& event) override { note("exited", event); }
  NSTrackingAreaRef track(unsigned options = hoverOptions, CGRect rect = NSZeroRect) {
    auto area = std::make_shared<NSTrackingArea>(
        NSTrackingArea{rect, options, std::static_pointer_cast<NSView>(shared_from_this())});
    addTrackingArea(area);
    return area;
  }
  std::vector<std::string> takeEvents() { return std::exchange(events, {}); }

  std::vector<std::string> events;
  CGPoint place;
  std::function<void()> during;  // runs inside every handler

 private:
  void note(const char* name, const NSEvent& event) {
    events.push_back(name);
    place = event.locationInWindow;
    if (during) during();
  }
};
using Events = std::vector<std::string>;

class NSWindowTest : public testing::Test {
 protected:
  std::shared_ptr<RecordingView> addView(CGRect frame) {
    auto view = std::make_shared<RecordingView>(frame);
    window_->contentView()->addSubview(view);
    return view;
  }
  std::unique_ptr<NSWindow> window_ = std::make_unique<NSWindow>(CGSize{200, 200});
};

TEST_F(NSWindowTest, OptionsAreEnteredExitedMovedKeyWindowAndVisibleRect) {
  EXPECT_EQ(hoverOptions, NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveInKeyWindow |
                              NSTrackingInVisibleRect);
}

TEST_F(NSWindowTest, EnteredComesBeforeMovedAndMovedOnlyInside) {
  const auto view = addView({{50, 50}, {100, 100}});
  view->track();
  window_->sendMouseMoved({10, 10});
  EXPECT_EQ(view->takeEvents(), Events{});
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(view->takeEvents(), (Events{"entered", "moved"}));
  EXPECT_EQ(view->place, (CGPoint{60, 70}));
  window_->sendMouseMoved({61, 70});
  EXPECT_EQ(view->takeEvents(), Events{"moved"});
  window_->sendMouseMoved({150, 70});
  EXPECT_EQ(view->takeEvents(), Events{"exited"});
  window_->sendMouseMoved({160, 70});
  EXPECT_EQ(view->takeEvents(), Events{});
}

TEST_F(NSWindowTest, LeavingTheWindowExits) {
  const auto view = addView({{0, 0}, {200, 200}});
  view->track();
  window_->sendMouseMoved({60, 70});
  view->takeEvents();
  window_->sendMouseExited();
  window_->sendMouseExited();
  EXPECT_EQ(view->takeEvents(), Events{"exited"});
}

TEST_F(NSWindowTest, OnlyTheKeyWindowTracks) {
  const auto view = addView({{0, 0}, {200, 200}});
  view->track();
  window_->setKeyWindow(false);
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(view->takeEvents(), Events{});
  window_->setKeyWindow(true);
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(view->takeEvents(), (Events{"entered", "moved"}));
  window_->setKeyWindow(false);
  window_->sendMouseMoved({61, 70});
  EXPECT_EQ(view->takeEvents(), Events{"exited"});
}

TEST_F(NSWindowTest, AnAreaWithoutTheVisibleRectOptionHasItsOwnRectangle) {
  const auto view = addView({{50, 50}, {100, 100}});
  view->track(NSTrackingMouseEnteredAndExited, {{10, 10}, {20, 20}});
  window_->sendMouseMoved({55, 55});
  EXPECT_EQ(view->takeEvents(), Events{});
  window_->sendMouseMoved({60, 60});
  window_->sendMouseMoved({61, 60});
  EXPECT_EQ(view->takeEvents(), Events{"entered"});
}

TEST_F(NSWindowTest, HiddenAndScrolledAwayViewsHearNothing) {
  const auto view = addView({{0, 0}, {200, 200}});
  view->track();
  view->setHidden(true);
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(view->takeEvents(), Events{});
  view->setHidden(false);
  window_->contentView()->setBoundsOrigin({0, 190});
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(view->takeEvents(), Events{});
  window_->sendMouseMoved({60, 5});
  EXPECT_EQ(view->takeEvents(), (Events{"entered", "moved"}));
}

TEST_F(NSWindowTest, TwoAreasOfOneOwnerDeliverTwice) {
  const auto view = addView({{0, 0}, {200, 200}});
  view->track();
  view->track();
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(view->takeEvents(), (Events{"entered", "entered", "moved", "moved"}));
}

TEST_F(NSWindowTest, ARemovedAreaHearsNothingNotEvenAnExit) {
  const auto view = addView({{0, 0}, {200, 200}});
  const auto area = view->track();
  window_->sendMouseMoved({60, 70});
  view->removeTrackingArea(area);
  view->takeEvents();
  window_->sendMouseMoved({61, 70});
  window_->sendMouseExited();
  EXPECT_EQ(view->takeEvents(), Events{});
}

TEST_F(NSWindowTest, AnAreaAddedUnderThePointerReportsTheLeaving) {
  const auto view = addView({{50, 50}, {100, 100}});
  window_->sendMouseMoved({60, 70});
  view->track();
  window_->sendMouseMoved({10, 10});
  EXPECT_EQ(view->takeEvents(), Events{"exited"});
  window_->sendMouseMoved({60, 70});
  view->takeEvents();
  view->track();
  window_->sendMouseExited();
  EXPECT_EQ(view->takeEvents(), (Events{"exited", "exited"}));
}

TEST_F(NSWindowTest, AnAreaAddedBesideThePointerReportsNothing) {
  const auto view = addView({{50, 50}, {100, 100}});
  window_->sendMouseMoved({10, 10});
  view->track();
  window_->sendMouseExited();
  EXPECT_EQ(view->takeEvents(), Events{});
  view->track();
  window_->sendMouseExited();
  EXPECT_EQ(view->takeEvents(), Events{}) << "no pointer in the window";
}

TEST_F(NSWindowTest, AnAreaThatReplacesOneUnderThePointerReportsTheLeavingWhereverItsViewWent) {
  const auto view = addView({{50, 50}, {100, 100}});
  auto area = view->track();
  window_->sendMouseMoved({140, 70});
  view->takeEvents();
  for (int i = 0; i < 3; ++i) {
    view->setFrame(CGRectMake(50, 50, 40, 40));
    view->removeTrackingArea(area);
    area = view->track();
  }
  window_->sendMouseExited();
  EXPECT_EQ(view->takeEvents(), Events{"exited"});
  window_->sendMouseMoved({140, 70});
  window_->sendMouseExited();
  EXPECT_EQ(view->takeEvents(), Events{});
}

TEST_F(NSWindowTest, AnAreaDoesNotKeepItsOwner) {
  const auto holder = addView({{0, 0}, {200, 200}});
  auto owner = std::make_shared<RecordingView>(CGRectZero);
  holder->addTrackingArea(std::make_shared<NSTrackingArea>(NSTrackingArea{{}, hoverOptions, owner}));
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(owner->takeEvents(), (Events{"entered", "moved"}));
  owner.reset();
  window_->sendMouseMoved({61, 70});
  window_->sendMouseExited();
}

TEST_F(NSWindowTest, AHandlerMayRemoveAreas) {
  const auto view = addView({{0, 0}, {200, 200}});
  const auto area = view->track();
  view->during = [&] { view->removeTrackingArea(area); };
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(view->takeEvents(), Events{"entered"});
}

TEST_F(NSWindowTest, AHandlerMayReplaceItsArea) {
  const auto view = addView({{0, 0}, {200, 200}});
  auto area = view->track();
  view->during = [&] {
    view->during = nullptr;
    view->removeTrackingArea(area);
    area = view->track();
  };
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(view->takeEvents(), Events{"entered"});
  window_->sendMouseMoved({61, 70});
  EXPECT_EQ(view->takeEvents(), (Events{"entered", "moved"}));
}

TEST_F(NSWindowTest, AHandlerMayEndItsViewAndOthers) {
  auto first = addView({{0, 0}, {200, 200}});
  auto second = addView({{0, 0}, {200, 200}});
  first->track();
  second->track();
  const std::weak_ptr<NSView> firstAlive = first, secondAlive = second;
  RecordingView* raw = first.get();
  raw->during = [&first, &second] {
    first->removeFromSuperview();
    second->removeFromSuperview();
    first.reset();
    second.reset();
  };
  window_->sendMouseMoved({60, 70});
  EXPECT_TRUE(firstAlive.expired());
  EXPECT_TRUE(secondAlive.expired());
  EXPECT_TRUE(window_->contentView()->subviews().empty());
}

TEST_F(NSWindowTest, AHandlerMayEndTheWindow) {
  const auto first = addView({{0, 0}, {200, 200}}), second = addView({{0, 0}, {200, 200}});
  first->track();
  second->track();
  first->during = [&] { window_.reset(); };
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(first->takeEvents(), Events{"entered"});
  EXPECT_EQ(second->takeEvents(), Events{});
}

TEST_F(NSWindowTest, AHandlerMayMoveThePointerOn) {
  const auto view = addView({{0, 0}, {100, 200}});
  view->track();
  view->during = [&] {
    view->during = nullptr;
    window_->sendMouseMoved({150, 70});
  };
  window_->sendMouseMoved({60, 70});
  EXPECT_EQ(view->takeEvents(), (Events{"entered", "exited"}));
}

TEST_F(NSWindowTest, ClicksGoToTheDeepestVisibleViewOnTop) {
  const auto below = addView({{0, 0}, {200, 200}}), above = addView({{50, 50}, {100, 100}});
  const auto inside = std::make_shared<RecordingView>(CGRectMake(40, 40, 100, 100));
  above->addSubview(inside);
  window_->sendMouseDown({10, 10});
  EXPECT_EQ(below->takeEvents(), Events{"down"});
  window_->sendMouseDown({60, 60});
  EXPECT_EQ(above->takeEvents(), Events{"down"});
  window_->sendMouseDown({100, 100});
  EXPECT_EQ(inside->takeEvents(), Events{"down"});
  window_->sendMouseDown({160, 160});  // in the inner view's frame, but clipped by the one above it
  EXPECT_EQ(below->takeEvents(), Events{"down"});
  above->setHidden(true);
  window_->sendMouseDown({100, 100});
  EXPECT_EQ(below->takeEvents(), Events{"down"});
  window_->sendMouseDown({300, 300});
  EXPECT_EQ(below->takeEvents().size() + above->takeEvents().size() + inside->takeEvents().size(), 0u);
}

TEST_F(NSWindowTest, AClickMayEndTheWindow) {
  const auto view = addView({{0, 0}, {200, 200}});
  view->during = [&] { window_.reset(); };
  window_->sendMouseDown({10, 10});
  EXPECT_EQ(view->takeEvents(), Events{"down"});
}

}  // namespace
}  // namespace zelkon
