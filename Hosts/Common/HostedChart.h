// One chart as a host keeps it: the plug-in view that is there now, the window it is in, and what a fresh view needs to
// take over: the page's options and data, the place of the pointer and of the keyboard, and what the page is still
// owed.
//
// A view keeps the geometry of a chart that it has once shown. When the box of a shown chart or the screen scale
// changes, a fresh view therefore takes over at the beginning of the next turn, silently and with its animations at
// their end.
//
// The box is what the page gives the chart; its points count from the top left corner, y down. Inside, the view is laid
// out in points of its own, y up: whole ones, so that pictures and hits agree at fractional screen scales, and in a
// readable layout at least as many as the chart needs; `boxPerLayoutPoint` leads from these to the box.
//
// One thread only, with a platform session current on it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AppKit/NSScrollView.h"
#include "AppKit/NSWindow.h"
#include "Classes/Views/CALayerPlotView.h"
#include "Hosts/Common/PageWindow.h"
#include "QuartzCore/CACompositor.h"

namespace zelkon {

enum class ChartLayout {
  literal,   // the view is exactly as large as the box
  readable,  // in no less than the chart's least size, shown scaled down where the box is smaller
};

class HostedChart {
 public:
  // Makes the view and, when the box has room, starts it. `plot` names the chart, if the page names one. Raises
  // NSInvalidArgumentException for a name that no chart has.
  HostedChart(std::optional<std::string> plot, CGSize box, ChartLayout layout, PageFunction page);
  // Ends the view's life as a plug-in; nothing reaches the page any more.
  ~HostedChart();
  HostedChart(const HostedChart&) = delete;
  HostedChart& operator=(const HostedChart&) = delete;

  const std::shared_ptr<CALayerPlotView>& view() const { return view_; }
  CGSize size() const { return size_; }
  bool hasRoom() const { return size_.width > 0 && size_.height > 0; }
  double boxPerLayoutPoint() const { return scale_; }

  // The box has changed: takes effect with the next turn. A box without room shows nothing.
  void setSize(CGSize box);
  // The screen scale has changed: as a change of the box.
  void setNeedsFreshView() { needsFreshView_ = true; }
  // Changes the frame of the view that is there, which then keeps the geometry of its chart.
  void setFrame(CGSize box);
  // The part of the box that its scrolling ancestors leave visible.
  void setVisibleRect(CGRect rect);

  void mouseMoved(CGPoint p);
  void mouseDown(CGPoint p);
  void mouseExited();
  // Takes the pointer to the entry so many steps on (or back) from the one that it was taken to before, round and
  // round. Nothing for a chart without entries.
  std::optional<ReachableEntry> step(int steps);
  std::optional<ReachableEntry> stepToEnd(bool last);
  // Presses the pointer where it was taken.
  void press();

  struct CallOutcome {
    std::optional<Value> result;  // none when page script has no operation of that name
    // Whether the arguments are what a fresh view will be given.
    bool keptOptions = false, keptData = false;
  };
  // Calls the operation that page script knows by that name.
  CallOutcome call(const std::string& name, ValueArray arguments);

  // Ends the display as a page does that is left; the chart stays stopped, whatever else happens to it.
  void stop();

  // The parts of a turn that Turn.h puts in order.
  void refreshIfNeeded();
  void finishAnimations();
  void turnEnded();

  bool isAnimating(double time) const;
  // Whether another frame is due: something changed since the last one, or something runs or ran then.
  bool needsFrame(double time);
  // Paints the screen as it is at `time`, media seconds. `context`: points of the box, y up, `scale` pixels per point,
  // cleared.
  void compose(CGContext& context, double scale, double time);
  // Draws the chart flat into `context`, points of the box, y up. The screen stays as it is.
  void print(CGContext& context);

 private:
  void makeView();
  void dropView();
  void layOut();
  void noteChart();
  void settle();
  bool removeRunningAnimations();
  ReachableEntry stepTo(const std::vector<ReachableEntry>& entries, size_t index);
  CGPoint windowPoint(CGPoint p) const { return {p.x / scale_, (size_.height - p.y) / scale_}; }
  CGPoint boxPoint(CGPoint p) const { return {p.x * scale_, size_.height - p.y * scale_}; }

  std::optional<std::string> plot_;
  CGSize size_;
  ChartLayout layout_;
  PageFunction call_;
  CGRect visible_;
  double scale_ = 1;
  CGSize layoutSize_;  // of the view
  NSWindow window_;
  std::shared_ptr<NSScrollView> scroller_;
  std::shared_ptr<PageWindow> page_;
  std::shared_ptr<CALayerPlotView> view_;
  CACompositor compositor_;
  std::optional<ValueArray> options_, data_;
  std::optional<CGPoint> pointer_;
  std::optional<size_t> step_;  // the entry that the keyboard has taken the pointer to
  bool isStarted_ = false, isStopped_ = false, wasShown_ = false;
  bool keepsFirstData_ = false;  // in a box with room, so that a fresh view keeps them too
  bool needsFreshView_ = false, needsFrame_ = true, wasAnimating_ = false;
};

}  // namespace zelkon
