// The view of amounts over time: takes the page's entries, chooses bars or a line by the width there is, owns the
// plotter that draws them, and shows a tooltip bubble over the entry under the pointer.
#pragma once

#include "Classes/Plotting/BarPlot.h"
#include "Classes/Views/CALayerPlotView.h"
#include "QuartzCore/CATextLayer.h"

namespace zelkon {

class BarOrLineView : public CALayerPlotView, public AnimationsCreatedProtocol, public CALayerDelegate {
 public:
  using CALayerPlotView::CALayerPlotView;
  std::string className() const override { return "BarOrLineView"; }

  // Empties the root layer and shows the chart again in it, except while opening animations run.
  void createLayerHierarchy() override;
  // An entry needs "humanX", "humanY" and "y" with text in them, or it is skipped. A "y" that begins with no number
  // ends the call, with the earlier data kept, and so do amounts too great for an axis. A chart once shown keeps what
  // it was made from.
  void js_setPlotData(const Value& data) override;
  void doDisplay() override;
  void renderForPrintingInContext(CGContext& context) override;
  std::string startupAnimationsDidCompleteJSFunction() const override { return "GraphHasDisplayed"; }
  void animationCreated(CABasicAnimation& animation, const std::string& key) override;
  void viewDidMoveToSuperview() override;
  void webPlugInDestroy() override;

  void mouseMoved(const NSEvent& event) override;
  void mouseExited(const NSEvent& event) override;
  // Paints the bubble.
  void drawLayer(CALayer& layer, CGContext& context) override;

  bool isDisplayed() const override { return plotter_ && plotter_->isDisplayed(); }
  bool keepsFirstData() const override { return isDisplayed(); }
  CGSize minimumLayoutSize() const override;
  CALayerRef transientLayer() const override { return currentHoverLayer_; }
  std::vector<ReachableEntry> reachableEntries() const override;
  size_t numberOfPeriods() const override;
  ReachableEntry periodAtIndex(size_t index) const override;
  NamedValues plotterProperties() const override;

  // Null until there are data and room for a chart.
  const std::shared_ptr<BarPlot>& plotter() const { return plotter_; }
  const PlotEntryRef& currentHoverEntry() const { return currentHoverEntry_; }
  const CALayerRef& currentHoverLayer() const { return currentHoverLayer_; }

  void _createAndDisplayPlotter();
  void _clearHoverEntry();
  void _hoverEntry(const PlotEntryRef& entry, CGPoint anchor);
  void _moveAndResizeLayerForEntry(const PlotEntryRef& entry, CGPoint anchor);
  CALayerRef _createHoverLayerWithText(const std::string& text, const std::string& header);
  static NSAttributedString _createAttributedStringForValue(const std::string& value, const std::string& header);
  static CGSize _sizeForTextLayer(const CATextLayer& textLayer);
  // Puts the layer there, on whole points.
  static void _setPosition(CGPoint position, const CALayerRef& layer);

 private:
  void enclosingContentViewBoundsOrFrameDidChange();
  void showHoverLayer();
  PlotEntryListRef periods() const;
  static void fitBubbleToText(const CALayerRef& bubble, const std::shared_ptr<CATextLayer>& text);

  std::shared_ptr<BarPlot> plotter_;
  // What the plotter was made with and goes on reading, also after the page has set others.
  std::shared_ptr<const ValueDictionary> plotterOptions_;
  PlotEntryListRef plotterEntries_;  // all of them; a plotter of many keeps fewer
  bool isPrinting_ = false;
  NSTrackingAreaRef trackingArea_;
  PlotEntryRef currentHoverEntry_;
  CALayerRef currentHoverLayer_;
};

}  // namespace zelkon
