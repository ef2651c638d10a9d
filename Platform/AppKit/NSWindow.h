// A window: the root of the views and the observer of every layer tree hosted in it. Delivers mouse events through
// tracking areas. The host owns it and asks whether a new frame is due.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "AppKit/NSView.h"

namespace zelkon {

class NSWindow : public CALayerTreeObserver {
 public:
  explicit NSWindow(CGSize contentSize);
  ~NSWindow() override;
  const std::shared_ptr<NSView>& contentView() const { return contentView_; }
  void setContentSize(CGSize size);
  bool isKeyWindow() const { return key_; }
  void setKeyWindow(bool key) { key_ = key; }

  // Finds the tracking areas under the point and sends entered, moved and exited to their owners. A handler may change
  // views and areas, and end the view or the window itself; areas gone meanwhile get nothing. An area that is added
  // under the pointer, or to a view that the pointer was in, gets an exited even when no move comes before it.
  void sendMouseMoved(CGPoint locationInWindow);
  void sendMouseExited();  // the pointer left the window
  // To the deepest visible view under the point.
  void sendMouseDown(CGPoint locationInWindow);

  void layerTreeDidChange() override { needsFrame_ = true; }
  void setNeedsFrame() { needsFrame_ = true; }
  // Whether something changed since the last call; clears the mark.
  bool takeNeedsFrame();

 private:
  friend class NSView;
  // A tracking area and the view that holds it.
  struct TrackedArea {
    NSTrackingAreaRef area;
    std::shared_ptr<NSView> view;
  };
  // An area that the pointer is in. The view is the one that held it, also after the area is gone: what takes its place
  // is in the pointer's way as it was, wherever the view has moved meanwhile.
  struct Inside {
    std::weak_ptr<NSTrackingArea> area;
    std::weak_ptr<NSView> view;
    bool entered;  // its owner knows
  };
  void didAddTrackingArea(const std::shared_ptr<NSView>& view, const NSTrackingAreaRef& area);
  Inside* find(const NSTrackingAreaRef& area);
  static void collectAreas(const std::shared_ptr<NSView>& view, std::vector<TrackedArea>& areas);
  bool isHeld(const TrackedArea& tracked) const;
  bool isInside(const TrackedArea& tracked, CGPoint locationInWindow) const;
  void deliver(const std::vector<TrackedArea>& areas, NSEvent::Type type, CGPoint locationInWindow);

  std::shared_ptr<NSView> contentView_;
  std::vector<Inside> inside_;
  std::optional<CGPoint> pointer_;                              // where it last was; none outside the window
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  // a handler may end the window while it delivers
  bool key_ = true, needsFrame_ = false;
};

}  // namespace zelkon
