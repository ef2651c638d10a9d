// Properties of a layer and what setting them does.

#include "QuartzCore/CALayer.h"

#include <cmath>
#include <utility>

#include "Foundation/PlatformSession.h"
#include "QuartzCore/CAAnimationSet.h"
#include "QuartzCore/CALayerCommit.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {

namespace {

// Versions come from one counter, so that a whole chain of superlayers carries the number of the latest change. It only
// counts up once somebody has looked: until then a layer that carries the newest number has superlayers that do too,
// and the walk up the tree can stop there.
struct Versions {
  unsigned long newest = 1;
  bool wasRead = false;
};

Versions& versions() { return PlatformSession::part<Versions>(PlatformSession::Key::layerVersions); }

template <typename T>
bool isSame(const T& a, const T& b) {
  return a == b;
}
bool isSame(const CGColorRef& a, const CGColorRef& b) { return a == b || (a && b && *a == *b); }

CGAffineTransform linearPart(const CATransform3D& t) { return {t.m11, t.m12, t.m21, t.m22, 0, 0}; }

}  // namespace

CALayerRef CALayer::layer() { return std::make_shared<CALayer>(); }

CALayer::CALayer() { model_.borderColor = kCGColorBlack(); }

// ---- changing ----

void CALayer::didChange() {
  ++appearanceVersion_;
  auto& [newest, wasRead] = versions();
  if (std::exchange(wasRead, false)) ++newest;
  if (subtreeVersion_ != newest) {
    subtreeVersion_ = newest;
    const auto above = [](const CALayer& layer) {
      CALayerRef next = layer.superlayer_.lock();
      return next ? next : layer.masked_.lock();
    };
    for (CALayerRef layer = above(*this); layer && layer->subtreeVersion_ != newest; layer = above(*layer))
      layer->subtreeVersion_ = newest;
  }
  if (live_) CATransaction::noteChange();
}

unsigned long CALayer::subtreeVersion() const {
  versions().wasRead = true;
  return subtreeVersion_;
}

std::optional<CABasicAnimation> CALayer::implicitAction(const char* key) const {
  if (key == nullptr || !committed_ || !live_ || CATransaction::disableActions()) return std::nullopt;
  if (!(CATransaction::animationDuration() > 0)) return std::nullopt;
  return actionForKey(key);
}

template <typename T>
void CALayer::change(const char* key, T CALayerProperties::*member, T value) {
  if (isSame(model_.*member, value)) return;
  std::optional<CABasicAnimation> action = implicitAction(key);
  model_.*member = std::move(value);
  didChange();
  if (action) addAnimation(*std::move(action), key);
}

std::optional<CABasicAnimation> CALayer::actionForKey(const std::string& key) const {
  if (!live_) return std::nullopt;
  std::optional<CAAnimatableValue> shown = CALayerValue(presentation(CACurrentMediaTime()), key);
  if (!shown) return std::nullopt;
  CABasicAnimation action = CABasicAnimation::animationWithKeyPath(key);
  action.fromValue = std::move(shown);
  action.timingFunction = CATransaction::animationTimingFunction().value_or(kCAMediaTimingFunctionDefault);
  action.fillMode = CAFillMode::backwards;
  return action;
}

// ---- geometry ----

CGRect CALayer::frame() const { return CALayerFrame(model_); }

bool CALayer::storeBounds(CGRect bounds) {
  bounds = CGRectStandardize(bounds);
  if (bounds == model_.bounds) return false;
  const CGSize oldSize = model_.bounds.size;
  change("bounds", &CALayerProperties::bounds, bounds);
  if (needsDisplayOnBoundsChange())
    setNeedsDisplay();
  else if (needsDisplay_)
    CALayerCommit::touch(*this);  // it may have been too small to be drawn until now
  return oldSize != bounds.size;
}

void CALayer::setBounds(CGRect bounds) {
  struct Resized {
    CALayerRef keptAlive;
    CALayer* layer;
    CGSize oldSize;
  };
  const CGSize ownOldSize = model_.bounds.size;
  if (!storeBounds(bounds) || sublayers_.empty()) return;
  // A list instead of recursion: trees may be deep.
  std::vector<Resized> resized{{weak_from_this().lock(), this, ownOldSize}};
  while (!resized.empty()) {
    const Resized outer = resized.back();
    resized.pop_back();
    for (const CALayerRef& sublayer : outer.layer->sublayers()) {
      const CGSize oldSize = sublayer->model_.bounds.size;
      sublayer->resizeWithin(outer.oldSize, outer.layer->model_.bounds.size);
      if (sublayer->model_.bounds.size != oldSize && !sublayer->sublayers_.empty())
        resized.push_back({sublayer, sublayer.get(), oldSize});
    }
  }
}

void CALayer::setPosition(CGPoint position) { change("position", &CALayerProperties::position, position); }
void CALayer::setAnchorPoint(CGPoint anchor) { change("anchorPoint", &CALayerProperties::anchorPoint, anchor); }

void CALayer::setFrame(CGRect frame) {
  frame = CGRectStandardize(frame);
  const CGAffineTransform linear = linearPart(model_.transform);
  CGSize size = model_.bounds.size;
  const double determinant = linear.a * linear.d - linear.b * linear.c;
  if (determinant != 0 && std::isfinite(determinant)) {
    const CGAffineTransform inverse = CGAffineTransformInvert(linear);
    size.width = std::abs(inverse.a * frame.size.width + inverse.c * frame.size.height);
    size.height = std::abs(inverse.b * frame.size.width + inverse.d * frame.size.height);
  }
  setBounds({model_.bounds.origin, size});
  // Measured from the anchor point and not from where the layer was, whose rounding errors would come along.
  const CGRect box = CALayerBoxAroundAnchor(model_);
  setPosition({frame.origin.x - box.origin.x, frame.origin.y - box.origin.y});
}

void CALayer::setTransform(const CATransform3D& t) { change("transform", &CALayerProperties::transform, t); }
void CALayer::setZPosition(double z) {
  // Layers are sorted by it: it has to compare with every other.
  change("zPosition", &CALayerProperties::zPosition, std::isnan(z) ? 0 : z);
}

// ---- appearance ----

void CALayer::setOpacity(double opacity) { change("opacity", &CALayerProperties::opacity, opacity); }

void CALayer::setHidden(bool hidden) {
  if (model_.hidden == hidden) return;
  model_.hidden = hidden;
  change("hidden", &CALayerProperties::hiddenFade, hidden ? 0.0 : 1.0);
}

void CALayer::setMasksToBounds(bool masks) { change(nullptr, &CALayerProperties::masksToBounds, masks); }
void CALayer::setCornerRadius(double radius) { change("cornerRadius", &CALayerProperties::cornerRadius, radius); }
void CALayer::setBackgroundColor(CGColorRef color) {
  change("backgroundColor", &CALayerProperties::backgroundColor, std::move(color));
}
void CALayer::setBorderColor(CGColorRef color) {
  change("borderColor", &CALayerProperties::borderColor, std::move(color));
}
void CALayer::setBorderWidth(double width) { change("borderWidth", &CALayerProperties::borderWidth, width); }

void CALayer::setContents(CGImageRef contents) {
  change(nullptr, &CALayerProperties::drawnSize, CGSize{});
  change("contents", &CALayerProperties::contents, std::move(contents));
}

void CALayer::setContentsGravity(CAContentsGravity gravity) {
  change(nullptr, &CALayerProperties::contentsGravity, gravity);
}
void CALayer::setEdgeAntialiasingMask(unsigned mask) {
  change(nullptr, &CALayerProperties::edgeAntialiasingMask, mask);
}
void CALayer::setShadowOpacity(double opacity) { change("shadowOpacity", &CALayerProperties::shadowOpacity, opacity); }
void CALayer::setShadowOffset(CGSize offset) { change("shadowOffset", &CALayerProperties::shadowOffset, offset); }
void CALayer::setShadowRadius(double radius) { change("shadowRadius", &CALayerProperties::shadowRadius, radius); }
void CALayer::setShadowColor(CGColorRef color) {
  change("shadowColor", &CALayerProperties::shadowColor, std::move(color));
}
void CALayer::setFilters(std::vector<CIFilterRef> filters) {
  change(nullptr, &CALayerProperties::filters, std::move(filters));
}
void CALayer::setCompositingFilter(CIFilterRef filter) {
  change(nullptr, &CALayerProperties::compositingFilter, std::move(filter));
}

void CALayer::setMask(CALayerRef mask) {
  if (model_.mask == mask) return;
  if (model_.mask) model_.mask->masked_.reset();
  if (mask) mask->masked_ = weak_from_this();
  change(nullptr, &CALayerProperties::mask, std::move(mask));
}

// ---- key-value storage ----

void CALayer::setValue(Value value, const std::string& key) {
  if (value.isNull())
    values_.erase(key);
  else
    values_[key] = std::move(value);
}

Value CALayer::valueForKey(std::string_view key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? Value() : found->second;
}

// ---- animations ----

CAAnimationSet& CALayer::animationSet() {
  if (!animations_) animations_ = std::make_shared<CAAnimationSet>([this] { didChange(); });
  return *animations_;
}

void CALayer::addAnimation(CABasicAnimation animation, const std::string& key) {
  if (!(animation.duration > 0)) animation.duration = CATransaction::animationDuration();
  if (!(animation.duration > 0)) animation.duration = 0;
  if (!std::isfinite(animation.beginTime)) animation.beginTime = 0;
  std::optional<CAAnimatableValue> shown;
  if (!animation.fromValue && !animation.toValue)
    shown = CALayerValue(presentation(CACurrentMediaTime()), animation.keyPath);
  animationSet().add(std::move(animation), key, std::move(shown));
  CALayerCommit::touch(*this);
  didChange();
}

const CABasicAnimation* CALayer::animationForKey(const std::string& key) const {
  return animations_ ? animations_->find(key) : nullptr;
}

std::vector<std::string> CALayer::animationKeys() const {
  return animations_ ? animations_->keys() : std::vector<std::string>();
}

void CALayer::removeAnimationForKey(const std::string& key) {
  if (!animationForKey(key)) return;
  animations_->remove(key);
  didChange();
}

void CALayer::removeAllAnimations() {
  if (!hasAnimations()) return;
  animations_->removeAll();
  didChange();
}

bool CALayer::hasAnimations() const { return animations_ && !animations_->isEmpty(); }

bool CALayer::hasRunningAnimations(double time) const { return animations_ && animations_->isRunning(time); }

std::vector<std::string> CALayer::runningKeyPaths(double time) const {
  std::vector<std::string> keyPaths;
  if (animations_) animations_->forEachRunning(time, [&](const std::string& keyPath) { keyPaths.push_back(keyPath); });
  return keyPaths;
}

CALayerProperties CALayer::presentation(double time) const {
  CALayerProperties shown = model_;
  if (animations_) animations_->apply(shown, time);
  return shown;
}

}  // namespace zelkon
