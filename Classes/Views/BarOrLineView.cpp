// Data, plotter, display and printing; the tooltip has a file of its own.
#include "Classes/Views/BarOrLineView.h"

#include <cmath>

#include "AppKit/NSScrollView.h"
#include "Classes/Plotting/LinePlot.h"
#include "Classes/Views/ScriptEntries.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSNotificationCenter.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {
namespace {

constexpr unsigned kTrackingOptions =
    NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveInKeyWindow | NSTrackingInVisibleRect;

// Set as long as this lives.
class Flag {
 public:
  explicit Flag(bool& flag) : flag_(flag) { flag_ = true; }
  ~Flag() { flag_ = false; }
  Flag(const Flag&) = delete;
  Flag& operator=(const Flag&) = delete;

 private:
  bool& flag_;
};

// Ten times as much still has an axis, whatever the options.
constexpr double kGreatAmount = 1e307;

bool hasFiniteAxis(const PlotEntryListRef& entries, const std::shared_ptr<const ValueDictionary>& options) {
  bool areGreat = false;
  for (size_t i = 0; i < entries->count() && !areGreat; ++i) areGreat = std::abs(entries->y(i)) > kGreatAmount;
  // The options are only asked where they decide.
  if (!areGreat) return true;
  BarPlot plot;
  plot.setPlotOptions(options);
  plot.setPlotData(entries);
  return plot.hasFiniteAxis();
}

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
  {
    const CATransactionWithoutActions noActions;
    layer()->setBounds(CGRectIntegral(bounds()));
    _setPosition({CGRectGetMidX(bounds()), CGRectGetMidY(bounds())}, layer());
  }

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
    const auto checkAmount = [this](bool didScanYValue) {
      const std::string operation = "-[" + className() + " js_setPlotData:]";
      NSParameterAssert(didScanYValue, "didScanYValue", operation, this, "Classes/Views/BarOrLineView", 343);
    };
    const PlotEntryListRef entries = ScriptEntries(data, checkAmount);
    checkAmount(hasFiniteAxis(entries, plotOptions()));
    setPlotData(entries);
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
  plotterEntries_ = entries;
  plotter_->setPlotData(entries);
  doDisplay();
}

void BarOrLineView::doDisplay() {
  CALayerPlotView::doDisplay();
  if (plotter_) plotter_->doDisplay();
}

void BarOrLineView::animationCreated(CABasicAnimation& animation, const std::string& key) {
  // What grows on paper is no part of the opening that the page waits for.
  if (isPrinting_) return;
  tagStartupAnimation(animation, key);
  registerStartupAnimationKey(key);
}

void BarOrLineView::renderForPrintingInContext(CGContext& context) {
  CALayerPlotView::renderForPrintingInContext(context);
  {
    const Flag printing(isPrinting_);
    if (plotter_) plotter_->doDisplay();
  }
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
