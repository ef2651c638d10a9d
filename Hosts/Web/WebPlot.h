// One element's chart: the view that the factory made, the window it is in, and the canvas it is shown on.
//
// Points are the element's, from its top left corner, until they enter the window, whose y goes up. A view stays until
// the element's box or the screen scale changes; then a fresh view takes over silently, since a view keeps the geometry
// of a chart that it has once shown.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "AppKit/NSScrollView.h"
#include "AppKit/NSWindow.h"
#include "Backends/Canvas/CanvasDevice.h"
#include "Classes/Plotting/PlotEntryList.h"
#include "Classes/Views/CALayerPlotView.h"
#include "Hosts/Web/KeyStops.h"
#include "Hosts/Web/PageScript.h"
#include "QuartzCore/CACompositor.h"

namespace zelkon {

class WebPlot {
 public:
  // Raises what the factory raises. `plot` is the element's attribute, if it has one; `canvas` is the number under
  // which the page has bound the canvas that the chart is shown on; sizes are points.
  WebPlot(int id, std::optional<std::string> plot, int canvas, CGSize size, CanvasDevice& device);
  // Ends the view's life as a plug-in.
  ~WebPlot();
  WebPlot(const WebPlot&) = delete;
  WebPlot& operator=(const WebPlot&) = delete;

  int id() const { return id_; }
  const std::shared_ptr<CALayerPlotView>& view() const { return view_; }
  // Takes effect with the next turn.
  void setSize(CGSize size);
  // The screen scale has changed: everything shown is to be made anew in the next turn.
  void setNeedsFreshView() { needsFreshView_ = true; }
  // Changes the frame of the view that is there, which then keeps the chart's geometry.
  void setFrame(CGSize size);
  // The part of the element that its scrolling ancestors leave visible.
  void setVisibleRect(CGRect rect);

  void mouseMoved(CGPoint p);
  void mouseDown(CGPoint p);
  void mouseExited();
  // Takes the pointer to the entry so many steps on (or back) from the one that it was taken to before, round and
  // round, or to the first or last one, and tells the page's side what is there.
  void step(int steps);
  void stepToEnd(bool last);
  // Presses the pointer where it was taken.
  void press();
  // How many periods the chart over time was made of, those included that are too many to be drawn; 0 for a pie. Hands
  // the names and amounts of those from `first` on, `count` at most, to the page's side.
  size_t readPeriods(size_t first, size_t count) const;
  // Calls the operation that page script knows by that name.
  void call(const std::string& name, ValueArray arguments);

  // Makes a fresh view if one is due. True when that happened.
  bool refreshIfNeeded();
  // Ends every animation of the view's layers where it would have ended by itself. True when there was any.
  bool finishAnimations();
  // Paints a frame if something changed or runs at the time; true when it did.
  bool compose(double time);
  // Whether another frame is due.
  bool needsFrame(double time);
  // Draws the chart flat on the canvas bound under `canvas`, with that many pixels per point.
  void print(int canvas, double scale);

 private:
  void makeView();
  void dropView();
  void settle();
  void stepTo(const std::vector<KeyStop>& stops, size_t index);
  void keepPeriods();
  CGPoint windowPoint(CGPoint p) const { return {p.x, size_.height - p.y}; }

  int id_, canvas_;
  std::optional<std::string> plot_;
  CGSize size_;
  CGRect visible_;
  CanvasDevice& device_;
  std::unique_ptr<NSWindow> window_;
  std::shared_ptr<NSScrollView> scroller_;
  std::shared_ptr<PageWindow> page_;
  std::shared_ptr<CALayerPlotView> view_;
  CACompositor compositor_;
  std::shared_ptr<Surface> screen_;
  std::optional<ValueArray> options_, data_;
  PlotEntryListRef periods_;  // what the chart over time was made of
  bool hasPeriods_ = false;   // in a box of some size, so that they are not to be replaced any more
  std::optional<CGPoint> pointer_;
  std::optional<size_t> step_;  // the entry that the keyboard has taken the pointer to
  bool started_ = false, shown_ = false, needsFreshView_ = false, needsFrame_ = true, wasAnimating_ = false;
};

}  // namespace zelkon
