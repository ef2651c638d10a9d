// Views: frames in a hierarchy, an optional hosted layer, tracking areas, printing. Unflipped, points, y up.
//
// Views are made by std::make_shared. The host composes the layers of those that are neither hidden themselves nor by
// an ancestor.
#pragma once

#include <memory>
#include <vector>

#include "AppKit/NSEvent.h"
#include "AppKit/NSTrackingArea.h"
#include "CoreGraphics/CGGeometry.h"
#include "QuartzCore/CALayer.h"

namespace zelkon {

class NSScrollView;
class NSWindow;

class NSView : public Object, public std::enable_shared_from_this<NSView> {
 public:
  explicit NSView(CGRect frame);
  ~NSView() override;
  std::string className() const override { return "NSView"; }

  CGRect frame() const { return frame_; }
  virtual void setFrame(CGRect frame);  // posts the frame notification when asked to and when it really changed
  CGRect bounds() const { return {boundsOrigin_, frame_.size}; }
  void setBoundsOrigin(CGPoint origin);
  // The part that no ancestor clips, in the view's coordinates; the zero rectangle when hidden or out of sight.
  CGRect visibleRect() const;

  std::shared_ptr<NSView> superview() const { return superview_.lock(); }
  const std::vector<std::shared_ptr<NSView>>& subviews() const { return subviews_; }
  void addSubview(const std::shared_ptr<NSView>& view);
  void removeFromSuperview();
  virtual void viewDidMoveToSuperview() {}
  std::shared_ptr<NSScrollView> enclosingScrollView() const;
  NSWindow* window() const;

  // From window base coordinates (or, without a window, the topmost superview's) to the view's own.
  CGPoint convertPointFromWindow(CGPoint p) const;
  // And back, to window base coordinates (or the topmost superview's).
  CGPoint convertPointToWindow(CGPoint p) const;

  bool isHidden() const { return hidden_; }
  void setHidden(bool hidden);
  bool isHiddenOrHasHiddenAncestor() const;

  // setLayer then setWantsLayer(true): the view hosts the layer and keeps its bounds size and position in step with
  // the view's bounds. A null layer takes it off the screen.
  const CALayerRef& layer() const { return layer_; }
  void setLayer(CALayerRef layer);
  bool wantsLayer() const { return wantsLayer_; }
  void setWantsLayer(bool wants);

  void addTrackingArea(NSTrackingAreaRef area);  // retained
  void removeTrackingArea(const NSTrackingAreaRef& area);
  const std::vector<NSTrackingAreaRef>& trackingAreas() const { return trackingAreas_; }

  void setNeedsDisplay(bool needs);
  bool needsDisplay() const { return needsDisplay_; }
  virtual void drawRect(CGRect dirty);  // the default draws nothing

  virtual void mouseDown(const NSEvent&) {}
  virtual void mouseEntered(const NSEvent&) {}
  virtual void mouseMoved(const NSEvent&) {}
  virtual void mouseExited(const NSEvent&) {}

  void setPostsFrameChangedNotifications(bool posts) { postsFrame_ = posts; }
  void setPostsBoundsChangedNotifications(bool posts) { postsBounds_ = posts; }

 private:
  friend class NSWindow;
  // Tells the layers of the subtree whether they are on a screen.
  void attachLayer();
  void attachLayersOfSubtree();
  void fitLayer();
  // Forgets the superview and takes the view out of its list, without the notice.
  void detachFromSuperview();
  void windowNeedsFrame() const;
  CGRect frame_;
  CGPoint boundsOrigin_;
  std::weak_ptr<NSView> superview_;
  std::vector<std::shared_ptr<NSView>> subviews_;
  NSWindow* window_ = nullptr;  // of the root view only; not owned
  CALayerRef layer_;
  std::vector<NSTrackingAreaRef> trackingAreas_;
  bool wantsLayer_ = false, hidden_ = false, needsDisplay_ = false;
  bool postsFrame_ = true, postsBounds_ = false;
};

}  // namespace zelkon
