#include <gtest/gtest.h>

#include "AppKit/NSScrollView.h"
#include "AppKit/NSWindow.h"
#include "Foundation/NSException.h"
#include "Foundation/NSNotificationCenter.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {
namespace {

std::shared_ptr<NSView> makeView(double x, double y, double width, double height) {
  return std::make_shared<NSView>(CGRectMake(x, y, width, height));
}

// Counts the notifications of one name from one sender.
class Listener {
 public:
  Listener(std::string name, const void* sender) {
    NSNotificationCenter::defaultCenter().addObserver(
        this, [this](const NSNotification&) { ++count; }, std::move(name), sender);
  }
  ~Listener() { NSNotificationCenter::defaultCenter().removeObserver(this); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  int count = 0;
};

TEST(NSView, BoundsHaveTheFramesSize) { EXPECT_EQ(makeView(5, 6, 70, 80)->bounds(), CGRectMake(0, 0, 70, 80)); }

TEST(NSView, PointsConvertThroughTheHierarchy) {
  NSWindow window({200, 200});
  const auto outer = makeView(0, 0, 200, 200), inner = makeView(50, 30, 100, 100);
  window.contentView()->addSubview(outer);
  outer->addSubview(inner);
  EXPECT_EQ(inner->convertPointFromWindow({60, 40}), (CGPoint{10, 10}));
  EXPECT_EQ(inner->convertPointToWindow({10, 10}), (CGPoint{60, 40}));
  outer->setBoundsOrigin({0, 15});
  EXPECT_EQ(inner->convertPointFromWindow({60, 40}), (CGPoint{10, 25}));
}

TEST(NSView, WithoutAWindowPointsComeFromTheTopmostSuperview) {
  const auto outer = makeView(1000, 1000, 200, 200), inner = makeView(50, 30, 100, 100);
  EXPECT_EQ(outer->convertPointFromWindow({60, 40}), (CGPoint{60, 40}));
  outer->addSubview(inner);
  EXPECT_EQ(inner->convertPointFromWindow({60, 40}), (CGPoint{10, 10}));
}

TEST(NSView, TheVisibleRectIsWhatNoAncestorClips) {
  const auto outer = makeView(0, 0, 100, 100), inner = makeView(60, -20, 80, 80);
  EXPECT_EQ(inner->visibleRect(), CGRectMake(0, 0, 80, 80));
  outer->addSubview(inner);
  EXPECT_EQ(inner->visibleRect(), CGRectMake(0, 20, 40, 60));
  outer->setBoundsOrigin({0, 30});
  EXPECT_EQ(inner->visibleRect(), CGRectMake(0, 50, 40, 30));
  outer->setBoundsOrigin({0, 60});
  EXPECT_EQ(inner->visibleRect(), NSZeroRect);
}

TEST(NSView, NothingIsVisibleOfHiddenViews) {
  const auto outer = makeView(0, 0, 100, 100), inner = makeView(0, 0, 50, 50);
  outer->addSubview(inner);
  outer->setHidden(true);
  EXPECT_EQ(inner->visibleRect(), NSZeroRect);
  EXPECT_TRUE(inner->isHiddenOrHasHiddenAncestor());
  EXPECT_FALSE(inner->isHidden());
  outer->setHidden(false);
  EXPECT_EQ(inner->visibleRect(), CGRectMake(0, 0, 50, 50));
}

TEST(NSView, FrameNotificationsComeOnlyWithRealChanges) {
  const auto view = makeView(0, 0, 10, 10);
  const Listener listener(NSViewFrameDidChangeNotification, view.get());
  view->setFrame({{0, 0}, {10, 10}});
  EXPECT_EQ(listener.count, 0);
  view->setFrame({{0, 0}, {20, 10}});
  EXPECT_EQ(listener.count, 1);
  view->setFrame({{5, 0}, {20, 10}});
  EXPECT_EQ(listener.count, 2);
  view->setPostsFrameChangedNotifications(false);
  view->setFrame({{6, 0}, {20, 10}});
  EXPECT_EQ(listener.count, 2);
}

TEST(NSView, BoundsNotificationsComeOnlyWhenAskedForExceptFromClipViews) {
  const auto view = makeView(0, 0, 10, 10);
  const Listener listener(NSViewBoundsDidChangeNotification, view.get());
  view->setBoundsOrigin({1, 1});
  EXPECT_EQ(listener.count, 0);
  view->setPostsBoundsChangedNotifications(true);
  view->setBoundsOrigin({1, 1});
  EXPECT_EQ(listener.count, 0);
  view->setBoundsOrigin({2, 1});
  EXPECT_EQ(listener.count, 1);
  const auto clip = std::make_shared<NSClipView>(CGRectMake(0, 0, 10, 10));
  const Listener clipListener(NSViewBoundsDidChangeNotification, clip.get());
  clip->scrollToPoint({0, 40});
  EXPECT_EQ(clipListener.count, 1);
}

TEST(NSView, ADestroyedViewObservesNothing) {
  const size_t before = NSNotificationCenter::defaultCenter().observerCount();
  auto view = makeView(0, 0, 10, 10);
  NSNotificationCenter::defaultCenter().addObserver(
      view.get(), [](const NSNotification&) {}, NSViewBoundsDidChangeNotification, nullptr);
  view.reset();
  EXPECT_EQ(NSNotificationCenter::defaultCenter().observerCount(), before);
}

class MovedView : public NSView {
 public:
  MovedView() : NSView(CGRectMake(0, 0, 10, 10)) {}
  void viewDidMoveToSuperview() override { superviews.push_back(superview().get()); }
  std::vector<const NSView*> superviews;
};

TEST(NSView, HearsOfItsNewSuperview) {
  const auto first = makeView(0, 0, 10, 10), second = makeView(0, 0, 10, 10);
  const auto view = std::make_shared<MovedView>();
  first->addSubview(view);
  second->addSubview(view);
  EXPECT_TRUE(first->subviews().empty());
  view->removeFromSuperview();
  view->removeFromSuperview();
  EXPECT_EQ(view->superviews, (std::vector<const NSView*>{first.get(), second.get(), nullptr}));
  EXPECT_TRUE(second->subviews().empty());
}

TEST(NSView, CannotBeAddedToItselfOrItsSubviews) {
  const auto outer = makeView(0, 0, 10, 10), inner = makeView(0, 0, 10, 10);
  outer->addSubview(inner);
  EXPECT_THROW(inner->addSubview(outer), NSException);
  EXPECT_THROW(inner->addSubview(inner), NSException);
}

TEST(NSView, FindsItsScrollView) {
  const auto scrollView = std::make_shared<NSScrollView>(CGRectMake(0, 0, 100, 100));
  scrollView->setContentView(std::make_shared<NSClipView>(CGRectZero));
  const auto view = makeView(0, 0, 100, 500);
  EXPECT_EQ(view->enclosingScrollView(), nullptr);
  scrollView->contentView()->addSubview(view);
  EXPECT_EQ(view->enclosingScrollView(), scrollView);
  EXPECT_EQ(scrollView->enclosingScrollView(), nullptr);
  scrollView->setFrame({{0, 0}, {60, 40}});
  EXPECT_EQ(scrollView->contentView()->frame(), CGRectMake(0, 0, 60, 40));
  scrollView->contentView()->scrollToPoint({0, 480});
  EXPECT_EQ(view->visibleRect(), CGRectMake(0, 480, 60, 20));
  scrollView->contentView()->scrollToPoint({0, 501});
  EXPECT_EQ(view->visibleRect(), NSZeroRect);
}

TEST(NSView, TheHostedLayerFollowsTheViewWithoutAnimation) {
  NSWindow window({300, 200});
  const auto view = makeView(20, 30, 300, 200);
  window.contentView()->addSubview(view);
  const CALayerRef root = CALayer::layer();
  view->setLayer(root);
  view->setWantsLayer(true);
  EXPECT_EQ(root->bounds(), CGRectMake(0, 0, 300, 200));
  EXPECT_EQ(root->position(), (CGPoint{150, 100}));
  CATransaction::flush();
  view->setFrame({{0, 0}, {100, 80}});
  EXPECT_EQ(root->bounds(), CGRectMake(0, 0, 100, 80));
  EXPECT_EQ(root->position(), (CGPoint{50, 40}));
  EXPECT_TRUE(root->animationKeys().empty());
  CATransaction::flush();
}

TEST(NSView, LayersAreLiveOnlyInAWindowAndWhenWanted) {
  const auto view = makeView(0, 0, 100, 100);
  const CALayerRef root = CALayer::layer();
  view->setLayer(root);
  view->setWantsLayer(true);
  EXPECT_FALSE(root->isLive());
  {
    NSWindow window({100, 100});
    const auto between = makeView(0, 0, 100, 100);
    between->addSubview(view);
    window.contentView()->addSubview(between);
    EXPECT_TRUE(root->isLive());
    view->setWantsLayer(false);
    EXPECT_FALSE(root->isLive());
    view->setWantsLayer(true);
    EXPECT_TRUE(root->isLive());
    between->removeFromSuperview();
    EXPECT_FALSE(root->isLive());
    window.contentView()->addSubview(between);
    view->setLayer(nullptr);
    EXPECT_FALSE(root->isLive());
    view->setLayer(root);
    EXPECT_TRUE(root->isLive());
    EXPECT_EQ(view->window(), &window);
  }
  EXPECT_FALSE(root->isLive());
  EXPECT_EQ(view->window(), nullptr);
  CATransaction::flush();
}

TEST(NSView, ChangesAskTheWindowForAFrame) {
  NSWindow window({100, 100});
  const auto view = makeView(0, 0, 50, 50);
  window.takeNeedsFrame();
  window.contentView()->addSubview(view);
  EXPECT_TRUE(window.takeNeedsFrame());
  EXPECT_FALSE(window.takeNeedsFrame());
  view->setHidden(false);
  view->setFrame({{0, 0}, {50, 50}});
  EXPECT_FALSE(window.takeNeedsFrame());
  view->setHidden(true);
  EXPECT_TRUE(window.takeNeedsFrame());
  view->setNeedsDisplay(true);
  EXPECT_TRUE(view->needsDisplay());
  EXPECT_TRUE(window.takeNeedsFrame());
  window.setContentSize({200, 100});
  EXPECT_TRUE(window.takeNeedsFrame());
  EXPECT_EQ(window.contentView()->bounds(), CGRectMake(0, 0, 200, 100));
}

}  // namespace
}  // namespace zelkon
