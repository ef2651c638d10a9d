#include "Hosts/Headless/PlugInHost.h"

#include <algorithm>
#include <cmath>

#include "Hosts/Common/Turn.h"
#include "QuartzCore/CATransaction.h"
#include "WebKit/MemoryScriptObject.h"

namespace zelkon {
namespace {

constexpr double kFramesPerSecond = 60;

}  // namespace

PlugInHost::PlugInHost(std::string plot, CGSize size, ChartLayout layout, Transcript& transcript) : size_(size) {
  chart_.emplace(std::move(plot), size, layout, [&transcript](std::string_view name, const ValueArray& arguments) {
    transcript.page(name, arguments);
  });
}

Value PlugInHost::call(const std::string& name, const ValueArray& arguments) {
  if (!chart_) return {};
  ValueArray passed;
  std::shared_ptr<MemoryScriptObject> written;
  for (const Value& argument : arguments) {
    passed.push_back(MemoryScriptObject::valueFromPage(argument));
    if (argument.isDictionary()) written = passed.back().object<MemoryScriptObject>();
  }
  const std::optional<Value> result = chart_->call(name, std::move(passed)).result;
  if (written) return written->changedProperties();
  return result.value_or(Value());
}

void PlugInHost::mouseMoved(CGPoint at) {
  if (chart_) chart_->mouseMoved(at);
}

void PlugInHost::mouseDown(CGPoint at) {
  if (chart_) chart_->mouseDown(at);
}

void PlugInHost::mouseExited() {
  if (chart_) chart_->mouseExited();
}

void PlugInHost::setFrame(CGSize size) {
  if (!chart_) return;
  size_ = size;
  chart_->setFrame(size);
  showScrolledPart();
}

void PlugInHost::resize(CGSize size) {
  if (!chart_) return;
  settle();
  size_ = size;
  chart_->setSize(size);
  showScrolledPart();
  settle();
}

void PlugInHost::scroll(CGPoint offset) {
  offset_ = offset;
  if (chart_) showScrolledPart();
}

void PlugInHost::showScrolledPart() {
  const CGRect visible = CGRectIntersection({{0, 0}, size_}, {offset_, size_});
  chart_->setVisibleRect(CGRectIsNull(visible) ? CGRect{} : visible);
}

void PlugInHost::stop() {
  if (chart_) chart_->stop();
}

void PlugInHost::destroy() { chart_.reset(); }

void PlugInHost::settle() { frame(CACurrentMediaTime()); }

void PlugInHost::frame(double time) {
  std::vector<HostedChart*> charts;
  if (chart_) charts.push_back(&*chart_);
  beginTurn(charts, time, false);
  endTurn(charts);
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
  if (!chart_) return;
  context.saveGState();
  if (offset_ != CGPoint{}) {
    context.clipToRect({{0, 0}, size_});
    context.translateCTM(-offset_.x, offset_.y);
  }
  chart_->compose(context, scale, CACurrentMediaTime());
  context.restoreGState();
}

void PlugInHost::print(CGContext& context) {
  if (chart_) chart_->print(context);
}

}  // namespace zelkon
