// Superlayers, sublayers and what it means to be in a tree that somebody shows.

#include <algorithm>
#include <iterator>
#include <utility>

#include "Foundation/NSException.h"
#include "QuartzCore/CAAnimationSet.h"
#include "QuartzCore/CALayer.h"
#include "QuartzCore/CALayerCommit.h"

namespace zelkon {

namespace {

// One axis of a layer inside its superlayer.
struct Span {
  double minMargin, size;
};

// `flexible`: whether minimum margin, size and maximum margin may change. They share the superlayer's growth in
// proportion to what they have; where they have nothing, in equal parts.
Span resize(Span span, double oldOuter, double newOuter, const bool (&flexible)[3]) {
  const double growth = newOuter - oldOuter;
  const double parts[3] = {span.minMargin, span.size, oldOuter - span.size - span.minMargin};
  double sum = 0;
  int count = 0;
  for (int i = 0; i < 3; ++i) {
    if (!flexible[i]) continue;
    sum += parts[i];
    ++count;
  }
  const auto share = [&](int i) {
    if (!flexible[i]) return 0.0;
    if (count == 1) return growth;
    return sum != 0 ? growth * parts[i] / sum : growth / count;
  };
  return {span.minMargin + share(0), span.size + share(1)};
}

}  // namespace

CALayer::~CALayer() {
  if (observer_ != nullptr) CALayerCommit::removeRoot(*this);
  if (animations_) {
    animations_->detach();
    animations_->removeAll();
  }
  // Deep trees come down one layer at a time instead of one inside the other.
  std::vector<CALayerRef> doomed = std::move(sublayers_);
  while (!doomed.empty()) {
    const CALayerRef layer = std::move(doomed.back());
    doomed.pop_back();
    if (layer.use_count() == 1) {
      std::move(layer->sublayers_.begin(), layer->sublayers_.end(), std::back_inserter(doomed));
      layer->sublayers_.clear();
    } else {
      layer->superlayer_.reset();
      if (layer->observer_ == nullptr) layer->setSubtreeLive(false);
    }
  }
}

CALayerRef CALayer::superlayer() const { return superlayer_.lock(); }

size_t CALayer::indexOf(const CALayer* sublayer) const {
  // From both ends: layers are mostly taken away in order or from the top.
  size_t low = 0, high = sublayers_.size();
  for (; low < high; ++low) {
    if (sublayers_[low].get() == sublayer) return low;
    if (sublayers_[--high].get() == sublayer) return high;
  }
  return sublayers_.size();
}

void CALayer::detach() {
  const CALayerRef outer = superlayer_.lock();
  superlayer_.reset();
  if (!outer) return;
  const size_t index = outer->indexOf(this);
  if (index < outer->sublayers_.size()) outer->sublayers_.erase(outer->sublayers_.begin() + static_cast<long>(index));
  outer->didChange();
}

void CALayer::insert(const CALayerRef& layer, size_t index) {
  layer->superlayer_ = weak_from_this();
  sublayers_.insert(sublayers_.begin() + static_cast<long>(index), layer);
  if (layer->observer_ == nullptr) layer->setSubtreeLive(live_);
  didChange();
}

namespace {

void refuseCycle(const CALayer& outer, const CALayer& layer) {
  bool above = &outer == &layer;
  // Only a layer with sublayers can be above another one.
  if (!above && !layer.sublayersInPlace().empty())
    for (CALayerRef next = outer.superlayer(); next && !above; next = next->superlayer()) above = next.get() == &layer;
  if (above) NSRaise(NSInvalidArgumentException, "a layer cannot be a sublayer of itself");
}

}  // namespace

void CALayer::addSublayer(const CALayerRef& layer) {
  if (!layer) return;
  refuseCycle(*this, *layer);
  const CALayerRef moving = layer;  // the caller's reference may lie in the list that changes
  moving->detach();
  insert(moving, sublayers_.size());
}

void CALayer::insertSublayerBelow(const CALayerRef& layer, const CALayerRef& sibling) {
  if (!layer || layer == sibling) return;
  refuseCycle(*this, *layer);
  if (indexOf(sibling.get()) == sublayers_.size())
    NSRaise(NSInvalidArgumentException, "the sibling is not a sublayer of this layer");
  const CALayerRef moving = layer, beside = sibling;
  moving->detach();
  insert(moving, indexOf(beside.get()));
}

void CALayer::insertSublayerAbove(const CALayerRef& layer, const CALayerRef& sibling) {
  if (!layer || layer == sibling) return;
  refuseCycle(*this, *layer);
  if (indexOf(sibling.get()) == sublayers_.size())
    NSRaise(NSInvalidArgumentException, "the sibling is not a sublayer of this layer");
  const CALayerRef moving = layer, beside = sibling;
  moving->detach();
  insert(moving, indexOf(beside.get()) + 1);
}

void CALayer::removeFromSuperlayer() {
  const CALayerRef self = weak_from_this().lock();  // the superlayer may hold the last reference
  detach();
  if (observer_ == nullptr) setSubtreeLive(false);
}

void CALayer::setTreeObserver(CALayerTreeObserver* observer) {
  if (observer_ == nullptr && observer != nullptr) CALayerCommit::addRoot(*this);
  if (observer_ != nullptr && observer == nullptr) CALayerCommit::removeRoot(*this);
  observer_ = observer;
  const CALayerRef outer = superlayer_.lock();
  setSubtreeLive(observer_ != nullptr || (outer && outer->live_));
  if (observer_ != nullptr) didChange();
}

void CALayer::setSubtreeLive(bool live) {
  if (live_ == live) return;
  std::vector<CALayer*> waiting{this};
  while (!waiting.empty()) {
    CALayer* layer = waiting.back();
    waiting.pop_back();
    layer->live_ = live;
    CALayerCommit::touch(*layer);
    for (const CALayerRef& sublayer : layer->sublayers_)
      if (sublayer->live_ != live && sublayer->observer_ == nullptr) waiting.push_back(sublayer.get());
  }
}

void CALayer::resizeWithin(CGSize oldSize, CGSize newSize) {
  const unsigned mask = autoresizingMask();
  if (mask == kCALayerNotSizable) return;
  const auto may = [&](unsigned bit) { return (mask & bit) != 0; };
  const CGRect bounds = model_.bounds;
  const CGPoint anchor = model_.anchorPoint;
  const Span oldX{model_.position.x - anchor.x * bounds.size.width, bounds.size.width};
  const Span oldY{model_.position.y - anchor.y * bounds.size.height, bounds.size.height};
  const Span x = resize(oldX, oldSize.width, newSize.width,
                        {may(kCALayerMinXMargin), may(kCALayerWidthSizable), may(kCALayerMaxXMargin)});
  const Span y = resize(oldY, oldSize.height, newSize.height,
                        {may(kCALayerMinYMargin), may(kCALayerHeightSizable), may(kCALayerMaxYMargin)});
  const CGSize size{std::max(x.size, 0.0), std::max(y.size, 0.0)};
  storeBounds({bounds.origin, size});
  // By differences, so that what does not move stays at exactly its place.
  setPosition({model_.position.x + (x.minMargin - oldX.minMargin) + anchor.x * (size.width - bounds.size.width),
               model_.position.y + (y.minMargin - oldY.minMargin) + anchor.y * (size.height - bounds.size.height)});
}

}  // namespace zelkon
