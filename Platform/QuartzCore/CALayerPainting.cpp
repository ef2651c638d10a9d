#include "QuartzCore/CALayerPainting.h"

#include <algorithm>
#include <cmath>

#include "CoreGraphics/DisplayList.h"

namespace zelkon {

namespace {

// Without smoothing a pixel belongs to the layer when its centre does. An edge in the middle of a pixel goes to the
// same side for both layers that share it, whatever their own coordinates cost in precision.
constexpr double edgeTolerance = 1e-6;

CGRect edges(const CGContext& context, const CALayerProperties& p, double scale, CGRect rect) {
  const CGAffineTransform& t = context.ctm();
  if (p.edgeAntialiasingMask != 0 || !(scale > 0) || t.b != 0 || t.c != 0 || t.a == 0 || t.d == 0) return rect;
  const auto snap = [&](double local, double factor, double offset) {
    const double pixel = std::floor((local * factor + offset) * scale + 0.5 + edgeTolerance);
    return (pixel / scale - offset) / factor;
  };
  const double minX = snap(CGRectGetMinX(rect), t.a, t.tx), maxX = snap(CGRectGetMaxX(rect), t.a, t.tx);
  const double minY = snap(CGRectGetMinY(rect), t.d, t.ty), maxY = snap(CGRectGetMaxY(rect), t.d, t.ty);
  return CGRectMake(minX, minY, maxX - minX, maxY - minY);
}

CGPath outline(CGRect rect, double radius) {
  CGPath path;
  if (radius > 0)
    path.addRoundedRect(rect, radius);
  else
    path.addRect(rect);
  return path;
}

// How an image lies in a layer: the part that counts, and the whole image, which reaches beyond it where the size of a
// drawing was rounded up.
struct Placement {
  CGRect part, whole;
  double scaleX, scaleY;
};

Placement place(const CALayerProperties& p, const CGImage& image, CGSize drawnSize) {
  const CGSize size = image.size();
  const CGSize part = drawnSize == CGSize{} ? size : drawnSize;
  Placement placement{p.bounds, p.bounds, 1, 1};
  if (p.contentsGravity == CAContentsGravity::center) {
    placement.part = {{CGRectGetMidX(p.bounds) - part.width / 2, CGRectGetMidY(p.bounds) - part.height / 2}, part};
  } else {
    placement.scaleX = p.bounds.size.width / part.width;
    placement.scaleY = p.bounds.size.height / part.height;
  }
  placement.whole = {placement.part.origin, {size.width * placement.scaleX, size.height * placement.scaleY}};
  return placement;
}

// What of the placed image is not transparent, as far as its recording tells: groups and their pixels stay small.
CGRect paintedPart(const Placement& placement, const CGImage& image) {
  const std::optional<CGRect> bounds = image.recording() ? image.recording()->bounds() : std::nullopt;
  if (!bounds || CGRectIsEmpty(placement.part)) return placement.part;
  if (CGRectIsNull(*bounds)) return CGRectNull;
  // Stretched pixels fade out over the next one.
  const CGRect covered = NSInsetRect(*bounds, -1, -1);
  const CGRect painted{{placement.part.origin.x + covered.origin.x * placement.scaleX,
                        placement.part.origin.y + covered.origin.y * placement.scaleY},
                       {covered.size.width * placement.scaleX, covered.size.height * placement.scaleY}};
  return CGRectIntersection(placement.part, painted);
}

void paintImage(CGContext& context, const CALayerProperties& p, const CGImageRef& image, CGSize drawnSize,
                double scale) {
  if (!image || image->width() <= 0 || image->height() <= 0) return;
  const Placement placement = place(p, *image, drawnSize);
  if (CGRectIsEmpty(placement.part) || !std::isfinite(placement.scaleX) || !std::isfinite(placement.scaleY)) return;
  if (CALayerReplaysContents(context, *image)) {
    context.saveGState();
    context.clipToRect(placement.part);
    context.translateCTM(placement.part.origin.x, placement.part.origin.y);
    context.scaleCTM(placement.scaleX, placement.scaleY);
    context.drawDisplayList(*image->recording());
    context.restoreGState();
  } else if (placement.part == placement.whole) {
    context.drawImage(edges(context, p, scale, placement.whole), image);
  } else {
    context.saveGState();
    context.clipToRect(placement.part);
    context.drawImage(placement.whole, image);
    context.restoreGState();
  }
}

}  // namespace

bool CALayerReplaysContents(const CGContext& context, const CGImage& image) {
  return image.recording() && (context.prefersRecordings() || image.recording()->isCheapToReplay());
}

CGRect CALayerContentsRect(const CALayerProperties& p) {
  CGRect rect = CGRectNull;
  if (p.contents) rect = paintedPart(place(p, *p.contents, p.drawnSize), *p.contents);
  if (p.fadingContents && p.contentsFade < 1) rect = CGRectUnion(rect, place(p, *p.fadingContents, {}).part);
  return rect;
}

bool CALayerContentsNeedClip(const CALayerProperties& p) {
  return p.cornerRadius > 0 || p.contentsGravity != CAContentsGravity::resize;
}

void CALayerPaintBackground(CGContext& context, const CALayerProperties& p, double scale) {
  if (!p.backgroundColor || !(p.backgroundColor->alpha() > 0) || CGRectIsEmpty(p.bounds)) return;
  context.setFillColorWithColor(p.backgroundColor);
  context.beginPath();
  context.addPath(outline(edges(context, p, scale, p.bounds), p.cornerRadius));
  context.fillPath();
}

void CALayerPaintContents(CGContext& context, const CALayerProperties& p, double scale) {
  if (!(p.contentsFade < 1)) {
    paintImage(context, p, p.contents, p.drawnSize, scale);
    return;
  }
  const CGRect rect = CALayerContentsRect(p);
  if (CGRectIsEmpty(rect)) return;
  // The two weights add up to one, so what the pictures have in common stays as it is.
  context.beginGroup({}, rect);
  CGGroupEffects earlier, later;
  earlier.alpha = 1 - p.contentsFade;
  later.alpha = p.contentsFade;
  later.blend = CGBlendMode::plusLighter;
  context.beginGroup(earlier, rect);
  paintImage(context, p, p.fadingContents, {}, scale);
  context.endGroup();
  context.beginGroup(later, rect);
  paintImage(context, p, p.contents, p.drawnSize, scale);
  context.endGroup();
  context.endGroup();
}

void CALayerPaintBorder(CGContext& context, const CALayerProperties& p, double scale) {
  if (!(p.borderWidth > 0) || !p.borderColor || CGRectIsEmpty(p.bounds)) return;
  const CGRect outer = edges(context, p, scale, p.bounds);
  const double radius = std::min(p.cornerRadius, std::min(outer.size.width, outer.size.height) / 2);
  CGPath path = outline(outer, radius);
  if (2 * p.borderWidth < std::min(outer.size.width, outer.size.height))
    path.append(outline(NSInsetRect(outer, p.borderWidth, p.borderWidth), radius - p.borderWidth));
  context.setFillColorWithColor(p.borderColor);
  context.beginPath();
  context.addPath(path);
  context.drawPath(CGPathDrawingMode::eoFill);
}

void CALayerClipToBounds(CGContext& context, const CALayerProperties& p, double scale) {
  context.beginPath();
  context.addPath(outline(edges(context, p, scale, p.bounds), p.cornerRadius));
  context.clip();
}

}  // namespace zelkon
