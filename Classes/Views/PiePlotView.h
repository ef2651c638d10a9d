// The spending pie: slices with a gloss over them, labels that show while their slice is hovered, and a shadow on the
// floor below. It takes its data from page script, animates in once, highlights the slice under the pointer (or the
// one the page asks for) and tells the page what is hovered and clicked.
//
// Points, y up; angles in radians, counter-clockwise from three o'clock. Main thread only.
#pragma once

#include <cstdint>
#include <string>

#include "AppKit/NSColor.h"
#include "Classes/Views/CALayerPlotView.h"
#include "Classes/Views/PiePlotEntry.h"
#include "Classes/Views/PieSliceLayer.h"

namespace zelkon {

class PiePlotView : public CALayerPlotView {
 public:
  explicit PiePlotView(Value arguments);
  ~PiePlotView() override;
  std::string className() const override { return "PiePlotView"; }

  // Data. Takes copies of the entries and gives each its share of the sum; a pie of zeros has equal slices. The data
  // already held is left as it is. Amounts that are no numbers raise NSInvalidArgumentException and leave no data.
  void setPlotData(std::shared_ptr<const PlotData> data) override;
  std::shared_ptr<const PiePlotData> piePlotData() const;  // null until data has been accepted
  // Radius of the pie for the present bounds; zero or less in a view too small for one.
  double pieRadius() const;
  NSColor _sliceColorAtIndex(int64_t index, int64_t sliceCount) const;
  NSColor _emptyPieColor() const;

  // Script bridge.
  std::vector<std::string> selectors() const override;
  std::optional<std::string> webScriptNameForSelector(const std::string& selector) const override;
  bool isSelectorExcludedFromWebScript(const std::string& selector) const override;
  Value invokeSelector(const std::string& selector, const ValueArray& values) override;
  // Takes a page array of objects with "key" and "value" and lays the slices out. Exceptions are logged.
  void js_setPlotData(const Value& data) override;
  // Writes a slice's colour into a page object: "red", "green", "blue", "alpha", 0...1.
  void sliceColorAtIndex(const Value& index, const Value& sliceCount, const Value& components);
  // Highlights one slice, or none for false and for an index without a slice. Calls no page function.
  void hover(bool hover, int64_t index);

  // Layers. The containers are made when first asked for and live as long as the root layer.
  void createLayerHierarchy() override;
  CALayerRef plotLayer();
  CALayerRef slicesLayer();
  CALayerRef plotHighlightLayer();
  CALayerRef textLabelsLayer();
  CALayerRef dropShadowLayer();

  // Display.
  void webPlugInStart() override;
  void doDisplay() override;
  void doHide() override;
  void viewDidMoveToSuperview() override;
  void enclosingContentViewBoundsOrFrameDidChange();
  void webPlugInDestroy() override;
  void renderForPrintingInContext(CGContext& context) override;
  std::string startupAnimationsDidCompleteJSFunction() const override { return "SpendingTrendsHaveDisplayed"; }
  bool initialDisplay() const { return initialDisplay_; }  // not yet shown for the first time
  bool isDisplayed() const override { return !initialDisplay_; }
  std::vector<ReachableEntry> reachableEntries() const override;

  // Hover and click.
  void mouseDown(const NSEvent& event) override;
  void mouseEntered(const NSEvent&) override {}
  void mouseMoved(const NSEvent& event) override;
  void mouseExited(const NSEvent& event) override;
  // The entry whose slice contains the point (layer coordinates), or null. The rim belongs to the pie.
  PiePlotEntryRef _entryForPoint(CGPoint point) const;
  const PiePlotEntryRef& currentHoverEntry() const { return currentHoverEntry_; }  // under the pointer, or null

 private:
  // Layout: each empties its container and builds it anew for the present bounds; nothing for empty bounds.
  void _layoutSublayersOfSlicesLayer();
  void _layoutSublayersOfHighlightLayer();
  void _layoutSublayersOfDropShadowLayer();
  void layOutEntries(const PiePlotData& data, const CALayerRef& slices, const CALayerRef& labels);
  CALayerRef _textLayerWithLabel(const std::string& label);
  // The container stored on the root layer under the name; made by `make` the first time.
  template <typename Make>
  CALayerRef container(const char* name, Make make);
  CALayerRef makeLayerOverPlot();
  CGRect rootBounds() const;
  CGRect plotFrame() const;
  CGRect dropShadowFrame() const;
  // Containers that the view was too small for are placed anew once there is room.
  void restoreContainers();
  CALayerRef storedContainer(const char* name) const;
  void replaceTrackingArea();

  void startAnimation(const CALayerRef& layer, const char* keyPath, CAAnimatableValue target, const char* key);

  void _hoverEntry(const PiePlotEntryRef& entry);
  void _clearHoverStatesExceptingEntry(const PiePlotEntryRef& kept);
  // The entry's place in the plot data; the largest signed integer when it has none.
  int64_t indexOfEntry(const PiePlotEntryRef& entry) const;
  void callPageAboutHover(int64_t index, int64_t previous);

  NSTrackingAreaRef trackingArea_;
  bool plotIsCutOff_ = false;              // in height
  bool dropShadowIsCutOff_ = false;        // in width
  std::optional<double> dropShadowInset_;  // on both sides; none as long as the view has had no size
  bool initialDisplay_ = true;
  PiePlotEntryRef currentHoverEntry_;
};

}  // namespace zelkon
