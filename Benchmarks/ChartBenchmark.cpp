// Amounts over time in one process: label fitting, gridlines, whole generations, first frames and the pointer.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "Backends/Cairo/CairoDevice.h"
#include "Benchmarks/ChartSamples.h"
#include "Classes/Plotting/LinePlot.h"
#include "CoreGraphics/CGContext.h"
#include "Hosts/Headless/PlugInHost.h"
#include "Hosts/Headless/ScenarioPlayer.h"
#include "QuartzCore/CATransaction.h"

namespace {

using namespace zelkon;

constexpr CGSize size = kChartSize;
constexpr double frame = 1.0 / 60;
constexpr double longestOpening = 60;

class Services {
 public:
  HeadlessServices& operator*() { return services_; }

 private:
  HeadlessServices services_;
  HeadlessSession session_{services_, "en_US", 1};
};

// What a page hands over.
Value spending(int64_t count) {
  ValueArray entries;
  entries.reserve(static_cast<size_t>(count));
  for (int64_t i = 0; i < count; ++i) {
    const SampleMonth m = sampleMonth(i);
    entries.emplace_back(ValueDictionary{{"humanX", m.longName},
                                         {"mediumHumanX", m.mediumName},
                                         {"shortHumanX", m.shortName},
                                         {"shortHumanXSubtitle", m.year},
                                         {"humanY", "$" + m.amount},
                                         {"y", m.amount}});
  }
  return entries;
}

// Until the labels fit or one is left.
void FitLabels(benchmark::State& state) {
  Services services;
  for (auto _ : state) {
    state.PauseTiming();
    LabelRow row = sampleLabels(state.range(0));
    state.ResumeTiming();
    labelfitting::fit(row, 20);
    benchmark::DoNotOptimize(row.labels.data());
  }
}

void ComputeGridlines(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(computeSampleGridlines());
}

template <typename Plot>
void Generate(benchmark::State& state, double width) {
  Services services;
  const CALayerRef root = CALayer::layer();
  root->setBounds(CGRectMake(0, 0, width, size.height));
  const auto plot = std::make_shared<Plot>();
  plot->setRootLayer(root);
  const PlotEntryListRef data = sampleEntries(state.range(0));
  for (auto _ : state) plot->setPlotData(data);
  CATransaction::flush();
}
void GenerateBars(benchmark::State& state) { Generate<BarPlot>(state, sampleWidth(state.range(0))); }
void GenerateLine(benchmark::State& state) { Generate<LinePlot>(state, size.width); }

// A view on a screen of one pixel per point.
class Screen {
 public:
  explicit Screen(Services& services)
      : services_(services),
        transcript_([](const std::string&) {}),
        host_("spendingOverTimeBarOrLine", size, ChartLayout::literal, transcript_) {
    surface_ = (*services_).device().makeSurface(static_cast<int>(size.width), static_cast<int>(size.height));
  }
  PlugInHost& host() { return host_; }
  void show(const Value& data) {
    host_.call("SetPlotData", {data});
    host_.settle();
    compose();
  }
  void compose() {
    const std::unique_ptr<CGContext> context = (*services_).device().contextForSurface(surface_, 1);
    context->clearRect({{0, 0}, size});
    host_.compose(*context, 1);
    context->flush();
  }

 private:
  Services& services_;
  Transcript transcript_;
  PlugInHost host_;
  std::shared_ptr<Surface> surface_;
};

// From "SetPlotData" to the first frame, in a view without a chart.
void ChartFirstFrame(benchmark::State& state) {
  Services services;
  const Value data = spending(state.range(0));
  std::unique_ptr<Screen> screen;
  for (auto _ : state) {
    state.PauseTiming();
    screen.reset();
    screen = std::make_unique<Screen>(services);
    screen->compose();
    state.ResumeTiming();
    screen->show(data);
  }
}

// Each frame of the opening, with the turn of the run loop before it.
void ChartOpeningFrame(benchmark::State& state) {
  Services services;
  const Value data = spending(state.range(0));
  std::unique_ptr<Screen> screen;
  for (auto _ : state) {
    if (!screen || !CATransaction::hasRunningAnimations()) {
      state.PauseTiming();
      screen.reset();
      screen = std::make_unique<Screen>(services);
      screen->show(data);
      state.ResumeTiming();
    }
    screen->host().wait(frame);
    screen->compose();
  }
}

// A pointer that walks over the chart, without the frames.
void ChartPointerMove(benchmark::State& state) {
  Services services;
  Screen screen(services);
  screen.show(spending(state.range(0)));
  screen.host().waitForAnimations(longestOpening);
  double x = 0;
  for (auto _ : state) {
    x = x < size.width ? x + 3 : 0;
    screen.host().mouseMoved({x, 330});
  }
}

BENCHMARK(FitLabels)->Arg(12)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(ComputeGridlines)->Unit(benchmark::kMicrosecond);
BENCHMARK(GenerateBars)->Arg(12)->Arg(60)->Unit(benchmark::kMicrosecond);
BENCHMARK(GenerateLine)->Arg(60)->Arg(1500)->Unit(benchmark::kMicrosecond);
BENCHMARK(ChartFirstFrame)->Arg(12)->Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(ChartOpeningFrame)->Arg(12)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(ChartPointerMove)->Arg(12)->Arg(1000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

}  // namespace
