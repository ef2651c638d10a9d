// What scenarios do to a chart that a page cannot: change the frame of the view that is there, end its life in two
// steps, and look at its layers.
#include <emscripten.h>

#include <string>

#include "Hosts/Headless/LayerDump.h"
#include "Hosts/Web/WebHost.h"
#include "QuartzCore/CATransaction.h"

using zelkon::WebHost;
using zelkon::WebPlot;

namespace {

template <typename Body>
void withPlot(int id, Body body) {
  WebHost::shared().enter([&] {
    if (WebPlot* plot = WebHost::shared().plot(id)) body(*plot);
  });
}

std::string lastDump;

}  // namespace

extern "C" {

// The charts of a scenario are exactly as large as it says.
EMSCRIPTEN_KEEPALIVE void zelkon_scenario_literal() { WebHost::shared().setLayout(zelkon::ChartLayout::literal); }

EMSCRIPTEN_KEEPALIVE void zelkon_scenario_frame(int id, double width, double height) {
  withPlot(id, [&](WebPlot& plot) { plot.chart().setFrame({width, height}); });
}

EMSCRIPTEN_KEEPALIVE void zelkon_scenario_stop(int id) {
  withPlot(id, [](WebPlot& plot) { plot.chart().stop(); });
}

// The bytes of the layer tree's JSON; zelkon_scenario_layers_size tells how many. Valid until the next call.
EMSCRIPTEN_KEEPALIVE const char* zelkon_scenario_layers(int id) {
  const double now = zelkon::CACurrentMediaTime();
  lastDump = zelkon::layerDump(nullptr, now);
  withPlot(id, [&](WebPlot& plot) { lastDump = zelkon::layerDump(plot.chart().view().get(), now); });
  return lastDump.data();
}

EMSCRIPTEN_KEEPALIVE size_t zelkon_scenario_layers_size() { return lastDump.size(); }

}  // extern "C"
