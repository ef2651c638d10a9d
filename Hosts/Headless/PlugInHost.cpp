#include "Hosts/Headless/PlugInHost.h"

#include <algorithm>
#include <cmath>

#include "AppKit/NSGraphicsContext.h"
#include "Classes/Views/PlotView.h"
#include "Foundation/NSRunLoop.h"
#include "QuartzCore/CATransaction.h"
#include "WebKit/MemoryScriptObject.h"

namespace zelkon {
namespace {

constexpr double kFramesPerSecond = 60;
constexpr const char* kPie = "pie";

// Everything stops where it ends: the delegates hear of it at the next delivery.
void endAnimations(const CALayerRef& layer) {
  if (!layer) return;
  layer->removeAllAnimations();
  for (const CALayerRef& sublayer : layer->sublayers()) endAnimations(sublayer);
}

}  // namespace

// The page's window object.
class PlugInHost::Page : public WebScriptObject {
 public:
  explicit Page(Transcript& transcript) : transcript_(transcript) {}
  Value webScriptValueAtIndex(size_t) override { return Value::undefined(); }
  Value valueForKey(std::string_view) override { return {}; }
  void setValue(const Value&, std::string_view) override {}
  Value callWebScriptMethod(std::string_view name, const ValueArray& arguments) override {
    if (!muted) transcript_.page(name, arguments);
    return {};
  }
  bool muted = false;

 private:
  Transcript& transcript_;
};

PlugInHost::PlugInHost(std::string plot, CGSize size, bool scrolls, Transcript& transcript)
    : plot_(std::move(plot)), size_(size), scrolls_(scrolls), page_(std::make_shared<Page>(transcript)) {
  makeView();
}

PlugInHost::~PlugInHost() {
  page_->muted = true;
  if (!destroyed_) takeViewDown();
}

void PlugInHost::makeView() {
  const ValueDictionary arguments{
      {WebPlugInAttributesKey, ValueDictionary{{"plot", plot_}}},
      {WebPlugInContainerKey, std::make_shared<WebPlugInContainer>(std::make_shared<WebFrame>(page_))}};
  view_ = PlotView::plugInViewWithArguments(arguments);
  window_ = std::make_unique<NSWindow>(size_);
  const CGRect frame{{0, 0}, size_};
  if (scrolls_) {
    scrollView_ = std::make_shared<NSScrollView>(frame);
    scrollView_->setContentView(std::make_shared<NSClipView>(frame));
    window_->contentView()->addSubview(scrollView_);
    scrollView_->contentView()->addSubview(view_);
  } else {
    window_->contentView()->addSubview(view_);
  }
  view_->setFrame(frame);
  view_->webPlugInStart();
}

void PlugInHost::takeViewDown() {
  view_->webPlugInStop();
  view_->webPlugInDestroy();
  view_->removeFromSuperview();
  CATransaction::flush();
}

Value PlugInHost::call(const std::string& name, const ValueArray& arguments) {
  if (destroyed_) return {};
  ValueArray passed;
  std::shared_ptr<MemoryScriptObject> written;
  for (const Value& argument : arguments) {
    const Value value = MemoryScriptObject::valueFromPage(argument);
    if (argument.isDictionary()) written = value.object<MemoryScriptObject>();
    passed.push_back(value);
  }
  const std::shared_ptr<CALayerPlotView> view = view_;
  const auto options = view->plotOptions();
  const auto data = view->plotData();
  // The over-time chart keeps what it was first shown with; the pie shows what it was given last.
  const bool keepsFirst = plot_ != kPie && data && view->layer();
  const std::optional<Value> result = WebScriptInvoke(*view->objectForWebScript(), name, passed);
  // A call that has raised leaves what was there before.
  if (!keepsFirst && view->plotOptions() != options) options_ = arguments;
  if (!keepsFirst && view->plotData() != data) data_ = arguments;
  if (written) return written->changedProperties();
  return result ? *result : Value();
}

CGPoint PlugInHost::windowPoint(CGPoint at) const {
  CGPoint point{at.x, size_.height - at.y};
  if (scrollView_) {
    const CGPoint origin = scrollView_->contentView()->bounds().origin;
    point = {point.x - origin.x, point.y - origin.y};
  }
  return point;
}

void PlugInHost::mouseMoved(CGPoint at) {
  if (destroyed_) return;
  pointer_ = at;
  window_->sendMouseMoved(windowPoint(at));
}

void PlugInHost::mouseDown(CGPoint at) {
  if (destroyed_) return;
  window_->sendMouseDown(windowPoint(at));
}

void PlugInHost::mouseExited() {
  if (destroyed_) return;
  pointer_.reset();
  window_->sendMouseExited();
}

void PlugInHost::setFrame(CGSize size) {
  if (destroyed_) return;
  size_ = size;
  window_->setContentSize(size);
  view_->setFrame({{0, 0}, size});
}

void PlugInHost::resize(CGSize size) {
  if (destroyed_) return;
  settle();
  const bool owesCall = view_->numberOfPendingAnimations() > 0;
  page_->muted = true;
  takeViewDown();
  size_ = size;
  compositor_.purge();
  makeView();
  const auto options = options_, data = data_;
  if (options) call("SetPlotOptions", *options);
  if (data) call("SetPlotData", *data);
  settle();
  if (pointer_) mouseMoved(*pointer_);
  endAnimations(view_->layer());
  CATransaction::flush();
  page_->muted = !owesCall;
  CATransaction::deliverEndedAnimations();
  page_->muted = false;
}

void PlugInHost::scroll(CGPoint offset) {
  if (destroyed_ || !scrollView_) return;
  scrollView_->contentView()->scrollToPoint({offset.x, -offset.y});
}

void PlugInHost::stop() {
  if (destroyed_) return;
  view_->webPlugInStop();
}

void PlugInHost::destroy() {
  if (destroyed_) return;
  destroyed_ = true;
  view_->webPlugInDestroy();
  view_->removeFromSuperview();
  CATransaction::flush();
}

void PlugInHost::settle() { frame(CACurrentMediaTime()); }

void PlugInHost::frame(double time) {
  NSRunLoop::mainRunLoop().runDue(CACurrentMediaTime());
  CATransaction::flush();
  CASetCurrentMediaTime(time);
  CATransaction::deliverEndedAnimations();
}

void PlugInHost::wait(double seconds) {
  const double start = CACurrentMediaTime();
  const auto frames = static_cast<long>(std::floor(seconds * kFramesPerSecond + 1e-6));
  for (long i = 1; i <= frames; ++i) frame(start + static_cast<double>(i) / kFramesPerSecond);
  if (start + seconds > CACurrentMediaTime() + 1e-9) frame(start + seconds);
}

void PlugInHost::waitForAnimations(double limit) {
  const double start = CACurrentMediaTime();
  long i = 0;
  do {
    frame(start + static_cast<double>(++i) / kFramesPerSecond);
  } while (CATransaction::hasRunningAnimations() && CACurrentMediaTime() < start + limit);
  settle();
}

void PlugInHost::compose(CGContext& context, double scale) {
  const CALayerRef layer = view_->layer();
  if (destroyed_ || !layer || view_->isHidden()) return;
  context.saveGState();
  if (scrollView_) {
    const CGPoint origin = scrollView_->contentView()->bounds().origin;
    context.clipToRect({{0, 0}, size_});
    context.translateCTM(-origin.x, -origin.y);
  }
  compositor_.compose(layer, context, scale, CACurrentMediaTime());
  context.restoreGState();
}

void PlugInHost::print(CGContext& context) {
  if (destroyed_) return;
  // A bubble left open would be drawn twice, once in the chart's coordinates and once in its own.
  if (plot_ != kPie) mouseExited();
  NSGraphicsContext::saveGraphicsState();
  NSGraphicsContext::setCurrentContext(NSGraphicsContext::graphicsContextWithGraphicsPort(&context, false));
  context.saveGState();
  view_->drawRect(view_->bounds());
  context.restoreGState();
  NSGraphicsContext::restoreGraphicsState();
  // Printing leaves the bars of the paper on the screen, over its own; a fresh view takes them off.
  if (plot_ != kPie)
    resize(size_);
  else
    CATransaction::flush();
}

}  // namespace zelkon
