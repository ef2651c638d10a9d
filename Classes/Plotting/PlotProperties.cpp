// What plotters tell of themselves by name.
#include "Classes/Plotting/LinePlot.h"

namespace zelkon {
namespace {

Value valueOf(CGRect rect) { return ValueArray{rect.origin.x, rect.origin.y, rect.size.width, rect.size.height}; }

}  // namespace

std::vector<std::pair<std::string, Value>> BarPlot::properties() const {
  ValueArray tickmarks, rects;
  for (const double tickmark : yTickmarks_) tickmarks.emplace_back(tickmark);
  for (size_t i = 0; plotData() && i < plotData()->count(); ++i)
    rects.push_back(valueOf(rectForEntry(plotData()->entry(i))));
  return {{"class", className()},    {"plotRect", valueOf(plotRect_)},     {"barWidth", barWidth_},
          {"barMargin", barMargin_}, {"yTickmarks", std::move(tickmarks)}, {"hitRectangles", std::move(rects)}};
}

std::vector<std::pair<std::string, Value>> LinePlot::properties() const {
  auto properties = BarPlot::properties();
  properties.insert(properties.begin() + 4, {"pixelsPerRenderPoint", pixelsPerRenderPoint_});
  return properties;
}

}  // namespace zelkon
