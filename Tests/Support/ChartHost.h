// A view of amounts over time driven as a host drives it. Characters are 0.6 of the font size wide.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Classes/Plotting/LinePlot.h"
#include "Classes/Views/BarOrLineView.h"
#include "Support/Drawn.h"
#include "Support/ViewHost.h"

namespace zelkon {

// An entry as a page gives it: names of the period, the amount as text and as what is scanned.
inline ValueDictionary chartEntry(std::string humanX, Value y, std::string humanY = "$1") {
  return {{"humanX", std::move(humanX)}, {"humanY", std::move(humanY)}, {"y", std::move(y)}};
}
// Named A, B, C ...; "A" has the amount text "$A".
inline Value chartAmounts(const std::vector<const char*>& amounts) {
  ValueArray elements;
  for (const char* amount : amounts) {
    const std::string name(1, static_cast<char>('A' + elements.size() % 26));
    elements.emplace_back(chartEntry(name, amount, "$" + name));
  }
  return pageArray(std::move(elements));
}
inline Value chartOf(size_t count) { return chartAmounts(std::vector<const char*>(count, "100")); }

class ChartHost : public ViewHost {
 public:
  explicit ChartHost(CGSize size = {657, 311}) : ViewHost("spendingOverTimeBarOrLine", size) {}
  BarOrLineView& chart() const { return static_cast<BarOrLineView&>(*view); }
  const BarPlot* plotter() const { return chart().plotter().get(); }
  bool isLine() const { return dynamic_cast<const LinePlot*>(plotter()) != nullptr; }
  void setData(const Value& data) { call("SetPlotData", {data}); }
  void setOptions(const ValueArray& options) { call("SetPlotOptions", {pageArray(options)}); }
  // Hands over the amounts and lets the opening run out.
  void show(const Value& data) {
    setData(data);
    turn();
    turn(2);
  }
  // The entry's text as the view keeps it; null when there are no data.
  PlotEntryListRef data() const { return std::dynamic_pointer_cast<const PlotEntryList>(chart().plotData()); }
  std::vector<std::string> names() const {
    std::vector<std::string> result;
    for (size_t i = 0; data() && i < data()->count(); ++i) result.push_back(*data()->entry(i)->humanX);
    return result;
  }
  void moveOver(size_t index) {
    const CGRect rect = plotter()->rectForEntry(plotter()->plotData()->entry(index));
    move(CGRectGetMidX(rect), CGRectGetMidY(rect));
  }
};

}  // namespace zelkon
