// The functions that the module exports to instance.ts.
#include <emscripten.h>

#include "Hosts/Web/PageScript.h"
#include "Hosts/Web/WebHost.h"

using zelkon::HostedChart;
using zelkon::WebHost;
using zelkon::WebPlot;

namespace {

constexpr int keptOptions = 1, keptData = 2;

// Enters the host for one plot; nothing happens for one that is not there.
template <typename Body>
void withPlot(int id, Body body) {
  WebHost& host = WebHost::shared();
  host.enter([&] {
    if (WebPlot* plot = host.plot(id)) body(*plot);
  });
}

template <typename Body>
void withChart(int id, Body body) {
  withPlot(id, [&](WebPlot& plot) { body(plot.chart()); });
}

}  // namespace

extern "C" {

// `plot` is null when the element has no such attribute. 1 when there is a chart now.
EMSCRIPTEN_KEEPALIVE int zelkon_create(int id, const char* plot, size_t plotLength, int canvas, double width,
                                       double height) {
  std::optional<std::string> name;
  if (plot) name.emplace(plot, plotLength);
  return WebHost::shared().create(id, std::move(name), canvas, {width, height}) ? 1 : 0;
}

EMSCRIPTEN_KEEPALIVE void zelkon_destroy(int id) { WebHost::shared().destroy(id); }

EMSCRIPTEN_KEEPALIVE void zelkon_set_size(int id, double width, double height) {
  withChart(id, [&](HostedChart& chart) { chart.setSize({width, height}); });
}

EMSCRIPTEN_KEEPALIVE void zelkon_set_visible_rect(int id, double x, double y, double width, double height) {
  withChart(id, [&](HostedChart& chart) { chart.setVisibleRect({{x, y}, {width, height}}); });
}

EMSCRIPTEN_KEEPALIVE void zelkon_set_screen_scale(double scale) {
  WebHost::shared().enter([&] { WebHost::shared().setScreenScale(scale); });
}

EMSCRIPTEN_KEEPALIVE void zelkon_set_reduces_motion(int reduces) { WebHost::shared().setReducesMotion(reduces != 0); }

EMSCRIPTEN_KEEPALIVE void zelkon_mouse_moved(int id, double x, double y) {
  withChart(id, [&](HostedChart& chart) { chart.mouseMoved({x, y}); });
}

EMSCRIPTEN_KEEPALIVE void zelkon_mouse_down(int id, double x, double y) {
  withChart(id, [&](HostedChart& chart) { chart.mouseDown({x, y}); });
}

EMSCRIPTEN_KEEPALIVE void zelkon_mouse_exited(int id) {
  withChart(id, [&](HostedChart& chart) { chart.mouseExited(); });
}

// What the keyboard does with a chart.
EMSCRIPTEN_KEEPALIVE void zelkon_key_step(int id, int steps) {
  withPlot(id, [&](WebPlot& plot) { plot.step(steps); });
}

EMSCRIPTEN_KEEPALIVE void zelkon_key_end(int id, int last) {
  withPlot(id, [&](WebPlot& plot) { plot.stepToEnd(last != 0); });
}

EMSCRIPTEN_KEEPALIVE void zelkon_key_press(int id) {
  withChart(id, [&](HostedChart& chart) { chart.press(); });
}

// How many periods the chart shows. Hands those from `first` on, `count` at most, to the page's side.
EMSCRIPTEN_KEEPALIVE size_t zelkon_read_periods(int id, size_t first, size_t count) {
  size_t all = 0;
  withPlot(id, [&](WebPlot& plot) { all = plot.readPeriods(first, count); });
  return all;
}

// The block is read before anything of the chart runs. What a fresh view will be given of it: 1 for options, 2 for
// data.
EMSCRIPTEN_KEEPALIVE int zelkon_call(int id, const char* name, size_t nameLength, const uint8_t* block, size_t size) {
  int kept = 0;
  withChart(id, [&](HostedChart& chart) {
    const auto outcome = chart.call(std::string(name, nameLength), zelkon::ReadScriptArguments(block, size));
    kept = (outcome.keptOptions ? keptOptions : 0) + (outcome.keptData ? keptData : 0);
  });
  return kept;
}

EMSCRIPTEN_KEEPALIVE void zelkon_begin_turn(double now) {
  WebHost::shared().enter([&] { WebHost::shared().beginTurn(now); });
}

EMSCRIPTEN_KEEPALIVE void zelkon_compose(int id) {
  WebHost::shared().enter([&] { WebHost::shared().compose(id); });
}

EMSCRIPTEN_KEEPALIVE int zelkon_end_turn() {
  bool due = false;
  WebHost::shared().enter([&] { due = WebHost::shared().endTurn(); });
  return due ? 1 : 0;
}

EMSCRIPTEN_KEEPALIVE void zelkon_print(int id, int canvas, double scale) {
  withPlot(id, [&](WebPlot& plot) { plot.print(canvas, scale); });
}

}  // extern "C"
