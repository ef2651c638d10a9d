#include "QuartzCore/CALayerCommit.h"

#include <algorithm>
#include <cassert>
#include <exception>
#include <utility>

#include "Foundation/PlatformSession.h"
#include "QuartzCore/CAAnimationSet.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {

namespace {

struct Queue {
  std::vector<std::weak_ptr<CALayer>> touched;
  std::vector<CALayer*> roots;
};

Queue& queue() { return PlatformSession::part<Queue>(PlatformSession::Key::commits); }

}  // namespace

void CALayerCommit::touch(CALayer& layer) {
  if (layer.touched_) return;
  std::weak_ptr<CALayer> handle = layer.weak_from_this();
  if (handle.expired()) return;
  CATransaction::noteChange();
  layer.touched_ = true;
  queue().touched.push_back(std::move(handle));
}

void CALayerCommit::addRoot(CALayer& root) { queue().roots.push_back(&root); }

void CALayerCommit::removeRoot(CALayer& root) {
  std::vector<CALayer*>& roots = queue().roots;
  const auto place = std::find(roots.begin(), roots.end(), &root);
  assert(place != roots.end() && "the layer belongs to another session");
  if (place != roots.end()) roots.erase(place);
}

void CALayerCommit::run() {
  std::vector<CALayerRef> layers;
  for (const std::weak_ptr<CALayer>& handle : std::exchange(queue().touched, {})) {
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
  for (CALayer* root : queue().roots) {
    const unsigned long version = root->subtreeVersion();
    if (std::exchange(root->shownVersion_, version) == version) continue;
    if (CALayerRef layer = root->weak_from_this().lock()) changed.push_back(std::move(layer));
  }
  for (const CALayerRef& root : changed)
    if (root->observer_ != nullptr) root->observer_->layerTreeDidChange();
  if (failure) std::rethrow_exception(failure);
}

}  // namespace zelkon
