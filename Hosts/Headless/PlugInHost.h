// Plays the web engine's part around one plug-in view: window, frame, lifecycle, script calls, mouse, scrolling,
// printing, and the media clock. The page's own side is a window object that writes every call it receives to the
// transcript.
//
// Points of the page are counted from the view's top left corner, y down.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AppKit/NSScrollView.h"
#include "AppKit/NSWindow.h"
#include "Classes/Views/CALayerPlotView.h"
#include "Hosts/Headless/Transcript.h"
#include "QuartzCore/CACompositor.h"

namespace zelkon {

class PlugInHost {
 public:
  // Makes the view, gives it its frame and starts it. An unknown `plot` throws NSException. `scrolls` puts the view
  // into a scroll view of the same size. The transcript must outlive the host.
  PlugInHost(std::string plot, CGSize size, bool scrolls, Transcript& transcript);
  ~PlugInHost();

  // What the operation returned, or, where it wrote into an object argument, that object's properties. Null for unknown
  // names.
  Value call(const std::string& name, const ValueArray& arguments);
  void mouseMoved(CGPoint at);
  void mouseDown(CGPoint at);
  void mouseExited();
  // Changes the frame of the view that is there.
  void setFrame(CGSize size);
  // Replaces the view by a fresh one of that size: same options and data, animations at their end, no page call beyond
  // one that the old view still owed.
  void resize(CGSize size);
  void scroll(CGPoint offset);
  void stop();
  void destroy();

  // A turn in which the clock stands still: everything that was called since the last one takes effect.
  void settle();
  // Runs the clock forward in frames of 1/60 s, the last one shortened to end on time.
  void wait(double seconds);
  // Runs until no animation runs any more, for at most `limit` seconds.
  void waitForAnimations(double limit);

  CGSize size() const { return size_; }
  std::shared_ptr<CALayerPlotView> view() const { return view_; }
  // Paints the screen as it is now; `context` in points, y up, `scale` pixels per point.
  void compose(CGContext& context, double scale);
  // Prints the view into the context, in points from its lower left corner, y up.
  void print(CGContext& context);

 private:
  class Page;
  void makeView();
  void takeViewDown();
  void frame(double time);
  CGPoint windowPoint(CGPoint at) const;

  std::string plot_;
  CGSize size_;
  bool scrolls_;
  std::shared_ptr<Page> page_;
  std::unique_ptr<NSWindow> window_;
  std::shared_ptr<NSScrollView> scrollView_;
  std::shared_ptr<CALayerPlotView> view_;
  CACompositor compositor_;
  std::optional<ValueArray> options_, data_;  // what a fresh view is told again
  std::optional<CGPoint> pointer_;
  bool destroyed_ = false;
};

}  // namespace zelkon
