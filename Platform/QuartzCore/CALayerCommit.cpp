#include "QuartzCore/CALayerCommit.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "QuartzCore/CAAnimationSet.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {

namespace {

std::vector<std::weak_ptr<CALayer>>& touchedLayers() {
  static auto* layers = new std::vector<std::weak_ptr<CALayer>>;
  return *layers;
}

std::vector<CALayer*>& liveRoots() {
  static auto* roots = new std::vector<CALayer*>;
  return *roots;
}

}  // namespace

void CALayerCommit::touch(CALayer& layer) {
  if (layer.touched_) return;
  std::weak_ptr<CALayer> handle = layer.weak_from_this();
  if (handle.expired()) return;
  CATransaction::noteChange();
  layer.touched_ = true;
  touchedLayers().push_back(std::move(handle));
}

void CALayerCommit::addRoot(CALayer& root) { liveRoots().push_back(&root); }

void CALayerCommit::removeRoot(CALayer& root) {
  std::vector<CALayer*>& roots = liveRoots();
  roots.erase(std::remove(roots.begin(), roots.end(), &root), roots.end());
}

void CALayerCommit::run() {
  std::vector<CALayerRef> layers;
  for (const std::weak_ptr<CALayer>& handle : std::exchange(touchedLayers(), {})) {
    if (CALayerRef layer = handle.lock()) {
      layer->touched_ = false;
      layers.push_back(std::move(layer));
    }
  }
  for (const CALayerRef& layer : layers)
    if (layer->live_) layer->layoutIfNeeded();
  std::exception_ptr failure;
  for (const CALayerRef& layer : layers) {
    if (!layer->live_ || !layer->needsDisplay_) continue;
    try {
      layer->displayIfNeeded();
    } catch (...) {
      if (!failure) failure = std::current_exception();
    }
  }
  const double now = CACurrentMediaTime();
  for (const CALayerRef& layer : layers) {
    layer->committed_ = layer->live_;
    if (!layer->animations_) continue;
    if (layer->live_)
      layer->animations_->start(now);
    else
      layer->animations_->removeStarted();
  }
  std::vector<CALayerRef> changed;
  for (CALayer* root : liveRoots()) {
    const unsigned long version = root->subtreeVersion();
    if (std::exchange(root->shownVersion_, version) == version) continue;
    if (CALayerRef layer = root->weak_from_this().lock()) changed.push_back(std::move(layer));
  }
  for (const CALayerRef& root : changed)
    if (root->observer_ != nullptr) root->observer_->layerTreeDidChange();
  if (failure) std::rethrow_exception(failure);
}

}  // namespace zelkon
