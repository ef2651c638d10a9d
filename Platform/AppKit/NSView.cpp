#include "AppKit/NSView.h"

#include <algorithm>
#include <utility>

#include "AppKit/NSScrollView.h"
#include "AppKit/NSWindow.h"
#include "Foundation/NSException.h"
#include "Foundation/NSNotificationCenter.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {

NSView::NSView(CGRect frame) : frame_(frame) {}

NSView::~NSView() {
  if (layer_) layer_->setTreeObserver(nullptr);
  NSNotificationCenter::defaultCenter().removeObserver(this);
}

void NSView::setFrame(CGRect frame) {
  if (frame == frame_) return;
  frame_ = frame;
  fitLayer();
  windowNeedsFrame();
  if (postsFrame_) NSNotificationCenter::defaultCenter().post(NSViewFrameDidChangeNotification, this);
}

void NSView::setBoundsOrigin(CGPoint origin) {
  if (origin == boundsOrigin_) return;
  boundsOrigin_ = origin;
  windowNeedsFrame();
  if (postsBounds_) NSNotificationCenter::defaultCenter().post(NSViewBoundsDidChangeNotification, this);
}

CGRect NSView::visibleRect() const {
  CGRect visible = bounds();
  // The visible part in the coordinates of each ancestor in turn, and back at the end.
  double dx = 0, dy = 0;
  std::shared_ptr<const NSView> held;
  for (const NSView* view = this; view != nullptr; view = held.get()) {
    if (view->hidden_) return NSZeroRect;
    const std::shared_ptr<const NSView> above = view->superview_.lock();
    if (above) {
      const double x = view->frame_.origin.x - view->boundsOrigin_.x;
      const double y = view->frame_.origin.y - view->boundsOrigin_.y;
      visible = CGRectIntersection(CGRectOffset(visible, x, y), above->bounds());
      if (NSIsEmptyRect(visible)) return NSZeroRect;
      dx += x;
      dy += y;
    }
    held = above;
  }
  return NSIsEmptyRect(visible) ? NSZeroRect : CGRectOffset(visible, -dx, -dy);
}

void NSView::addSubview(const std::shared_ptr<NSView>& view) {
  for (std::shared_ptr<const NSView> above = shared_from_this(); above; above = above->superview_.lock())
    if (above == view)
      NSRaise(NSInvalidArgumentException, "A view cannot be a subview of itself or of its own subviews");
  const std::shared_ptr<NSView> added = view;
  added->detachFromSuperview();
  subviews_.push_back(added);
  added->superview_ = weak_from_this();
  added->attachLayersOfSubtree();
  windowNeedsFrame();
  added->viewDidMoveToSuperview();
}

void NSView::removeFromSuperview() {
  if (!superview_.lock()) return;
  const std::shared_ptr<NSView> held = shared_from_this();
  windowNeedsFrame();
  detachFromSuperview();
  attachLayersOfSubtree();
  viewDidMoveToSuperview();
}

void NSView::detachFromSuperview() {
  if (const auto above = superview_.lock())
    std::erase_if(above->subviews_, [&](const std::shared_ptr<NSView>& view) { return view.get() == this; });
  superview_.reset();
}

std::shared_ptr<NSScrollView> NSView::enclosingScrollView() const {
  for (auto above = superview_.lock(); above; above = above->superview_.lock())
    if (auto scrollView = std::dynamic_pointer_cast<NSScrollView>(above)) return scrollView;
  return nullptr;
}

NSWindow* NSView::window() const {
  const NSView* view = this;
  std::shared_ptr<NSView> above = superview_.lock();
  while (above) {
    view = above.get();
    above = view->superview_.lock();
  }
  return view->window_;
}

CGPoint NSView::convertPointFromWindow(CGPoint p) const {
  const CGPoint origin = convertPointToWindow({0, 0});
  return {p.x - origin.x, p.y - origin.y};
}

CGPoint NSView::convertPointToWindow(CGPoint p) const {
  const NSView* view = this;
  std::shared_ptr<NSView> above;
  while (true) {
    above = view->superview_.lock();
    // The topmost superview without a window is itself the base.
    if (!above && view->window_ == nullptr) return p;
    p = {p.x + view->frame_.origin.x - view->boundsOrigin_.x, p.y + view->frame_.origin.y - view->boundsOrigin_.y};
    if (!above) return p;
    view = above.get();
  }
}

void NSView::setHidden(bool hidden) {
  if (std::exchange(hidden_, hidden) != hidden) windowNeedsFrame();
}

bool NSView::isHiddenOrHasHiddenAncestor() const {
  if (hidden_) return true;
  const auto above = superview_.lock();
  return above && above->isHiddenOrHasHiddenAncestor();
}

void NSView::setLayer(CALayerRef layer) {
  if (layer == layer_) return;
  if (layer_) layer_->setTreeObserver(nullptr);
  layer_ = std::move(layer);
  attachLayer();
  windowNeedsFrame();
}

void NSView::setWantsLayer(bool wants) {
  wantsLayer_ = wants;
  attachLayer();
  windowNeedsFrame();
}

void NSView::attachLayer() {
  if (!layer_) return;
  if (wantsLayer_) fitLayer();
  layer_->setTreeObserver(wantsLayer_ ? window() : nullptr);
}

void NSView::attachLayersOfSubtree() {
  attachLayer();
  for (const std::shared_ptr<NSView>& view : subviews_) view->attachLayersOfSubtree();
}

void NSView::fitLayer() {
  if (!layer_ || !wantsLayer_) return;
  const CATransactionWithoutActions noActions;
  const CGSize size = frame_.size;
  const CGPoint anchor = layer_->anchorPoint();
  const CGRect bounds{layer_->bounds().origin, size};
  const CGPoint position{size.width * anchor.x, size.height * anchor.y};
  if (layer_->bounds() != bounds) layer_->setBounds(bounds);
  if (layer_->position() != position) layer_->setPosition(position);
}

void NSView::addTrackingArea(NSTrackingAreaRef area) {
  if (!area) return;
  trackingAreas_.push_back(area);
  if (NSWindow* const shownIn = window()) shownIn->didAddTrackingArea(shared_from_this(), area);
}

void NSView::removeTrackingArea(const NSTrackingAreaRef& area) {
  const NSTrackingAreaRef removed = area;
  std::erase(trackingAreas_, removed);
}

void NSView::setNeedsDisplay(bool needs) {
  needsDisplay_ = needs;
  if (needs) windowNeedsFrame();
}

void NSView::drawRect(CGRect) {}

void NSView::windowNeedsFrame() const {
  if (NSWindow* shownIn = window()) shownIn->setNeedsFrame();
}

}  // namespace zelkon
