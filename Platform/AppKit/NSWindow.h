// A window: the root of the views and the observer of every layer tree hosted in it. Delivers mouse events through
// tracking areas. The host owns it and asks whether a new frame is due.
#pragma once

#include <memory>
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
  // views and areas, and end the view or the window itself; areas gone meanwhile hear nothing.
  void sendMouseMoved(CGPoint locationInWindow);
  void sendMouseExited();  // the pointer left the window
  // To the deepest visible view under the point.
  void sendMouseDown(CGPoint locationInWindow);

  void layerTreeDidChange() override { needsFrame_ = true; }
  void setNeedsFrame() { needsFrame_ = true; }
  // Whether something changed since the last call; clears the mark.
  bool takeNeedsFrame();

 private:
  // A tracking area and the view that holds it.
  struct TrackedArea {
    NSTrackingAreaRef area;
    std::shared_ptr<NSView> view;
  };
  static void collectAreas(const std::shared_ptr<NSView>& view, std::vector<TrackedArea>& areas);
  bool isHeld(const TrackedArea& tracked) const;
  bool isInside(const TrackedArea& tracked, CGPoint locationInWindow) const;
  void deliver(const std::vector<TrackedArea>& areas, NSEvent::Type type, CGPoint locationInWindow);

  std::shared_ptr<NSView> contentView_;
  std::vector<std::weak_ptr<NSTrackingArea>> inside_;           // areas the pointer is in
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  // a handler may end the window while it delivers
  bool key_ = true, needsFrame_ = false;
};

}  // namespace zelkon
