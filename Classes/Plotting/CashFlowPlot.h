// Root of the plotters, which turn plot data and options into layers: it holds the three inputs, answers options with
// the class's defaults, and draws anew when data arrive. Its class operations are what every plotter shares: gridlines
// (Gridlines.h) and label fitting (LabelFitting.h).
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Classes/Plotting/Gridlines.h"
#include "Classes/Plotting/LabelFitting.h"
#include "Classes/Plotting/PlotEntryList.h"
#include "Foundation/Locale.h"
#include "Foundation/Value.h"
#include "QuartzCore/CALayer.h"

namespace zelkon {

class CashFlowPlot : public Object, public std::enable_shared_from_this<CashFlowPlot> {
 public:
  std::string className() const override { return "CashFlowPlot"; }

  // The layer the chart is drawn into. Not owned.
  CALayerRef rootLayer() const { return rootLayer_.lock(); }
  void setRootLayer(const CALayerRef& layer) { rootLayer_ = layer; }
  // The page's options. Not owned: their owner keeps them for as long as the plotter lives.
  std::shared_ptr<const ValueDictionary> plotOptions() const { return plotOptions_.lock(); }
  void setPlotOptions(const std::shared_ptr<const ValueDictionary>& options) { plotOptions_ = options; }
  const PlotEntryListRef& plotData() const { return plotData_; }
  // Stores the data and, when there are both data and a root layer, draws the chart anew.
  void setPlotData(PlotEntryListRef data);

  // Draws the chart from scratch. The base only removes what an earlier drawing put under the root layer.
  virtual void generatePlot();
  // The page's option as it is, or the class's default.
  Value valueForPlotOptionKey(std::string_view key) const;
  virtual Value defaultPlotOptionValueForKey(std::string_view key) const;

  void _destroyLayerHierarchy(const CALayerRef& layer);

  static void _testGridlineGeneration() { gridlines::selfTest(); }
  static bool _labelsAndRectsOverlapWithMargin(const LabelRow& row, double margin) {
    return labelfitting::overlap(row, margin);
  }
  static std::vector<NSAttributedString> _adjustLabels(const std::vector<NSAttributedString>& labels, double sizeDelta,
                                                       double widthDelta) {
    return labelfitting::adjusted(labels, sizeDelta, widthDelta);
  }
  static bool _canAdjustLabels(const std::vector<NSAttributedString>& labels, double sizeDelta) {
    return labelfitting::canAdjust(labels, sizeDelta);
  }
  static LabelRow _concatenateLabels(const LabelRow& row, size_t groupSize) {
    return labelfitting::concatenated(row, groupSize);
  }
  static double computeDisplayGridValueForValue(double value) { return gridlines::displayValue(value); }
  static Gridlines computeGridlinesForMinAmount(double minAmount, double maxAmount, bool zeroRequired, unsigned total) {
    return gridlines::compute(minAmount, maxAmount, zeroRequired, total);
  }
  static double magnitudeOfValue(double value) { return gridlines::magnitude(value); }
  static CGSize sizeOfLabel(const NSAttributedString& label) { return label.size(); }
  static CGSize maxSizeOfLabels(const std::vector<NSAttributedString>& labels) { return labelfitting::maxSize(labels); }
  static double fractionForValue(double value, const Gridlines& lines) { return gridlines::fraction(value, lines); }
  // Opaque black, calibrated white 0.
  static const CGColorRef& defaultTextColor();
  static void fitLabelsHorizontally(LabelRow& row, double margin) { labelfitting::fit(row, margin); }
  static void fitMonthLabelsHorizontally(LabelRow& row, double margin, const NSDateFormatter& formatter) {
    labelfitting::fitMonths(row, margin, formatter);
  }

 private:
  std::weak_ptr<CALayer> rootLayer_;
  std::weak_ptr<const ValueDictionary> plotOptions_;
  PlotEntryListRef plotData_;
};

}  // namespace zelkon
