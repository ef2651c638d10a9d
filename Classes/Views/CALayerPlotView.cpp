#include "Classes/Views/CALayerPlotView.h"

#include "AppKit/NSGraphicsContext.h"
#include "Classes/Views/ScriptElement.h"
#include "Foundation/NSLog.h"
#include "Foundation/NSRunLoop.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {

namespace {

constexpr const char* displayKey = "com.zelkon.display";

}  // namespace

CALayerPlotView::CALayerPlotView(Value arguments) : NSView(NSZeroRect), arguments_(std::move(arguments)) {}

void CALayerPlotView::setFrame(CGRect frame) {
  NSView::setFrame(frame);
  createLayerHierarchy();
}

void CALayerPlotView::drawRect(CGRect dirty) {
  const std::shared_ptr<NSGraphicsContext> context = NSGraphicsContext::currentContext();
  if (context && !context->isDrawingToScreen() && context->graphicsPort() != nullptr)
    renderForPrintingInContext(*context->graphicsPort());
  else
    NSView::drawRect(dirty);
}

void CALayerPlotView::destroyLayerHierarchy(const CALayerRef& layer) {
  if (!layer) return;
  for (const CALayerRef& sublayer : layer->sublayers()) sublayer->removeFromSuperlayer();
}

CGPoint CALayerPlotView::layerPointForWindowPoint(CGPoint windowPoint) const {
  const CGPoint p = convertPointFromWindow(windowPoint);
  if (!layer()) return {};
  const CATransform3D& t = layer()->transform();
  return {t.m11 * p.x + t.m12 * p.y, t.m21 * p.x + t.m22 * p.y};
}

void CALayerPlotView::doDisplay() {
  pendingStartupAnimationKeys_.emplace();
  ++displays_;
}

void CALayerPlotView::doHide() {
  NSRunLoop::mainRunLoop().cancelPreviousPerformRequests(this);
  const CALayerRef detached = layer();
  if (!detached) return;
  {
    const CATransactionWithoutActions transaction;
    NSRunLoop::mainRunLoop().cancelPreviousPerformRequests(detached.get());
    detached->setHidden(true);
    setLayer(nullptr);
  }
  setHidden(true);
}

void CALayerPlotView::renderForPrintingInContext(CGContext& context) {
  if (const CALayerRef root = layer()) root->renderInContext(context);
}

void CALayerPlotView::registerStartupAnimationKey(const std::string& key) {
  if (pendingStartupAnimationKeys_) pendingStartupAnimationKeys_->insert(key);
}

size_t CALayerPlotView::numberOfPendingAnimations() const {
  return pendingStartupAnimationKeys_ ? pendingStartupAnimationKeys_->size() : 0;
}

void CALayerPlotView::animationDidStop(const CABasicAnimation& animation, bool) {
  const Value key = animation.valueForKey("key");
  if (!key.isString() || !pendingStartupAnimationKeys_) return;
  const Value display = animation.valueForKey(displayKey);
  if (!display.isNull() && display.integerValue() != displays_) return;
  if (pendingStartupAnimationKeys_->erase(key.string()) == 0 || !pendingStartupAnimationKeys_->empty()) return;
  pendingStartupAnimationKeys_.reset();
  const std::string function = startupAnimationsDidCompleteJSFunction();
  if (!function.empty()) callPage(function, {});
}

ReachableEntry CALayerPlotView::periodAtIndex(size_t) const { return {}; }

void CALayerPlotView::callPage(std::string_view function, const ValueArray& values) {
  const std::shared_ptr<NSView> self = shared_from_this();
  if (const WebScriptObjectRef window = WebWindowObject(arguments_)) window->callWebScriptMethod(function, values);
}

void CALayerPlotView::performOnNextTurn(void (CALayerPlotView::*action)()) {
  const std::weak_ptr<NSView> view = weak_from_this();
  NSRunLoop::mainRunLoop().performAfterDelay(this, 0, [view, action] {
    if (const std::shared_ptr<NSView> alive = view.lock()) (static_cast<CALayerPlotView&>(*alive).*action)();
  });
}

void CALayerPlotView::tagStartupAnimation(CABasicAnimation& animation, const std::string& key) {
  animation.setValue(key, "key");
  animation.setValue(displays_, displayKey);
  animation.delegate = std::static_pointer_cast<CALayerPlotView>(shared_from_this());
}

}  // namespace zelkon
