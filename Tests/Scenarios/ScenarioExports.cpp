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

EMSCRIPTEN_KEEPALIVE void zelkon_scenario_frame(int id, double width, double height) {
  withPlot(id, [&](WebPlot& plot) { plot.setFrame({width, height}); });
}

EMSCRIPTEN_KEEPALIVE void zelkon_scenario_stop(int id) {
  withPlot(id, [](WebPlot& plot) { plot.view()->webPlugInStop(); });
}

// The bytes of the layer tree's JSON; zelkon_scenario_layers_size tells how many. Valid until the next call.
EMSCRIPTEN_KEEPALIVE const char* zelkon_scenario_layers(int id) {
  lastDump.clear();
  withPlot(id, [](WebPlot& plot) { lastDump = layerDump(*plot.view(), zelkon::CACurrentMediaTime()); });
  return lastDump.data();
}

EMSCRIPTEN_KEEPALIVE size_t zelkon_scenario_layers_size() { return lastDump.size(); }

}  // extern "C"
