#include "Hosts/Web/WebPlot.h"

#include <cmath>

#include "AppKit/NSGraphicsContext.h"
#include "Classes/Views/PlotView.h"
#include "Foundation/NSLog.h"
#include "Foundation/NSRunLoop.h"
#include "Hosts/Web/PageImports.h"
#include "Hosts/Web/PageJSON.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {
namespace {

// A chart's animations may start others when they end; no chart starts this many in a row.
constexpr int mostRoundsOfAnimations = 16;

bool isEmpty(CGSize size) { return !(size.width > 0 && size.height > 0); }

bool isAnimating(const CALayerRef& layer, double time) {
  if (!layer) return false;
  if (layer->hasRunningAnimations(time) || isAnimating(layer->mask(), time)) return true;
  for (const CALayerRef& sublayer : layer->sublayersInPlace()) {
    if (isAnimating(sublayer, time)) return true;
  }
  return false;
}

bool removeRunningAnimations(const CALayerRef& layer, double time) {
  if (!layer) return false;
  bool any = layer->hasRunningAnimations(time);
  if (any) layer->removeAllAnimations();
  any |= removeRunningAnimations(layer->mask(), time);
  for (const CALayerRef& sublayer : layer->sublayers()) any |= removeRunningAnimations(sublayer, time);
  return any;
}

int pixels(double points, double scale) { return static_cast<int>(std::lround(points * scale)); }

}  // namespace

WebPlot::WebPlot(int id, std::optional<std::string> plot, int canvas, CGSize size, CanvasDevice& device)
    : id_(id),
      canvas_(canvas),
      plot_(std::move(plot)),
      size_(size),
      visible_{{0, 0}, size},
      device_(device),
      window_(std::make_unique<NSWindow>(size)) {
  makeView();
}

WebPlot::~WebPlot() { dropView(); }

void WebPlot::makeView() {
  page_ = std::make_shared<PageWindow>(id_);
  ValueDictionary attributes;
  if (plot_) attributes["plot"] = Value(*plot_);
  auto container = std::make_shared<WebPlugInContainer>(std::make_shared<WebFrame>(page_));
  view_ = PlotView::plugInViewWithArguments(Value(ValueDictionary{
      {WebPlugInAttributesKey, Value(std::move(attributes))}, {WebPlugInContainerKey, Value(std::move(container))}}));

  window_->setContentSize(size_);
  scroller_ = std::make_shared<NSScrollView>(CGRect{{0, 0}, size_});
  auto clip = std::make_shared<NSClipView>(CGRect{{0, 0}, size_});
  scroller_->setContentView(clip);
  window_->contentView()->addSubview(scroller_);
  clip->addSubview(view_);
  setVisibleRect(visible_);
  started_ = !isEmpty(size_);
  if (started_) {
    view_->setFrame({{0, 0}, size_});
    view_->webPlugInStart();
  }
  needsFrame_ = true;
}

void WebPlot::dropView() {
  if (!view_) return;
  page_->setSilent(true);
  page_->setHasAnnouncedDisplay(true);
  view_->webPlugInStop();
  view_->webPlugInDestroy();
  view_->removeFromSuperview();
  scroller_->removeFromSuperview();
  view_.reset();
  periods_.reset();
  scroller_.reset();
}

void WebPlot::setSize(CGSize size) {
  if (size.width == size_.width && size.height == size_.height) return;
  visible_ = {{0, 0}, size};
  size_ = size;
  // A box that has collapsed shows nothing; what comes after it gets the fresh view.
  needsFreshView_ = true;
}

void WebPlot::setFrame(CGSize size) {
  size_ = size;
  screen_.reset();
  window_->setContentSize(size);
  view_->setFrame({{0, 0}, size});
  setVisibleRect({{0, 0}, size});
}

void WebPlot::setVisibleRect(CGRect rect) {
  visible_ = rect;
  rect.origin = {rect.origin.x, size_.height - rect.origin.y - rect.size.height};
  // The clip view covers just the visible part and shows it in its own place, so that window, clip view and view share
  // one coordinate space.
  const auto& clip = scroller_->contentView();
  clip->setFrame(rect);
  clip->scrollToPoint(rect.origin);
}

void WebPlot::mouseMoved(CGPoint p) {
  pointer_ = p;
  step_.reset();
  window_->sendMouseMoved(windowPoint(p));
}

void WebPlot::mouseDown(CGPoint p) { window_->sendMouseDown(windowPoint(p)); }

void WebPlot::mouseExited() {
  step_.reset();
  if (!pointer_) return;
  pointer_.reset();
  window_->sendMouseExited();
}

void WebPlot::step(int steps) {
  const std::vector<KeyStop> stops = KeyStopsOfView(*view_);
  if (stops.empty()) return;
  const int count = static_cast<int>(stops.size());
  const int from = step_ ? static_cast<int>(*step_) : steps > 0 ? -1 : 0;
  stepTo(stops, static_cast<size_t>(((from + steps) % count + count) % count));
}

void WebPlot::stepToEnd(bool last) {
  const std::vector<KeyStop> stops = KeyStopsOfView(*view_);
  if (!stops.empty()) stepTo(stops, last ? stops.size() - 1 : 0);
}

void WebPlot::stepTo(const std::vector<KeyStop>& stops, size_t index) {
  const KeyStop& stop = stops[index];
  // The keyboard also reaches what has been scrolled away.
  setVisibleRect({{0, 0}, size_});
  if (stop.point)
    mouseMoved({stop.point->x, size_.height - stop.point->y});
  else
    mouseExited();
  step_ = index;
  const std::string text = PageJSON(Value(ValueArray{stop.label, stop.amount, stop.share}));
  zelkon_page_announce(id_, text.data(), text.size());
}

void WebPlot::press() {
  if (pointer_) mouseDown(*pointer_);
}

void WebPlot::call(const std::string& name, ValueArray arguments) {
  const std::shared_ptr<CALayerPlotView> view = view_;
  const auto options = view->plotOptions();
  const auto data = view->plotData();
  WebScriptInvoke(*view, name, arguments);
  // The over-time chart keeps what it was first shown with, and so does the fresh view of it.
  if (hasPeriods_) return;
  // A call that has raised leaves what was there before.
  if (view->plotOptions() != options) options_ = arguments;
  if (view->plotData() == data) return;
  data_ = std::move(arguments);
  keepPeriods();
}

void WebPlot::keepPeriods() {
  periods_ = std::dynamic_pointer_cast<const PlotEntryList>(view_->plotData());
  hasPeriods_ = periods_ && !isEmpty(size_);
}

size_t WebPlot::readPeriods(size_t first, size_t count) const {
  if (!periods_) return 0;
  const size_t all = periods_->count();
  for (size_t i = first; i < all && i - first < count; ++i) {
    const PlotEntryRef entry = periods_->entry(i);
    const std::string &name = *entry->humanX, &amount = *entry->humanY;
    zelkon_page_period(name.data(), name.size(), amount.data(), amount.size());
  }
  return all;
}

bool WebPlot::refreshIfNeeded() {
  if (!needsFreshView_ || isEmpty(size_)) return false;
  needsFreshView_ = false;
  const bool wasShown = shown_, hadAnnounced = page_->hasAnnouncedDisplay();
  dropView();
  screen_.reset();

  // What the charts have logged once they need not log again.
  const LogSink log = NSSetLogSink([](std::string_view) {});
  makeView();
  page_->setSilent(wasShown);
  page_->setHasAnnouncedDisplay(hadAnnounced);
  if (options_) WebScriptInvoke(*view_, "SetPlotOptions", *options_);
  if (data_) WebScriptInvoke(*view_, "SetPlotData", *data_);
  keepPeriods();
  NSSetLogSink(log);
  if (!wasShown) return true;
  settle();
  if (step_) {
    const std::vector<KeyStop> stops = KeyStopsOfView(*view_);
    if (*step_ < stops.size() && stops[*step_].point) pointer_ = windowPoint(*stops[*step_].point);
  }
  if (pointer_) {
    window_->sendMouseMoved(windowPoint(*pointer_));
    settle();
  }
  page_->setSilent(false);
  return true;
}

void WebPlot::settle() {
  for (int round = 0; round < mostRoundsOfAnimations; ++round) {
    // The media clock is a frame behind while a turn has just begun; what was scheduled in it is due all the same.
    NSRunLoop::mainRunLoop().runDue(NSRunLoop::mainRunLoop().now());
    CATransaction::flush();
    if (!finishAnimations()) return;
    CATransaction::deliverEndedAnimations();
  }
}

bool WebPlot::finishAnimations() { return removeRunningAnimations(view_->layer(), CACurrentMediaTime()); }

bool WebPlot::compose(double time) {
  const bool animating = isAnimating(view_->layer(), time);
  needsFrame_ |= window_->takeNeedsFrame();
  if (isEmpty(size_) || !(needsFrame_ || animating || wasAnimating_)) return false;
  needsFrame_ = false;
  wasAnimating_ = animating;
  const double scale = device_.screenScale();
  if (!screen_) {
    screen_ = device_.screenSurface(canvas_, pixels(size_.width, scale), pixels(size_.height, scale));
  }
  auto context = animating ? device_.contextForMovingFrame(screen_, scale) : device_.contextForSurface(screen_, scale);
  context->clearRect({{0, 0}, size_});
  if (view_->layer()) {
    compositor_.compose(view_->layer(), *context, scale, time);
    shown_ |= plot_ == "pie" || hasPeriods_;
  }
  context->flush();
  return true;
}

bool WebPlot::needsFrame(double time) {
  needsFrame_ |= window_->takeNeedsFrame();
  if (isEmpty(size_)) return false;
  return needsFrame_ || needsFreshView_ || wasAnimating_ || isAnimating(view_->layer(), time);
}

void WebPlot::print(int canvas, double scale) {
  if (isEmpty(size_)) return;
  refreshIfNeeded();
  // A bubble left open would be drawn twice, once in the chart's coordinates and once in its own.
  if (plot_ != "pie") mouseExited();
  CATransaction::flush();
  const double screenScale = device_.screenScale();
  auto surface = device_.screenSurface(canvas, pixels(size_.width, scale), pixels(size_.height, scale));
  device_.setScreenScale(scale);
  {
    auto context = device_.contextForSurface(surface, scale);
    NSGraphicsContext::setCurrentContext(std::make_shared<NSGraphicsContext>(context.get(), false, false));
    view_->drawRect({{0, 0}, size_});
    NSGraphicsContext::setCurrentContext(nullptr);
    context->flush();
  }
  device_.setScreenScale(screenScale);
  // Printing leaves the bars of the paper on the screen, over its own; a fresh view takes them off.
  if (plot_ != "pie") setNeedsFreshView();
}

}  // namespace zelkon
