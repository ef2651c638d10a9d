// One hosted chart with a page that remembers its calls and a clock that the test moves.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "AppKit/NSBundle.h"
#include "Classes/Plotting/LinePlot.h"
#include "Classes/Views/BarOrLineView.h"
#include "Foundation/NSLog.h"
#include "Hosts/Common/Turn.h"
#include "QuartzCore/CATransaction.h"
#include "Support/Drawn.h"
#include "Support/PlainDevice.h"
#include "Support/ViewHost.h"
#include "WebKit/MemoryScriptObject.h"

namespace zelkon {

inline Value pageValue(ValueArray elements) { return MemoryScriptObject::valueFromPage(Value(std::move(elements))); }

// Named A, B, C ...
inline Value slices(const std::vector<double>& amounts) {
  ValueArray elements;
  for (const double amount : amounts)
    elements.emplace_back(
        ValueDictionary{{"key", std::string(1, static_cast<char>('A' + elements.size()))}, {"value", amount}});
  return pageValue(std::move(elements));
}
inline Value periods(const std::vector<const char*>& amounts) {
  ValueArray elements;
  for (const char* amount : amounts) {
    const std::string name(1, static_cast<char>('A' + elements.size() % 26));
    elements.emplace_back(ValueDictionary{{"humanX", name}, {"humanY", "$" + name}, {"y", amount}});
  }
  return pageValue(std::move(elements));
}

inline constexpr const char* kPie = "pie";
inline constexpr const char* kOverTime = "spendingOverTimeBarOrLine";

class Hosted {
 public:
  explicit Hosted(const char* plot, CGSize box = {500, 320}, ChartLayout layout = ChartLayout::literal)
      : earlierSink_(NSSetLogSink([this](std::string_view line) { log.emplace_back(line); })) {
    NSBundle::mainBundle().setLoader(ViewHost::resource);
    chart = std::make_unique<HostedChart>(
        plot, box, layout, [this](std::string_view name, const ValueArray&) { calls.emplace_back(name); });
  }
  ~Hosted() {
    chart.reset();
    turn();
    NSSetLogSink(earlierSink_);
  }
  Hosted(const Hosted&) = delete;
  Hosted& operator=(const Hosted&) = delete;

  // A turn after so many seconds.
  void turn(double seconds = 0) {
    std::vector<HostedChart*> charts;
    if (chart) charts.push_back(chart.get());
    beginTurn(charts, CACurrentMediaTime() + seconds, false);
    endTurn(charts);
  }
  void setData(const Value& data) { outcome = chart->call("SetPlotData", {data}); }
  // Hands the data over and lets the opening run out.
  void show(const Value& data) {
    setData(data);
    turn();
    turn();
    turn(3);
    turn();
  }
  void resize(CGSize box) {
    chart->setSize(box);
    turn();
    turn();
  }
  BarOrLineView& overTime() const { return static_cast<BarOrLineView&>(*chart->view()); }
  const BarPlot* plotter() const { return overTime().plotter().get(); }
  size_t barCount() const { return chart->view()->layer() ? chart->view()->layer()->sublayers().size() : 0; }
  Drawn print() {
    RecordingContext context;
    chart->print(context);
    return Drawn(*context.snapshot());
  }
  Drawn screen() {
    RecordingContext context;
    chart->compose(context, 1, CACurrentMediaTime());
    return Drawn(*context.snapshot());
  }

  PlainDevice device;
  std::vector<std::string> log, calls;
  HostedChart::CallOutcome outcome;
  std::unique_ptr<HostedChart> chart;

 private:
  LogSink earlierSink_;
};

}  // namespace zelkon
