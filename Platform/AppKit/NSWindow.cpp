#include "AppKit/NSWindow.h"

#include <algorithm>
#include <utility>

namespace zelkon {

namespace {

bool contains(const std::vector<std::weak_ptr<NSTrackingArea>>& areas, const NSTrackingAreaRef& area) {
  return std::any_of(areas.begin(), areas.end(),
                     [&](const std::weak_ptr<NSTrackingArea>& other) { return other.lock() == area; });
}

// The deepest visible view under the point, the last of those that overlap; null when there is none.
std::shared_ptr<NSView> viewAtPoint(const std::shared_ptr<NSView>& view, CGPoint locationInWindow) {
  if (view->isHidden()) return nullptr;
  if (!CGRectContainsPoint(view->bounds(), view->convertPointFromWindow(locationInWindow))) return nullptr;
  const auto& subviews = view->subviews();
  for (auto subview = subviews.rbegin(); subview != subviews.rend(); ++subview)
    if (auto hit = viewAtPoint(*subview, locationInWindow)) return hit;
  return view;
}

}  // namespace

NSWindow::NSWindow(CGSize contentSize) : contentView_(std::make_shared<NSView>(CGRect{{0, 0}, contentSize})) {
  contentView_->window_ = this;
}

NSWindow::~NSWindow() {
  *alive_ = false;
  contentView_->window_ = nullptr;
  contentView_->attachLayersOfSubtree();
}

void NSWindow::setContentSize(CGSize size) { contentView_->setFrame({{0, 0}, size}); }

bool NSWindow::takeNeedsFrame() { return std::exchange(needsFrame_, false); }

void NSWindow::collectAreas(const std::shared_ptr<NSView>& view, std::vector<TrackedArea>& areas) {
  for (const NSTrackingAreaRef& area : view->trackingAreas()) areas.push_back({area, view});
  for (const std::shared_ptr<NSView>& subview : view->subviews()) collectAreas(subview, areas);
}

bool NSWindow::isHeld(const TrackedArea& tracked) const {
  const auto& held = tracked.view->trackingAreas();
  return tracked.view->window() == this && std::find(held.begin(), held.end(), tracked.area) != held.end();
}

bool NSWindow::isInside(const TrackedArea& tracked, CGPoint locationInWindow) const {
  if ((tracked.area->options & NSTrackingActiveInKeyWindow) != 0 && !key_) return false;
  const CGPoint point = tracked.view->convertPointFromWindow(locationInWindow);
  if (!CGRectContainsPoint(tracked.view->visibleRect(), point)) return false;
  return (tracked.area->options & NSTrackingInVisibleRect) != 0 || CGRectContainsPoint(tracked.area->rect, point);
}

void NSWindow::deliver(const std::vector<TrackedArea>& areas, NSEvent::Type type, CGPoint locationInWindow) {
  const std::shared_ptr<bool> alive = alive_;
  const unsigned wanted = type == NSEvent::Type::mouseMoved ? NSTrackingMouseMoved : NSTrackingMouseEnteredAndExited;
  for (const TrackedArea& tracked : areas) {
    if (!*alive) return;
    const std::shared_ptr<NSView> owner = tracked.area->owner.lock();
    if (!owner || (tracked.area->options & wanted) == 0 || !isHeld(tracked)) continue;
    // An earlier handler may have moved the pointer on.
    if (contains(inside_, tracked.area) == (type == NSEvent::Type::mouseExited)) continue;
    const NSEvent event{type, locationInWindow};
    if (type == NSEvent::Type::mouseEntered)
      owner->mouseEntered(event);
    else if (type == NSEvent::Type::mouseMoved)
      owner->mouseMoved(event);
    else
      owner->mouseExited(event);
  }
}

void NSWindow::sendMouseMoved(CGPoint locationInWindow) {
  std::vector<TrackedArea> all, entered, moved, exited;
  collectAreas(contentView_, all);
  for (const TrackedArea& tracked : all) {
    const bool wasInside = contains(inside_, tracked.area);
    if (isInside(tracked, locationInWindow)) {
      if (!wasInside) entered.push_back(tracked);
      moved.push_back(tracked);
    } else if (wasInside) {
      exited.push_back(tracked);
    }
  }
  inside_.clear();
  for (const TrackedArea& tracked : moved) inside_.push_back(tracked.area);
  const std::shared_ptr<bool> alive = alive_;
  deliver(exited, NSEvent::Type::mouseExited, locationInWindow);
  if (*alive) deliver(entered, NSEvent::Type::mouseEntered, locationInWindow);
  if (*alive) deliver(moved, NSEvent::Type::mouseMoved, locationInWindow);
}

void NSWindow::sendMouseExited() {
  std::vector<TrackedArea> all, exited;
  collectAreas(contentView_, all);
  for (const TrackedArea& tracked : all)
    if (contains(inside_, tracked.area)) exited.push_back(tracked);
  inside_.clear();
  deliver(exited, NSEvent::Type::mouseExited, {-1, -1});
}

void NSWindow::sendMouseDown(CGPoint locationInWindow) {
  if (const std::shared_ptr<NSView> view = viewAtPoint(contentView_, locationInWindow))
    view->mouseDown({NSEvent::Type::mouseDown, locationInWindow});
}

}  // namespace zelkon
