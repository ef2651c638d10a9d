// Drawing the contents of layers, and layers into a context.

#include <algorithm>
#include <cmath>
#include <limits>

#include "CoreGraphics/CGBitmapContext.h"
#include "Foundation/VectorAlgorithms.h"
#include "QuartzCore/CALayer.h"
#include "QuartzCore/CALayerCommit.h"
#include "QuartzCore/CALayerPainting.h"

namespace zelkon {

namespace {

// A page has no pixels that are known here. Edges that are not smoothed lie on whole points of it, so that layers that
// share such an edge meet without a seam.
constexpr double pageScale = 1;

// Whole pixels at scale 1 that hold a length; 0 when there is nothing to draw or no such picture can be had. The
// allowance keeps rounding errors from costing a column.
size_t pixelsFor(double length) {
  if (!(length > 0) || !(length < std::numeric_limits<int>::max())) return 0;
  return static_cast<size_t>(std::max(1.0, std::ceil(length - 1e-6)));
}

// Stable by zPosition.
std::vector<CALayerRef> inDrawingOrder(std::vector<CALayerRef> layers) {
  StableSort(layers, [](const CALayerRef& a, const CALayerRef& b) { return a->zPosition() < b->zPosition(); });
  return layers;
}

}  // namespace

void CALayer::setNeedsDisplay() {
  needsDisplay_ = true;
  CALayerCommit::touch(*this);
}

void CALayer::setNeedsLayout() {
  needsLayout_ = true;
  CALayerCommit::touch(*this);
}

void CALayer::layoutIfNeeded() { needsLayout_ = false; }

void CALayer::displayIfNeeded() {
  if (needsDisplay_) display();
}

void CALayer::display() {
  const CGSize size = model_.bounds.size;
  if (!(size.width > 0 && size.height > 0)) return;  // stays marked until there is room
  needsDisplay_ = false;
  if (!drawsItself() && !delegate_.lock()) return;
  const std::shared_ptr<CGBitmapContext> context =
      CGBitmapContext::create(nullptr, pixelsFor(size.width), pixelsFor(size.height), 0, CGColorSpaceGenericRGB(),
                              CGImageAlphaInfo::premultipliedLast);
  CGImageRef drawn;
  if (context && std::isfinite(model_.bounds.origin.x) && std::isfinite(model_.bounds.origin.y)) {
    context->translateCTM(-model_.bounds.origin.x, -model_.bounds.origin.y);
    drawInContext(*context);
    drawn = context->createImage();
  }
  model_.contents = std::move(drawn);
  model_.drawnSize = model_.contents ? size : CGSize{};
  didChange();
}

void CALayer::drawInContext(CGContext& context) {
  if (const std::shared_ptr<CALayerDelegate> delegate = delegate_.lock()) delegate->drawLayer(*this, context);
}

void CALayer::renderInContext(CGContext& context) {
  // A list of what is still to be done instead of recursion: trees may be deep.
  struct Step {
    CALayerRef keptAlive;
    CALayer* layer;
    bool isLeaving;
    bool masks, fades;  // as they were on entering: drawing may change the layer
  };
  std::vector<Step> steps{{weak_from_this().lock(), this, false, false, false}};
  while (!steps.empty()) {
    const Step step = std::move(steps.back());
    steps.pop_back();
    CALayer& layer = *step.layer;
    if (step.isLeaving) {
      if (step.masks) context.restoreGState();
      CALayerPaintBorder(context, layer.model_, pageScale);
      if (step.fades) context.endTransparencyLayer();
      context.restoreGState();
      continue;
    }
    layer.displayIfNeeded();
    const CALayerProperties& p = layer.model_;
    if (p.hidden || p.mask || p.compositingFilter || !(p.opacity > 0)) continue;
    const bool masks = p.masksToBounds, fades = p.opacity < 1;
    context.saveGState();
    if (&layer != this) context.concatCTM(CALayerToSuperlayerTransform(p));
    if (fades) {
      context.setAlpha(p.opacity);
      context.beginTransparencyLayer();
    }
    CALayerPaintBackground(context, p, pageScale);
    const bool contentsFirst = !p.masksToBounds || !CALayerContentsNeedClip(p);
    if (contentsFirst) CALayerPaintContents(context, p, pageScale);
    if (masks) {
      context.saveGState();
      CALayerClipToBounds(context, p, pageScale);
    }
    if (!contentsFirst) CALayerPaintContents(context, p, pageScale);
    if (!p.contents && layer.drawsItself() && !CGRectIsEmpty(p.bounds)) {
      context.saveGState();
      context.clipToRect(p.bounds);
      layer.drawInContext(context);
      context.restoreGState();
    }
    steps.push_back({step.keptAlive, &layer, true, masks, fades});
    const std::vector<CALayerRef> sublayers = inDrawingOrder(layer.sublayers_);
    for (auto sublayer = sublayers.rbegin(); sublayer != sublayers.rend(); ++sublayer)
      steps.push_back({*sublayer, sublayer->get(), false, false, false});
  }
}

}  // namespace zelkon
