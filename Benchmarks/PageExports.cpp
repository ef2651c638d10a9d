// What generation.mjs times in a page: parts of a new chart of amounts over time, without the page's border and the
// drawing of pixels. Each function answers milliseconds for one of so many runs.
#include <emscripten.h>

#include "Backends/Canvas/CanvasDevice.h"
#include "Backends/Canvas/IntlLocaleServices.h"
#include "Benchmarks/ChartSamples.h"
#include "Foundation/Locale.h"
#include "Foundation/PlatformSession.h"
#include "QuartzCore/CALayer.h"
#include "QuartzCore/CATransaction.h"

namespace {

using namespace zelkon;

// The page's services in a session that stays current from the first call on.
void useServices() {
  static CanvasDevice device;
  static PlatformSession session;
  static const PlatformSession::Scope scope(session);
  if (GraphicsDevice::current() == &device) return;
  GraphicsDevice::install(&device);
  LocaleServices::install(std::make_shared<IntlLocaleServices>());
}

template <typename Body>
double millisecondsOf(int runs, Body body) {
  const double start = emscripten_get_now();
  for (int run = 0; run < runs; ++run) body(static_cast<size_t>(run));
  return (emscripten_get_now() - start) / runs;
}

size_t sink = 0;  // keeps results from being optimised away

}  // namespace

extern "C" {

EMSCRIPTEN_KEEPALIVE double zelkon_benchmark_fit_labels(int count, int runs) {
  useServices();
  std::vector<LabelRow> rows;
  for (int run = 0; run < runs; ++run) rows.push_back(sampleLabels(count));
  return millisecondsOf(runs, [&](size_t run) { labelfitting::fit(rows[run], 20); });
}

EMSCRIPTEN_KEEPALIVE double zelkon_benchmark_generate_bars(int count, int runs) {
  useServices();
  const CALayerRef root = CALayer::layer();
  root->setBounds(CGRectMake(0, 0, sampleWidth(count), kChartSize.height));
  const auto plot = std::make_shared<BarPlot>();
  plot->setRootLayer(root);
  const PlotEntryListRef data = sampleEntries(count);
  const double milliseconds = millisecondsOf(runs, [&](size_t) { plot->setPlotData(data); });
  CATransaction::flush();
  return milliseconds;
}

EMSCRIPTEN_KEEPALIVE double zelkon_benchmark_gridlines(int runs) {
  return millisecondsOf(runs, [](size_t) { sink += computeSampleGridlines(); });
}

}  // extern "C"
