// The bars' layers: made at display time from the rectangles of the last generation.
#include "Classes/Plotting/BarPlot.h"
#include "Foundation/NSLog.h"
#include "Foundation/NSRunLoop.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {
namespace {

constexpr double kSecondsPerPoint = 0.001;

}  // namespace

void BarPlot::doDisplay() {
  doDisplayWithAnimation(true);
  initialDisplay_ = true;
}

void BarPlot::redisplay() {
  if (initialDisplay_) doDisplayWithAnimation(false);
}

void BarPlot::doHide() {
  NSRunLoop::mainRunLoop().cancelPreviousPerformRequests(this);
  const CALayerRef root = rootLayer();
  if (!root) return;
  const CATransactionWithoutActions noActions;
  NSRunLoop::mainRunLoop().cancelPreviousPerformRequests(root.get());
  root->setHidden(true);
  setRootLayer(nullptr);
}

void BarPlot::doDisplayWithAnimation(bool animated) {
  for (const CGRect& rect : animationUpwardRectsQueue_) _renderUpwardFacingBarInRect(rect, animated);
  for (const CGRect& rect : animationDownwardRectsQueue_) _renderDownwardFacingBarInRect(rect, animated);
}

void BarPlot::_renderUpwardFacingBarInRect(CGRect rect, bool animated) { addBarLayer(Facing::upward, rect, animated); }

void BarPlot::_renderDownwardFacingBarInRect(CGRect rect, bool animated) {
  addBarLayer(Facing::downward, rect, animated);
}

void BarPlot::addBarLayer(Facing facing, CGRect rect, bool animated) {
  const CALayerRef root = rootLayer();
  if (!root) return;
  const bool isUpward = facing == Facing::upward;
  const double base = isUpward ? rect.origin.y : rect.origin.y + rect.size.height;
  const CGRect start = CGRectMake(rect.origin.x, base, rect.size.width, 0);
  const CALayerRef bar = CALayer::layer();
  bar->setName(isUpward ? "upwardFacing" : "downwardFacing");
  bar->setAnchorPoint({0.5, isUpward ? 0.0 : 1.0});
  bar->setCornerRadius(5);
  bar->setFrame(start);
  bar->setDelegate(std::static_pointer_cast<BarPlot>(shared_from_this()));
  bar->setNeedsDisplay();
  bar->setNeedsDisplayOnBoundsChange(true);
  root->addSublayer(bar);
  if (animated) {
    CABasicAnimation animation = _barBoundsAnimationWithStartRect(start, rect);
    tellOfAnimation(animation, "bounds" + NSFormatDouble(rect.origin.x));
    bar->addAnimation(std::move(animation), "bounds");
  }
  bar->setBounds(rect);
}

CABasicAnimation BarPlot::_barBoundsAnimationWithStartRect(CGRect start, CGRect end) const {
  CABasicAnimation animation = CABasicAnimation::animationWithKeyPath("bounds");
  animation.fromValue = start;
  animation.toValue = end;
  animation.duration = end.size.height * kSecondsPerPoint;
  animation.timingFunction = kCAMediaTimingFunctionLinear;
  animation.removedOnCompletion = false;
  animation.fillMode = CAFillMode::forwards;
  return animation;
}

void BarPlot::tellOfAnimation(CABasicAnimation& animation, const std::string& key) const {
  if (const auto delegate = animationsCreatedDelegate_.lock()) delegate->animationCreated(animation, key);
}

}  // namespace zelkon
