// Amounts over time in one process: label fitting, gridlines, whole generations, first frames and the pointer.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "Backends/Cairo/CairoDevice.h"
#include "Backends/Cairo/IcuLocaleServices.h"
#include "Classes/Plotting/LinePlot.h"
#include "CoreGraphics/CGContext.h"
#include "Hosts/Headless/PlugInHost.h"
#include "Hosts/Headless/ScenarioPlayer.h"
#include "QuartzCore/CATransaction.h"

namespace {

using namespace zelkon;

constexpr CGSize size{800, 400};
constexpr double frame = 1.0 / 60;
constexpr double longestOpening = 60;

class Services {
 public:
  Services() : earlier_(LocaleServices::install(std::make_shared<IcuLocaleServices>("en_US"))) {}
  ~Services() { LocaleServices::install(earlier_); }
  HeadlessServices& operator*() { return services_; }

 private:
  HeadlessServices services_;
  std::shared_ptr<LocaleServices> earlier_;
};

constexpr const char* monthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                      "July",    "August",   "September", "October", "November", "December"};

struct Month {
  std::string longName, mediumName, shortName, year, amount;
  double y;
};
Month month(int64_t index) {
  const std::string name = monthNames[index % 12], shortName = name.substr(0, 3);
  const std::string year = std::to_string(1900 + index / 12);
  const double y = 400 + static_cast<double>(index * 7919 % 1000);
  return {name + " " + year, shortName + " " + year, shortName, year, std::to_string(static_cast<int>(y)), y};
}

// What a page hands over.
Value spending(int64_t count) {
  ValueArray entries;
  entries.reserve(static_cast<size_t>(count));
  for (int64_t i = 0; i < count; ++i) {
    const Month m = month(i);
    entries.emplace_back(ValueDictionary{{"humanX", m.longName},
                                         {"mediumHumanX", m.mediumName},
                                         {"shortHumanX", m.shortName},
                                         {"shortHumanXSubtitle", m.year},
                                         {"humanY", "$" + m.amount},
                                         {"y", m.amount}});
  }
  return entries;
}

// The same as a plotter holds it.
PlotEntryListRef entries(int64_t count) {
  std::vector<PlotEntryRef> result;
  for (int64_t i = 0; i < count; ++i) {
    const Month m = month(i);
    auto entry = std::make_shared<PlotEntry>();
    entry->humanX = std::make_shared<const std::string>(m.longName);
    entry->mediumHumanX = std::make_shared<const std::string>(m.mediumName);
    entry->shortHumanX = std::make_shared<const std::string>(m.shortName);
    entry->shortHumanXSubtitle = m.year;
    entry->humanY = std::make_shared<const std::string>("$" + m.amount);
    entry->y = m.y;
    result.push_back(std::move(entry));
  }
  return std::make_shared<const PlotEntryArray>(std::move(result));
}

// Long names into 800 points, until they fit or one is left. Each row is new, as a new chart's is.
void FitLabels(benchmark::State& state) {
  Services services;
  const double slot = size.width / static_cast<double>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    LabelRow row;
    for (int64_t i = 0; i < state.range(0); ++i) {
      row.labels.emplace_back(month(i).longName, BarPlot::xLabelAttributes());
      row.rects.push_back(CGRectMake(slot * static_cast<double>(i), 34, slot, 15));
    }
    state.ResumeTiming();
    labelfitting::fit(row, 20);
    benchmark::DoNotOptimize(row.labels.data());
  }
}

// Eighteen ranges from a millionth to a billion times a thousand.
void ComputeGridlines(benchmark::State& state) {
  for (auto _ : state)
    for (double max = 1e-6; max < 2e12; max *= 10)
      benchmark::DoNotOptimize(CashFlowPlot::computeGridlinesForMinAmount(-max / 3, max * 1.7, true, 5));
}

template <typename Plot>
void Generate(benchmark::State& state, double width) {
  Services services;
  const CALayerRef root = CALayer::layer();
  root->setBounds(CGRectMake(0, 0, width, size.height));
  const auto plot = std::make_shared<Plot>();
  plot->setRootLayer(root);
  const PlotEntryListRef data = entries(state.range(0));
  for (auto _ : state) plot->setPlotData(data);
  CATransaction::flush();
}
void GenerateBars(benchmark::State& state) { Generate<BarPlot>(state, state.range(0) > 15 ? 3200 : size.width); }
void GenerateLine(benchmark::State& state) { Generate<LinePlot>(state, size.width); }

// A view on a screen of one pixel per point.
class Screen {
 public:
  explicit Screen(Services& services)
      : services_(services),
        transcript_([](const std::string&) {}),
        host_("spendingOverTimeBarOrLine", size, false, transcript_) {
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
