#include "Classes/Plotting/CashFlowPlot.h"

namespace zelkon {

void CashFlowPlot::setPlotData(PlotEntryListRef data) {
  plotData_ = std::move(data);
  if (rootLayer() && plotData_) generatePlot();
}

void CashFlowPlot::generatePlot() { _destroyLayerHierarchy(rootLayer()); }

Value CashFlowPlot::valueForPlotOptionKey(std::string_view key) const {
  if (const auto options = plotOptions()) {
    if (const auto option = options->find(key); option != options->end() && !option->second.isNull())
      return option->second;
  }
  return defaultPlotOptionValueForKey(key);
}

Value CashFlowPlot::defaultPlotOptionValueForKey(std::string_view) const { return {}; }

void CashFlowPlot::_destroyLayerHierarchy(const CALayerRef& layer) {
  if (!layer) return;
  for (const CALayerRef& sublayer : layer->sublayers()) sublayer->removeFromSuperlayer();
}

const CGColorRef& CashFlowPlot::defaultTextColor() {
  static const CGColorRef color =
      std::make_shared<const CGColor>(CGColorSpaceCalibratedWhite(), std::vector<double>{0, 1});
  return color;
}

}  // namespace zelkon
