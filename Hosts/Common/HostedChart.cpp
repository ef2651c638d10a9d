#include "Hosts/Common/HostedChart.h"

#include <algorithm>
#include <cmath>

#include "AppKit/NSGraphicsContext.h"
#include "Classes/Views/PlotView.h"
#include "Foundation/NSLog.h"
#include "Foundation/NSRunLoop.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {
namespace {

// A chart's animations may start others when they end; no chart starts this many in a row.
constexpr int kMostRoundsOfAnimations = 16;
// A size that comes from whole pixels by a division is whole but for rounding.
constexpr double kRounding = 1e-6;

bool isTreeAnimating(const CALayerRef& layer, double time) {
  if (!layer) return false;
  if (layer->hasRunningAnimations(time) || isTreeAnimating(layer->mask(), time)) return true;
  for (const CALayerRef& sublayer : layer->sublayersInPlace()) {
    if (isTreeAnimating(sublayer, time)) return true;
  }
  return false;
}

bool removeTreeAnimations(const CALayerRef& layer, double time) {
  if (!layer) return false;
  bool any = layer->hasRunningAnimations(time);
  if (any) layer->removeAllAnimations();
  any |= removeTreeAnimations(layer->mask(), time);
  for (const CALayerRef& sublayer : layer->sublayers()) any |= removeTreeAnimations(sublayer, time);
  return any;
}

// No log line is written as long as this lives.
class SilentLog {
 public:
  SilentLog() : earlier_(NSSetLogSink([](std::string_view) {})) {}
  ~SilentLog() { NSSetLogSink(std::move(earlier_)); }
  SilentLog(const SilentLog&) = delete;
  SilentLog& operator=(const SilentLog&) = delete;

 private:
  LogSink earlier_;
};

// What draws without a context of its own draws into this one as long as this lives.
class CurrentContext {
 public:
  explicit CurrentContext(CGContext& context) {
    NSGraphicsContext::saveGraphicsState();
    NSGraphicsContext::setCurrentContext(NSGraphicsContext::graphicsContextWithGraphicsPort(&context, false));
  }
  ~CurrentContext() { NSGraphicsContext::restoreGraphicsState(); }
  CurrentContext(const CurrentContext&) = delete;
  CurrentContext& operator=(const CurrentContext&) = delete;
};

// Sublayers that are added at the end while this lives are taken off again.
class TakesOffAddedLayers {
 public:
  explicit TakesOffAddedLayers(CALayerRef root) : root_(std::move(root)), kept_(count()) {}
  ~TakesOffAddedLayers() {
    if (count() <= kept_) return;
    const CATransactionWithoutActions noActions;
    const std::vector<CALayerRef> all = root_->sublayers();
    for (size_t i = kept_; i < all.size(); ++i) all[i]->removeFromSuperlayer();
  }
  TakesOffAddedLayers(const TakesOffAddedLayers&) = delete;
  TakesOffAddedLayers& operator=(const TakesOffAddedLayers&) = delete;

 private:
  size_t count() const { return root_ ? root_->sublayersInPlace().size() : 0; }
  CALayerRef root_;
  size_t kept_;
};

// The layer is off the screen and the paper as long as this lives.
class HiddenLayer {
 public:
  explicit HiddenLayer(CALayerRef layer) : layer_(layer && !layer->isHidden() ? std::move(layer) : nullptr) {
    set(true);
  }
  ~HiddenLayer() { set(false); }
  HiddenLayer(const HiddenLayer&) = delete;
  HiddenLayer& operator=(const HiddenLayer&) = delete;

 private:
  void set(bool hidden) {
    if (!layer_) return;
    const CATransactionWithoutActions noActions;
    layer_->setHidden(hidden);
  }
  CALayerRef layer_;
};

}  // namespace

HostedChart::HostedChart(std::optional<std::string> plot, CGSize box, ChartLayout layout, PageFunction page)
    : plot_(std::move(plot)), size_(box), layout_(layout), call_(std::move(page)), visible_{{0, 0}, box}, window_(box) {
  makeView();
}

HostedChart::~HostedChart() { dropView(); }

void HostedChart::makeView() {
  page_ = std::make_shared<PageWindow>(call_);
  ValueDictionary attributes;
  if (plot_) attributes["plot"] = *plot_;
  view_ = PlotView::plugInViewWithArguments(ValueDictionary{
      {WebPlugInAttributesKey, std::move(attributes)},
      {WebPlugInContainerKey, std::make_shared<WebPlugInContainer>(std::make_shared<WebFrame>(page_))}});
  page_->setDisplayFunction(view_->startupAnimationsDidCompleteJSFunction());

  scroller_ = std::make_shared<NSScrollView>(CGRect{});
  scroller_->setContentView(std::make_shared<NSClipView>(CGRect{}));
  window_.contentView()->addSubview(scroller_);
  scroller_->contentView()->addSubview(view_);
  isStarted_ = false;
  layOut();
  needsFrame_ = true;
}

void HostedChart::layOut() {
  scale_ = 1;
  layoutSize_ = size_;
  if (layout_ == ChartLayout::readable) {
    const CGSize least = view_->minimumLayoutSize();
    if (hasRoom() && least.width > 0 && least.height > 0)
      scale_ = std::min({1.0, size_.width / least.width, size_.height / least.height});
    layoutSize_ = {std::ceil(size_.width / scale_ - kRounding), std::ceil(size_.height / scale_ - kRounding)};
  }
  window_.setContentSize(layoutSize_);
  scroller_->setFrame({{0, 0}, layoutSize_});
  setVisibleRect(visible_);
  if (!hasRoom() && !isStarted_) return;
  view_->setFrame({{0, 0}, layoutSize_});
  noteChart();
  if (isStarted_) return;
  isStarted_ = true;
  view_->webPlugInStart();
}

void HostedChart::noteChart() { keepsFirstData_ |= hasRoom() && view_->keepsFirstData(); }

void HostedChart::dropView() {
  if (!view_) return;
  page_->close();
  view_->webPlugInStop();
  view_->webPlugInDestroy();
  view_->removeFromSuperview();
  scroller_->removeFromSuperview();
  view_.reset();
  scroller_.reset();
}

void HostedChart::setSize(CGSize box) {
  if (box.width == size_.width && box.height == size_.height) return;
  visible_ = {{0, 0}, box};
  size_ = box;
  needsFreshView_ = true;
}

void HostedChart::setFrame(CGSize box) {
  size_ = box;
  visible_ = {{0, 0}, box};
  layOut();
}

void HostedChart::setVisibleRect(CGRect rect) {
  visible_ = rect;
  const CGRect visible{{rect.origin.x / scale_, (size_.height - rect.origin.y - rect.size.height) / scale_},
                       {rect.size.width / scale_, rect.size.height / scale_}};
  // The clip view covers just the visible part and shows it in its own place, so that window, clip view and view share
  // one coordinate space.
  const auto& clip = scroller_->contentView();
  clip->setFrame(visible);
  clip->scrollToPoint(visible.origin);
}

void HostedChart::mouseMoved(CGPoint p) {
  pointer_ = p;
  step_.reset();
  window_.sendMouseMoved(windowPoint(p));
}

void HostedChart::mouseDown(CGPoint p) { window_.sendMouseDown(windowPoint(p)); }

void HostedChart::mouseExited() {
  step_.reset();
  if (!pointer_) return;
  pointer_.reset();
  window_.sendMouseExited();
}

std::optional<ReachableEntry> HostedChart::step(int steps) {
  const std::vector<ReachableEntry> entries = view_->reachableEntries();
  if (entries.empty()) return std::nullopt;
  const auto count = static_cast<int64_t>(entries.size());
  const int64_t from = step_ ? static_cast<int64_t>(*step_) : steps > 0 ? -1 : 0;
  return stepTo(entries, static_cast<size_t>(((from + steps) % count + count) % count));
}

std::optional<ReachableEntry> HostedChart::stepToEnd(bool last) {
  const std::vector<ReachableEntry> entries = view_->reachableEntries();
  if (entries.empty()) return std::nullopt;
  return stepTo(entries, last ? entries.size() - 1 : 0);
}

ReachableEntry HostedChart::stepTo(const std::vector<ReachableEntry>& entries, size_t index) {
  // The keyboard also reaches what has been scrolled away.
  setVisibleRect({{0, 0}, size_});
  if (entries[index].point)
    mouseMoved(boxPoint(*entries[index].point));
  else
    mouseExited();
  step_ = index;
  return entries[index];
}

void HostedChart::press() {
  if (pointer_) mouseDown(*pointer_);
}

HostedChart::CallOutcome HostedChart::call(const std::string& name, ValueArray arguments) {
  const std::shared_ptr<CALayerPlotView> view = view_;
  const auto options = view->plotOptions();
  const auto data = view->plotData();
  CallOutcome outcome;
  {
    // A view that keeps its chart places the chart's layers once more over the old ones; the screen shows one chart.
    const TakesOffAddedLayers oneChart(view->keepsFirstData() ? view->layer() : nullptr);
    outcome.result = WebScriptInvoke(*view, name, arguments);
  }
  if (keepsFirstData_) return outcome;
  noteChart();
  // Arguments that the view has refused leave a fresh view those of before.
  if (view->plotOptions() && view->plotOptions() != options) {
    options_ = arguments;
    outcome.keptOptions = true;
  }
  if (view->plotData() && view->plotData() != data) {
    data_ = std::move(arguments);
    outcome.keptData = true;
  }
  return outcome;
}

void HostedChart::stop() {
  isStopped_ = true;
  view_->webPlugInStop();
}

void HostedChart::refreshIfNeeded() {
  if (!needsFreshView_ || !hasRoom() || isStopped_) return;
  needsFreshView_ = false;
  const bool hadAnnounced = page_->hasAnnouncedDisplay();
  dropView();
  {
    // What the charts have logged once they need not log again.
    const SilentLog silence;
    makeView();
    page_->setSilent(wasShown_);
    page_->setHasAnnouncedDisplay(hadAnnounced);
    if (options_) WebScriptInvoke(*view_, "SetPlotOptions", *options_);
    if (data_) WebScriptInvoke(*view_, "SetPlotData", *data_);
  }
  noteChart();
  if (!wasShown_) return;
  settle();
  if (step_) {
    const std::vector<ReachableEntry> entries = view_->reachableEntries();
    if (*step_ < entries.size() && entries[*step_].point) pointer_ = boxPoint(*entries[*step_].point);
  }
  if (pointer_) {
    window_.sendMouseMoved(windowPoint(*pointer_));
    settle();
  }
  page_->setSilent(false);
}

void HostedChart::settle() {
  for (int round = 0; round < kMostRoundsOfAnimations; ++round) {
    // The media clock is a frame behind while a turn has just begun; what was scheduled in it is due all the same.
    NSRunLoop::mainRunLoop().runDue(NSRunLoop::mainRunLoop().now());
    CATransaction::flush();
    if (!removeRunningAnimations()) return;
    CATransaction::deliverEndedAnimations();
  }
}

void HostedChart::finishAnimations() { removeRunningAnimations(); }

bool HostedChart::removeRunningAnimations() { return removeTreeAnimations(view_->layer(), CACurrentMediaTime()); }

void HostedChart::turnEnded() { wasShown_ |= hasRoom() && view_->isDisplayed(); }

bool HostedChart::isAnimating(double time) const { return isTreeAnimating(view_->layer(), time); }

bool HostedChart::needsFrame(double time) {
  needsFrame_ |= window_.takeNeedsFrame();
  if (!hasRoom()) return false;
  return needsFrame_ || needsFreshView_ || wasAnimating_ || isAnimating(time);
}

void HostedChart::compose(CGContext& context, double scale, double time) {
  needsFrame_ = false;
  window_.takeNeedsFrame();
  wasAnimating_ = isAnimating(time);
  const CALayerRef layer = view_->layer();
  if (!layer || view_->isHidden()) return;
  context.saveGState();
  if (scale_ != 1) context.scaleCTM(scale_, scale_);
  compositor_.compose(layer, context, scale * scale_, time);
  context.restoreGState();
}

void HostedChart::print(CGContext& context) {
  if (!hasRoom() || isStopped_) return;
  refreshIfNeeded();
  CATransaction::flush();
  const HiddenLayer transient(view_->transientLayer());
  const TakesOffAddedLayers screenAlone(view_->layer());
  const CurrentContext current(context);
  context.saveGState();
  if (scale_ != 1) context.scaleCTM(scale_, scale_);
  view_->drawRect(view_->bounds());
  context.restoreGState();
}

}  // namespace zelkon
