#include "AppKit/NSWindow.h"

#include <algorithm>
#include <utility>

namespace zelkon {

namespace {

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

NSWindow::Inside* NSWindow::find(const NSTrackingAreaRef& area) {
  const auto found =
      std::find_if(inside_.begin(), inside_.end(), [&](const Inside& inside) { return inside.area.lock() == area; });
  return found == inside_.end() ? nullptr : &*found;
}

void NSWindow::didAddTrackingArea(const std::shared_ptr<NSView>& view, const NSTrackingAreaRef& area) {
  if (!pointer_) return;
  const auto isOfView = [&](const Inside& inside) { return inside.view.lock() == view; };
  const bool wasInside = std::any_of(inside_.begin(), inside_.end(), isOfView);
  if (!wasInside && !isInside({area, view}, *pointer_)) return;
  std::erase_if(inside_, [&](const Inside& inside) {
    const NSTrackingAreaRef other = inside.area.lock();
    return isOfView(inside) && !(other && isHeld({other, view}));
  });
  inside_.push_back({area, view, false});
}

void NSWindow::deliver(const std::vector<TrackedArea>& areas, NSEvent::Type type, CGPoint locationInWindow) {
  const std::shared_ptr<bool> alive = alive_;
  const unsigned wanted = type == NSEvent::Type::mouseMoved ? NSTrackingMouseMoved : NSTrackingMouseEnteredAndExited;
  for (const TrackedArea& tracked : areas) {
    if (!*alive) return;
    const std::shared_ptr<NSView> owner = tracked.area->owner.lock();
    if (!owner || (tracked.area->options & wanted) == 0 || !isHeld(tracked)) continue;
    // An earlier handler may have moved the pointer on.
    Inside* const inside = find(tracked.area);
    if ((inside != nullptr) == (type == NSEvent::Type::mouseExited)) continue;
    if (inside != nullptr) inside->entered = true;
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
  pointer_ = locationInWindow;
  std::vector<TrackedArea> all, entered, moved, exited;
  collectAreas(contentView_, all);
  std::vector<Inside> inside;
  for (const TrackedArea& tracked : all) {
    const Inside* const known = find(tracked.area);
    if (isInside(tracked, locationInWindow)) {
      const bool isEntering = known == nullptr || !known->entered;
      if (isEntering) entered.push_back(tracked);
      moved.push_back(tracked);
      inside.push_back({tracked.area, tracked.view, !isEntering});
    } else if (known != nullptr) {
      exited.push_back(tracked);
    }
  }
  inside_ = std::move(inside);
  const std::shared_ptr<bool> alive = alive_;
  deliver(exited, NSEvent::Type::mouseExited, locationInWindow);
  if (*alive) deliver(entered, NSEvent::Type::mouseEntered, locationInWindow);
  if (*alive) deliver(moved, NSEvent::Type::mouseMoved, locationInWindow);
}

void NSWindow::sendMouseExited() {
  pointer_.reset();
  std::vector<TrackedArea> all, exited;
  collectAreas(contentView_, all);
  for (const TrackedArea& tracked : all)
    if (find(tracked.area) != nullptr) exited.push_back(tracked);
  inside_.clear();
  deliver(exited, NSEvent::Type::mouseExited, {-1, -1});
}

void NSWindow::sendMouseDown(CGPoint locationInWindow) {
  if (const std::shared_ptr<NSView> view = viewAtPoint(contentView_, locationInWindow))
    view->mouseDown({NSEvent::Type::mouseDown, locationInWindow});
}

}  // namespace zelkon
