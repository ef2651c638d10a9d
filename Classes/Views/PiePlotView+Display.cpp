#include "AppKit/NSScrollView.h"
#include "Classes/Views/NonretainedLayer.h"
#include "Classes/Views/PiePlotView.h"
#include "Foundation/NSNotificationCenter.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {

namespace {

// The layer's default action. A layer that is not on screen has none; it gets the same animation, which starts when the
// layer comes on screen.
CABasicAnimation startupAction(const CALayer& layer, const std::string& keyPath, CAAnimatableValue from) {
  if (std::optional<CABasicAnimation> action = layer.actionForKey(keyPath)) return *action;
  CABasicAnimation action = CABasicAnimation::animationWithKeyPath(keyPath);
  action.fromValue = std::move(from);
  action.timingFunction = kCAMediaTimingFunctionDefault;
  action.fillMode = CAFillMode::backwards;
  return action;
}

}  // namespace

void PiePlotView::webPlugInStart() {
  CALayerPlotView::webPlugInStart();
  performOnNextTurn(&CALayerPlotView::doDisplay);
}

void PiePlotView::doDisplay() {
  CALayerPlotView::doDisplay();
  const CALayerRef slices = slicesLayer(), highlight = plotHighlightLayer(), shadow = dropShadowLayer();
  {
    const CATransactionWithoutActions transaction;
    shadow->setOpacity(1);
  }
  CATransaction::begin();
  startAnimation(slices, "opacity", 1.0, "com.zelkon.slicesLayerStartingOpacity");
  startAnimation(slices, "transform", CATransform3DIdentity, "com.zelkon.slicesLayerStartingTransform");
  startAnimation(highlight, "opacity", 1.0, "com.zelkon.plotHighlightLayerStartingOpacity");
  startAnimation(highlight, "transform", CATransform3DIdentity, "com.zelkon.plotHighlightLayerStartingTransform");
  startAnimation(shadow, "transform", CATransform3DIdentity, "com.zelkon.dropShadowLayerStartingTransform");
  CATransaction::commit();
  initialDisplay_ = false;
}

void PiePlotView::startAnimation(const CALayerRef& layer, const char* keyPath, CAAnimatableValue target,
                                 const char* key) {
  const double* opacity = std::get_if<double>(&target);
  CABasicAnimation animation =
      startupAction(*layer, keyPath,
                    opacity != nullptr ? CAAnimatableValue(layer->opacity()) : CAAnimatableValue(layer->transform()));
  animation.toValue = target;
  animation.removedOnCompletion = false;
  animation.setValue(std::make_shared<NonretainedLayer>(layer), "layer");
  tagStartupAnimation(animation, key);
  layer->addAnimation(std::move(animation), key);
  registerStartupAnimationKey(key);
  if (opacity != nullptr)
    layer->setOpacity(*opacity);
  else
    layer->setTransform(std::get<CATransform3D>(target));
}

void PiePlotView::doHide() {
  if (trackingArea_) {
    removeTrackingArea(trackingArea_);
    trackingArea_ = nullptr;
  }
  CALayerPlotView::doHide();
}

void PiePlotView::viewDidMoveToSuperview() {
  const std::shared_ptr<NSScrollView> scrollView = enclosingScrollView();
  const std::shared_ptr<NSClipView> contentView = scrollView ? scrollView->contentView() : nullptr;
  if (!contentView) return;
  contentView->setPostsBoundsChangedNotifications(true);
  contentView->setPostsFrameChangedNotifications(true);
  const std::weak_ptr<NSView> view = weak_from_this();
  const auto handler = [view](const NSNotification&) {
    if (const std::shared_ptr<NSView> alive = view.lock())
      static_cast<PiePlotView&>(*alive).enclosingContentViewBoundsOrFrameDidChange();
  };
  NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
  center.addObserver(this, handler, NSViewBoundsDidChangeNotification, contentView.get());
  center.addObserver(this, handler, NSViewFrameDidChangeNotification, contentView.get());
}

void PiePlotView::enclosingContentViewBoundsOrFrameDidChange() {
  const std::shared_ptr<NSView> parent = superview();
  if (parent && visibleRect() != NSZeroRect) parent->setNeedsDisplay(true);
}

void PiePlotView::webPlugInDestroy() {
  NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
  center.removeObserver(this, NSViewBoundsDidChangeNotification, nullptr);
  center.removeObserver(this, NSViewFrameDidChangeNotification, nullptr);
}

void PiePlotView::renderForPrintingInContext(CGContext& context) {
  const CALayerRef root = layer();
  if (!root) return;
  const CALayerRef highlight = plotHighlightLayer();
  const bool wasHidden = highlight->isHidden();
  {
    const CATransactionWithoutActions transaction;
    highlight->setHidden(true);
  }
  root->renderInContext(context);
  {
    const CATransactionWithoutActions transaction;
    highlight->setHidden(wasHidden);
  }
}

}  // namespace zelkon
