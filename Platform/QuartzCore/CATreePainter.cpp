#include "QuartzCore/CATreePainter.h"

#include <algorithm>
#include <cmath>

#include "CoreGraphics/CGGradient.h"
#include "QuartzCore/CALayerPainting.h"

namespace zelkon {

namespace {

// A layer's shadow turns and grows with the layer; the context wants it in the space that it was made with.
CGShadow shadowOf(const CALayerProperties& p, const CGAffineTransform& ctm) {
  const CGAffineTransform linear{ctm.a, ctm.b, ctm.c, ctm.d, 0, 0};
  CGShadow shadow{CGSizeApplyAffineTransform(p.shadowOffset, linear),
                  std::max(p.shadowRadius, 0.0) * std::sqrt(std::abs(ctm.a * ctm.d - ctm.b * ctm.c)), RGBA{0, 0, 0, 1}};
  if (p.shadowColor) shadow.color = p.shadowColor->rgba();
  shadow.color.alpha *= std::min(p.shadowOpacity, 1.0);
  return shadow;
}

CGBlendMode blendOf(const CAPreparedLayer& prepared) {
  return prepared.overlays() ? CGBlendMode::overlay : CGBlendMode::normal;
}

constexpr double pixelTolerance = 1e-6;

bool isWhole(double pixels) { return std::abs(pixels - std::round(pixels)) < pixelTolerance; }

}  // namespace

void CATreePainter::paint(const CAPreparedTree& tree) { paintRange(tree.layers(), 0, tree.layers().size()); }

void CATreePainter::paintRange(const std::vector<CAPreparedLayer>& layers, size_t begin, size_t end) {
  const size_t depth = open_.size();
  for (size_t i = begin; i < end;) {
    while (open_.size() > depth && layers[open_.back().index].end <= i) leave(layers);
    i = enter(layers, i, true) ? i + 1 : layers[i].end;
  }
  while (open_.size() > depth) leave(layers);
}

void CATreePainter::paintFlattened(const std::vector<CAPreparedLayer>& layers, size_t index) {
  if (enter(layers, index, false)) {
    paintRange(layers, index + 1, layers[index].end);
    leave(layers);
  }
}

bool CATreePainter::enter(const std::vector<CAPreparedLayer>& layers, size_t index, bool placed) {
  const CAPreparedLayer& prepared = layers[index];
  const CALayerProperties& p = *prepared.shown;
  if (CGRectIsEmpty(prepared.shadowed)) return false;
  const bool moving = prepared.moves || (!open_.empty() && open_.back().moving);
  context_.saveGState();
  Open open{index, 0, false, false, moving};
  if (placed) {
    context_.concatCTM(prepared.toSuperlayer);
    if (prepared.isGroup(context_) && paintPicture(layers, index, moving)) {
      context_.restoreGState();
      return false;
    }
    if (prepared.isGroup(context_) && !prepared.isOnlyGenerator()) {
      CGGroupEffects effects;
      effects.alpha = prepared.alpha;
      effects.blend = blendOf(prepared);
      context_.beginGroup(effects, prepared.shadowed);
      ++open.groups;
    } else {
      context_.setAlpha(prepared.alpha);
    }
  }
  if (prepared.hasShadow() || prepared.brightness != 1) {
    if (prepared.hasShadow() && p.masksToBounds) CALayerClipToBounds(context_, p, scale_);
    CGGroupEffects effects;
    effects.brightness = prepared.brightness;
    if (prepared.hasShadow()) effects.shadow = shadowOf(p, context_.ctm());
    context_.beginGroup(effects, prepared.painted);
    ++open.groups;
  }
  if (const CAPreparedLayer* mask = maskOnPixels(prepared)) {
    context_.saveGState();
    context_.clipToRect(CGRectApplyAffineTransform(mask->shown->bounds, mask->toSuperlayer));
    open.clippedToMask = true;
  }
  if (prepared.generator != nullptr) {
    paintGenerator(*prepared.generator, p.bounds);
    open_.push_back(open);
    return true;
  }
  CALayerPaintBackground(context_, p, scale_);
  const bool contentsFirst = !p.masksToBounds || !CALayerContentsNeedClip(p);
  if (p.contents && pictures_ != nullptr && !CALayerReplaysContents(context_, *p.contents))
    pictures_->noteContents(*prepared.layer);
  if (contentsFirst) CALayerPaintContents(context_, p, scale_);
  if (p.masksToBounds && (prepared.sublayerCount > 0 || !contentsFirst)) {
    context_.saveGState();
    CALayerClipToBounds(context_, p, scale_);
    open.clipped = true;
  }
  if (!contentsFirst) CALayerPaintContents(context_, p, scale_);
  open_.push_back(open);
  return true;
}

void CATreePainter::paintGenerator(const CIGaussianGradient& generator, CGRect bounds) {
  if (!(generator.inputRadius > 0)) {
    context_.setFillColor(generator.inputColor1);
    context_.fillRect(bounds);
    return;
  }
  context_.saveGState();
  context_.clipToRect(bounds);
  context_.drawRadialGradient(generator.gradient(), generator.inputCenter, generator.inputRadius,
                              kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation);
  context_.restoreGState();
}

void CATreePainter::leave(const std::vector<CAPreparedLayer>& layers) {
  const Open open = open_.back();
  open_.pop_back();
  const CAPreparedLayer& prepared = layers[open.index];
  if (open.clipped) context_.restoreGState();
  if (prepared.generator == nullptr) CALayerPaintBorder(context_, *prepared.shown, scale_);
  if (open.clippedToMask) {
    const CAPreparedLayer& mask = prepared.mask->layers().front();
    context_.concatCTM(mask.toSuperlayer);
    context_.setAlpha(mask.alpha);
    context_.setBlendMode(CGBlendMode::destinationIn);
    paintGenerator(*mask.generator, mask.shown->bounds);
    context_.restoreGState();
  } else if (prepared.mask) {
    // What the mask covers stays, as far as it covers it.
    CGGroupEffects effects;
    effects.blend = CGBlendMode::destinationIn;
    context_.beginGroup(effects, prepared.painted);
    CATreePainter(context_, scale_, nullptr).paint(*prepared.mask);
    context_.endGroup();
  }
  for (int i = 0; i < open.groups; ++i) context_.endGroup();
  context_.restoreGState();
}

const CAPreparedLayer* CATreePainter::maskOnPixels(const CAPreparedLayer& prepared) const {
  if (!prepared.mask || prepared.mask->layers().size() != 1 || context_.prefersRecordings()) return nullptr;
  const CAPreparedLayer& mask = prepared.mask->layers().front();
  if (!mask.isOnlyGenerator() || !(mask.generator->inputRadius > 0)) return nullptr;
  const CGAffineTransform t = CGAffineTransformConcat(mask.toSuperlayer, context_.ctm());
  const CGRect rect = mask.shown->bounds;
  const auto areWhole = [&](double from, double to, double factor, double move) {
    return isWhole((from * factor + move) * scale_) && isWhole((to * factor + move) * scale_);
  };
  const bool lies = t.b == 0 && t.c == 0 && areWhole(CGRectGetMinX(rect), CGRectGetMaxX(rect), t.a, t.tx) &&
                    areWhole(CGRectGetMinY(rect), CGRectGetMaxY(rect), t.d, t.ty);
  return lies ? &mask : nullptr;
}

bool CATreePainter::liesOnPixels() const {
  const CGAffineTransform& t = context_.ctm();
  return t.a == 1 && t.b == 0 && t.c == 0 && t.d == 1 && isWhole(t.tx * scale_) && isWhole(t.ty * scale_);
}

bool CATreePainter::paintPicture(const std::vector<CAPreparedLayer>& layers, size_t index, bool moving) {
  if (pictures_ == nullptr) return false;
  const CAPreparedLayer& prepared = layers[index];
  // A resting layer off the pixel grid would be blurred by its picture; one on the move is not looked at that closely.
  if (context_.prefersRecordings() || prepared.changes || !(moving || liesOnPixels())) {
    pictures_->noteRepaint();
    return false;
  }
  const CAPictureCache::Picture* picture = pictures_->picture(
      *prepared.layer, prepared.shadowed,
      [&](CGContext& context) { CATreePainter(context, scale_, nullptr).paintFlattened(layers, index); });
  if (picture == nullptr) return false;
  context_.setAlpha(prepared.alpha);
  context_.setBlendMode(blendOf(prepared));
  context_.drawImage(picture->rect, picture->image);
  return true;
}

}  // namespace zelkon
