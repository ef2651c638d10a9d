// A chart whose page and clock are a scenario's: every call that the page receives goes to the transcript, and time
// passes when the scenario lets it.
//
// Points of the page are counted from the chart's top left corner, y down.
#pragma once

#include <optional>
#include <string>

#include "Hosts/Common/HostedChart.h"
#include "Hosts/Headless/Transcript.h"

namespace zelkon {

class PlugInHost {
 public:
  // An unknown `plot` raises NSException. The transcript must outlive the host.
  PlugInHost(std::string plot, CGSize size, ChartLayout layout, Transcript& transcript);

  // What the operation returned, or, where it wrote into an object argument, that object's properties. Null for unknown
  // names.
  Value call(const std::string& name, const ValueArray& arguments);
  void mouseMoved(CGPoint at);
  void mouseDown(CGPoint at);
  void mouseExited();
  // Changes the frame of the view that is there.
  void setFrame(CGSize size);
  // Changes the box: a fresh view takes over.
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
  // Null once the chart is destroyed.
  std::shared_ptr<CALayerPlotView> view() const { return chart_ ? chart_->view() : nullptr; }
  // Paints the screen as it is now; `context` in points, y up, `scale` pixels per point.
  void compose(CGContext& context, double scale);
  // Prints the chart into the context, in points from its lower left corner, y up.
  void print(CGContext& context);

 private:
  void frame(double time);
  void showScrolledPart();

  CGSize size_;
  CGPoint offset_;                    // how far the page has scrolled, right and down
  std::optional<HostedChart> chart_;  // none once it is destroyed
};

}  // namespace zelkon
