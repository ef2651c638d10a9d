// The spending pie in one process: pictures one after another, the frames of its opening, its hover, and its data.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>

#include "Backends/Cairo/CairoDevice.h"
#include "CoreGraphics/CGContext.h"
#include "Hosts/Headless/PlugInHost.h"
#include "Hosts/Headless/ScenarioPlayer.h"
#include "QuartzCore/CATransaction.h"

namespace {

using namespace zelkon;

constexpr CGSize size{600, 400};
constexpr double frame = 1.0 / 60;
constexpr double longestOpening = 60;
constexpr double hoverSeconds = 1;

// As many different amounts, the first the largest.
Value spending(int64_t count) {
  ValueArray entries;
  for (int64_t i = 0; i < count; ++i)
    entries.push_back(ValueDictionary{{"key", "Category " + std::to_string(i + 1)},
                                      {"value", 40.25 + 1300.0 / static_cast<double>(i + 1)}});
  return entries;
}

// A pie on a screen of one pixel per point.
class Screen {
 public:
  explicit Screen(HeadlessServices& services)
      : services_(services),
        transcript_([](const std::string&) {}),
        host_("pie", size, ChartLayout::literal, transcript_) {
    surface_ = services.device().makeSurface(static_cast<int>(size.width), static_cast<int>(size.height));
  }
  PlugInHost& host() { return host_; }
  void compose() {
    const std::unique_ptr<CGContext> context = services_.device().contextForSurface(surface_, 1);
    context->clearRect({{0, 0}, size});
    host_.compose(*context, 1);
    context->flush();
  }

 private:
  HeadlessServices& services_;
  Transcript transcript_;
  PlugInHost host_;
  std::shared_ptr<Surface> surface_;
};

// Services with a session in the locale of the examples.
class Services {
 public:
  operator HeadlessServices&() { return services_; }

 private:
  HeadlessServices services_;
  HeadlessSession session_{services_, "en_US", 1};
};

// From data to the bytes of a PNG, all but reading and writing files.
void PieToPNG(benchmark::State& state) {
  HeadlessServices services;
  Scenario scenario;
  scenario.plot = "pie";
  scenario.size = size;
  scenario.data = spending(state.range(0));
  size_t bytes = 0;
  for (auto _ : state) {
    const std::string png = renderScenario(scenario, "pie", {}, "png", services, [](const std::string&) {});
    bytes = png.size();
    benchmark::DoNotOptimize(png.data());
  }
  state.counters["bytes"] = static_cast<double>(bytes);
}

// From data to the frame that shows it, of a chart that has opened already.
void PieNewData(benchmark::State& state) {
  Services services;
  Screen screen(services);
  const Value data = spending(state.range(0));
  screen.host().waitForAnimations(longestOpening);
  for (auto _ : state) {
    screen.host().call("SetPlotData", {data});
    screen.host().settle();
    screen.compose();
  }
}

// Each frame of the opening, with the turn of the run loop before it.
void PieOpeningFrame(benchmark::State& state) {
  Services services;
  const Value data = spending(state.range(0));
  std::unique_ptr<Screen> screen;
  for (auto _ : state) {
    if (!screen || !CATransaction::hasRunningAnimations()) {
      state.PauseTiming();
      screen.reset();
      screen = std::make_unique<Screen>(services);
      screen->host().call("SetPlotData", {data});
      screen->host().settle();
      screen->compose();
      state.ResumeTiming();
    }
    screen->host().wait(frame);
    screen->compose();
  }
}

// A pointer that goes round the pie once a second.
void PieHoverFrame(benchmark::State& state) {
  Services services;
  Screen screen(services);
  screen.host().call("SetPlotData", {spending(state.range(0))});
  screen.host().waitForAnimations(longestOpening);
  screen.compose();
  double time = 0;
  for (auto _ : state) {
    const double angle = 2 * M_PI * time / hoverSeconds;
    screen.host().mouseMoved({size.width / 2 + 90 * std::cos(angle), size.height / 2 + 90 * std::sin(angle)});
    screen.host().wait(frame);
    screen.compose();
    time += frame;
  }
}

// A page's data becoming layers, without a picture.
void PieData(benchmark::State& state) {
  Services services;
  Screen screen(services);
  const Value data = spending(state.range(0));
  for (auto _ : state) screen.host().call("SetPlotData", {data});
}

BENCHMARK(PieToPNG)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK(PieNewData)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK(PieOpeningFrame)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK(PieHoverFrame)->Arg(8)->Unit(benchmark::kMillisecond);
BENCHMARK(PieData)->Arg(8)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
