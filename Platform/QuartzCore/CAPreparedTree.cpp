#include "QuartzCore/CAPreparedTree.h"

#include <algorithm>
#include <cmath>

#include "Foundation/VectorAlgorithms.h"
#include "QuartzCore/CALayerPainting.h"

namespace zelkon {

namespace {

// Beyond this many standard deviations a shadow cannot be seen.
constexpr double shadowReach = 3;
// Every component but 0 is at its maximum long before; keeps the product finite.
constexpr double brightest = 1e6;

bool isFinite(CGRect r) {
  return std::isfinite(r.origin.x) && std::isfinite(r.origin.y) && std::isfinite(r.size.width) &&
         std::isfinite(r.size.height);
}

CGRect united(CGRect a, CGRect b) { return CGRectIsNull(a) ? b : CGRectIsNull(b) ? a : CGRectUnion(a, b); }

bool isVisiblyPlaced(const CGAffineTransform& t) {
  const double determinant = t.a * t.d - t.b * t.c;
  return determinant != 0 && std::isfinite(determinant) && std::isfinite(t.tx) && std::isfinite(t.ty);
}

void noteAnimations(CAPreparedLayer& prepared, const CALayer& layer, double time) {
  for (const std::string& keyPath : layer.runningKeyPaths(time)) {
    if (keyPath == "transform" || keyPath == "position" || keyPath == "anchorPoint") {
      prepared.moves = true;
    } else if (keyPath == "bounds") {
      prepared.moves = prepared.changes = true;
    } else if (keyPath != "opacity" && keyPath != "hidden" && keyPath != "zPosition") {
      prepared.changes = true;
    }
  }
}

void noteFilters(CAPreparedLayer& prepared) {
  for (const CIFilterRef& filter : prepared.shown->filters) {
    if (!filter) continue;
    if (const auto* exposure = std::get_if<CIExposureAdjust>(filter.get())) {
      const double factor = exposure->factor();
      if (!std::isnan(factor)) prepared.brightness *= std::min(factor, brightest);
    } else if (const auto* gradient = std::get_if<CIGaussianGradient>(filter.get())) {
      // What came before is replaced.
      prepared.generator = gradient;
      prepared.brightness = 1;
    }
  }
}

}  // namespace

bool CAPreparedLayer::hasShadow() const {
  return shown->shadowOpacity > 0 && std::isfinite(shown->shadowOffset.width) &&
         std::isfinite(shown->shadowOffset.height) && std::isfinite(shown->shadowRadius);
}

bool CAPreparedLayer::overlays() const {
  return shown->compositingFilter && std::holds_alternative<CIOverlayBlendMode>(*shown->compositingFilter);
}

bool CAPreparedLayer::isOnlyGenerator() const {
  return generator != nullptr && !hasShadow() && !mask && brightness == 1 && !overlays();
}

bool CAPreparedLayer::isGroup(const CGContext& context) const {
  if (hasShadow() || mask || generator != nullptr || brightness != 1) return true;
  if (overlays()) return true;
  if (!(alpha < 1)) return false;
  const int own = (shown->backgroundColor ? 1 : 0) + (shown->contents || shown->fadingContents ? 1 : 0) +
                  (shown->borderWidth > 0 ? 1 : 0);
  // A picture or a fill by itself takes the opacity as it is drawn; a drawing that is replayed cannot.
  return sublayerCount > 0 || own > 1 || shown->fadingContents ||
         (shown->contents && CALayerReplaysContents(context, *shown->contents));
}

bool CAPreparedTree::append(const CALayer& layer, double time, int maskDepth) {
  const CALayerProperties* shown = &layer.model();
  if (layer.hasAnimations()) {
    animated_.push_back(layer.presentation(time));
    shown = &animated_.back();
  }
  CAPreparedLayer prepared{};
  prepared.alpha = std::min(shown->opacity, 1.0) * shown->hiddenFade;
  prepared.toSuperlayer = CALayerToSuperlayerTransform(*shown);
  if (!(prepared.alpha > 0) || !isVisiblyPlaced(prepared.toSuperlayer) || !isFinite(shown->bounds)) return false;
  prepared.layer = &layer;
  prepared.shown = shown;
  prepared.end = layers_.size() + 1;
  prepared.painted = CGRectNull;
  if (layer.hasAnimations()) noteAnimations(prepared, layer, time);
  noteFilters(prepared);
  if (shown->mask && maskDepth > 0) {
    prepared.mask = std::make_shared<const CAPreparedTree>(*shown->mask, time, maskDepth - 1);
    for (const CAPreparedLayer& part : prepared.mask->layers())
      prepared.changes = prepared.changes || part.moves || part.changes || part.layer->hasRunningAnimations(time);
  }
  layers_.push_back(std::move(prepared));
  return true;
}

void CAPreparedTree::measure(CAPreparedLayer& prepared, CGRect sublayers) const {
  const CALayerProperties& p = *prepared.shown;
  CGRect painted = united(sublayers, CALayerContentsRect(p));
  if (p.masksToBounds) painted = CGRectIsNull(painted) ? painted : CGRectIntersection(painted, p.bounds);
  if (p.backgroundColor || p.borderWidth > 0) painted = united(painted, p.bounds);
  if (prepared.generator != nullptr) painted = p.bounds;
  if (prepared.mask) {
    CGRect masked = CGRectNull;
    if (!prepared.mask->layers().empty()) {
      const CAPreparedLayer& root = prepared.mask->layers().front();
      masked = CGRectApplyAffineTransform(root.shadowed, root.toSuperlayer);
    }
    painted = CGRectIsNull(painted) || CGRectIsNull(masked) ? CGRectNull : CGRectIntersection(painted, masked);
  }
  if (CGRectIsNull(painted) || !isFinite(painted)) painted = CGRectZero;
  prepared.painted = prepared.shadowed = painted;
  if (!prepared.hasShadow() || CGRectIsEmpty(painted)) return;
  const double reach = shadowReach * std::max(p.shadowRadius, 0.0);
  CGRect shadow = NSInsetRect(CGRectOffset(painted, p.shadowOffset.width, p.shadowOffset.height), -reach, -reach);
  if (p.masksToBounds) shadow = CGRectIntersection(shadow, p.bounds);
  if (!CGRectIsNull(shadow) && isFinite(shadow)) prepared.shadowed = CGRectUnion(painted, shadow);
}

CAPreparedTree::CAPreparedTree(const CALayer& root, double time, int maskDepth) {
  constexpr size_t none = static_cast<size_t>(-1);
  struct Waiting {
    const CALayer* layer;
    size_t superlayer;
  };
  std::vector<size_t> superlayers;
  std::vector<Waiting> waiting{{&root, none}};
  std::vector<const CALayer*> ordered;
  while (!waiting.empty()) {
    const Waiting next = waiting.back();
    waiting.pop_back();
    if (!append(*next.layer, time, maskDepth)) continue;
    const size_t index = layers_.size() - 1;
    superlayers.push_back(next.superlayer);
    if (next.superlayer != none) ++layers_[next.superlayer].sublayerCount;
    if (layers_[index].generator != nullptr) continue;  // its sublayers are not seen
    ordered.clear();
    bool isSorted = true;
    double highest = -HUGE_VAL;
    for (const CALayerRef& sublayer : next.layer->sublayersInPlace()) {
      ordered.push_back(sublayer.get());
      isSorted = isSorted && sublayer->zPosition() >= highest;
      highest = std::max(highest, sublayer->zPosition());
    }
    if (!isSorted)
      StableSort(ordered, [](const CALayer* a, const CALayer* b) { return a->zPosition() < b->zPosition(); });
    for (auto sublayer = ordered.rbegin(); sublayer != ordered.rend(); ++sublayer)
      waiting.push_back({*sublayer, index});
  }
  // From the last layer back: everything below a layer has been measured when its turn comes.
  std::vector<CGRect> covered(layers_.size(), CGRectNull);
  for (size_t i = layers_.size(); i-- > 0;) {
    CAPreparedLayer& prepared = layers_[i];
    measure(prepared, covered[i]);
    if (superlayers[i] == none) continue;
    CAPreparedLayer& outer = layers_[superlayers[i]];
    outer.end = std::max(outer.end, prepared.end);
    outer.changes = outer.changes || prepared.changes || prepared.moves || prepared.layer->hasRunningAnimations(time);
    if (!CGRectIsEmpty(prepared.shadowed)) {
      const CGRect place = CGRectApplyAffineTransform(prepared.shadowed, prepared.toSuperlayer);
      covered[superlayers[i]] = united(covered[superlayers[i]], place);
    }
  }
}

}  // namespace zelkon
