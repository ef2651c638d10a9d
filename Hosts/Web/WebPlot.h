// One element's chart on the canvas that shows it.
//
// Points are the element's, from its top left corner, y down.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Backends/Canvas/CanvasDevice.h"
#include "Hosts/Common/HostedChart.h"

namespace zelkon {

class WebPlot {
 public:
  // Raises what the factory raises. `plot` is the element's attribute, if it has one; `canvas` is the number under
  // which the page has bound the canvas that the chart is shown on; sizes are points.
  WebPlot(int id, std::optional<std::string> plot, int canvas, CGSize size, ChartLayout layout, CanvasDevice& device);

  HostedChart& chart() { return chart_; }

  // Takes the pointer to the entry so many steps on (or back), or to the first or last one, and tells the page's side
  // what is there.
  void step(int steps);
  void stepToEnd(bool last);
  // How many periods the chart is made of. Hands the names and amounts of those from `first` on, `count` at most, to
  // the page's side.
  size_t readPeriods(size_t first, size_t count) const;

  // Paints a frame if one is due at the time, in seconds.
  void compose(double time);
  // Draws the chart flat on the canvas bound under `canvas`, with that many pixels per point.
  void print(int canvas, double scale);

 private:
  struct Screen {
    std::shared_ptr<Surface> surface;
    int width = 0, height = 0;  // pixels
  };
  Screen makeScreen(int canvas, double scale) const;
  void announce(const std::optional<ReachableEntry>& entry) const;

  int id_, canvas_;
  CanvasDevice& device_;
  HostedChart chart_;
  Screen screen_;
};

}  // namespace zelkon
