// Data, plotter, display and printing; the tooltip has a file of its own.
#include "Classes/Views/BarOrLineView.h"

#include <cmath>

#include "Classes/Plotting/LinePlot.h"
#include "Classes/Views/ScriptElement.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSNotificationCenter.h"
#include "Foundation/NSScanner.h"
#include "WebKit/WebScriptObject.h"

namespace zelkon {
namespace {

constexpr unsigned kTrackingOptions =
    NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveInKeyWindow | NSTrackingInVisibleRect;

PlotEntry::Text textOrNothing(const Value& value) { return value.length() > 0 ? value.sharedString() : nullptr; }

}  // namespace

void BarOrLineView::createLayerHierarchy() {
  if (numberOfPendingAnimations() != 0) return;
  CALayerPlotView::createLayerHierarchy();
  if (layer()) {
    destroyLayerHierarchy(layer());
  } else {
    const CALayerRef root = CALayer::layer();
    root->setAutoresizingMask(kCALayerWidthSizable | kCALayerHeightSizable);
    setLayer(root);
    setWantsLayer(true);
  }
  layer()->setBounds(CGRectIntegral(bounds()));
  _setPosition({CGRectGetMidX(bounds()), CGRectGetMidY(bounds())}, layer());

  // The earlier area stays with the view; handling an event twice does no harm.
  trackingArea_ = std::make_shared<NSTrackingArea>(NSTrackingArea{NSZeroRect, kTrackingOptions, weak_from_this()});
  addTrackingArea(trackingArea_);

  if (plotter_)
    plotter_->redisplay();
  else
    _createAndDisplayPlotter();
}

void BarOrLineView::js_setPlotData(const Value& data) {
  guardedScriptCall("js_setPlotData:", [&] {
    CALayerPlotView::js_setPlotData(data);
    const std::string operation = "-[" + className() + " js_setPlotData:]";
    std::vector<PlotEntryRef> entries;
    // A page may hand over a great many entries: what they are is asked once for each, not for each property.
    const WebScriptObjectRef array = WebScriptObjectOf(data);
    for (size_t i = 0;; ++i) {
      const Value element = array ? array->webScriptValueAtIndex(i) : ScriptElementAtIndex(data, i);
      if (element.isUndefined() || element.isNull()) break;
      const WebScriptObjectRef object = WebScriptObjectOf(element);
      const auto read = [&](std::string_view key) {
        return object ? object->valueForKey(key) : ScriptElementValueForKey(element, key);
      };
      const Value humanX = read("humanX"), mediumHumanX = read("mediumHumanX"), shortHumanX = read("shortHumanX");
      const Value subtitle = read("shortHumanXSubtitle"), humanY = read("humanY"), y = read("y");
      if (humanX.length() == 0 || humanY.length() == 0 || y.length() == 0) continue;
      std::optional<double> amount = NSScanDouble(y.string());
      // An amount without end has no place on an axis.
      if (amount && !std::isfinite(*amount)) amount.reset();
      NSParameterAssert(amount.has_value(), "didScanYValue", operation, this, "Classes/Views/BarOrLineView", 343);
      auto entry = std::make_shared<PlotEntry>();
      entry->humanX = humanX.sharedString();
      entry->humanY = humanY.sharedString();
      entry->y = *amount;
      entry->mediumHumanX = textOrNothing(mediumHumanX);
      entry->shortHumanX = textOrNothing(shortHumanX);
      entry->shortHumanXSubtitle = subtitle;
      entries.push_back(std::move(entry));
    }
    setPlotData(std::make_shared<const PlotEntryArray>(std::move(entries)));
    if (plotter_)
      plotter_->redisplay();
    else
      _createAndDisplayPlotter();
  });
}

void BarOrLineView::_createAndDisplayPlotter() {
  const auto entries = std::dynamic_pointer_cast<const PlotEntryList>(plotData());
  if (NSIsEmptyRect(bounds()) || !entries || !layer() || NSIsEmptyRect(layer()->bounds())) return;
  const auto count = static_cast<double>(entries->count());
  const double needed = count * BarPlot::minimumBarWidth() + (count - 1) * BarPlot::minimumBarSpacing();
  if (count > 0 && needed > CGRectGetWidth(bounds()))
    plotter_ = std::make_shared<LinePlot>();
  else
    plotter_ = std::make_shared<BarPlot>();
  plotter_->setAnimationsCreatedDelegate(std::static_pointer_cast<BarOrLineView>(shared_from_this()));
  plotter_->setRootLayer(layer());
  plotterOptions_ = plotOptions();
  plotter_->setPlotOptions(plotterOptions_);
  plotter_->setPlotData(entries);
  doDisplay();
}

void BarOrLineView::doDisplay() {
  CALayerPlotView::doDisplay();
  if (plotter_) plotter_->doDisplay();
}

void BarOrLineView::animationCreated(CABasicAnimation& animation, const std::string& key) {
  animation.setValue(key, "key");
  animation.delegate = animationDelegate();
  registerStartupAnimationKey(key);
}

void BarOrLineView::renderForPrintingInContext(CGContext& context) {
  CALayerPlotView::renderForPrintingInContext(context);
  if (plotter_) plotter_->doDisplay();
  if (!layer()) return;
  for (const CALayerRef& sublayer : layer()->sublayers()) sublayer->renderInContext(context);
}

void BarOrLineView::viewDidMoveToSuperview() {
  const auto scrollView = enclosingScrollView();
  const auto contentView = scrollView ? scrollView->contentView() : nullptr;
  if (!contentView) return;
  contentView->setPostsBoundsChangedNotifications(true);
  contentView->setPostsFrameChangedNotifications(true);
  for (const char* name : {NSViewBoundsDidChangeNotification, NSViewFrameDidChangeNotification})
    NSNotificationCenter::defaultCenter().addObserver(
        this, [this](const NSNotification&) { enclosingContentViewBoundsOrFrameDidChange(); }, name, contentView.get());
}

void BarOrLineView::enclosingContentViewBoundsOrFrameDidChange() {
  if (NSEqualRects(visibleRect(), NSZeroRect)) return;
  if (const auto parent = superview()) parent->setNeedsDisplay(true);
}

void BarOrLineView::webPlugInDestroy() {
  for (const char* name : {NSViewBoundsDidChangeNotification, NSViewFrameDidChangeNotification})
    NSNotificationCenter::defaultCenter().removeObserver(this, name, nullptr);
}

}  // namespace zelkon
