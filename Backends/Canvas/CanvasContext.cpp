#include "Backends/Canvas/CanvasContext.h"

#include <cassert>
#include <cmath>
#include <utility>

#include "CoreGraphics/DisplayList.h"

namespace zelkon {

namespace {

// Beyond so many standard deviations a shadow cannot be seen.
constexpr double shadowReach = 3;
// So near to a whole number of pixels is as good as one.
constexpr double pixelTolerance = 1e-6;

double number(CGBlendMode blend) { return static_cast<double>(blend); }

// What of the inside of a group may show within `outer`: its own pixels, and those whose shadow falls there.
CGRect visibleExtent(CGRect outer, const std::optional<CGShadow>& shadow, double scale) {
  if (!shadow) return outer;
  const double reach = std::ceil(shadow->sigma * scale * shadowReach);
  const CGRect casting =
      CGRectInset(CGRectOffset(outer, -shadow->offset.width * scale, shadow->offset.height * scale), -reach, -reach);
  return CGRectUnion(outer, casting);
}

}  // namespace

int canvasFace(const FontFace& face) { return (face.bold ? 1 : 0) + (face.family == "Helvetica" ? 2 : 0); }

CanvasContext::CanvasContext(std::shared_ptr<CanvasCommands> commands, std::shared_ptr<CanvasSurface> surface,
                             double scale, bool isMoving)
    : commands_(std::move(commands)),
      surface_(std::move(surface)),
      scale_(scale),
      isMoving_(isMoving),
      id_(commands_->newContext()) {
  commands_->add(0, CanvasOp::open, {static_cast<double>(id_), static_cast<double>(surface_->id()), scale_});
  extents_.push_back(CGRectMake(0, 0, surface_->pixelWidth(), surface_->pixelHeight()));
}

CanvasContext::~CanvasContext() { commands_->add(0, CanvasOp::close, {static_cast<double>(id_)}); }

void CanvasContext::flush() {
  if (surface_->isScreen()) commands_->flush();
}

CGAffineTransform CanvasContext::toPixels() const {
  return CGAffineTransformConcat(ctm(), {scale_, 0, 0, -scale_, 0, static_cast<double>(surface_->pixelHeight())});
}

void CanvasContext::doSave() { add(CanvasOp::save); }
void CanvasContext::doRestore() { add(CanvasOp::restore); }

void CanvasContext::doConcat(const CGAffineTransform& t) { add(CanvasOp::concat, {t.a, t.b, t.c, t.d, t.tx, t.ty}); }

void CanvasContext::doClip(const CGPath& path, bool evenOdd) {
  add(CanvasOp::clip, {evenOdd ? 1.0 : 0.0});
  // Engines smooth the edges of clips on the canvases of elements and not all of them elsewhere. A picture has to look
  // the same wherever it is painted.
  const bool isPicture = !surface_->isScreen() || replaysPicture_;
  commands_->path(isPicture ? onWholePixels(path) : path);
}

CGPath CanvasContext::onWholePixels(const CGPath& path) const {
  const std::optional<CGRect> rect = path.rect();
  const CGAffineTransform t = toPixels();
  if (!rect || std::abs(t.b) >= pixelTolerance || std::abs(t.c) >= pixelTolerance || t.a == 0 || t.d == 0) return path;
  const CGRect r = CGRectApplyAffineTransform(*rect, t);
  const auto nearest = [](double pixels) { return std::floor(pixels + 0.5 + pixelTolerance); };
  const double x = nearest(CGRectGetMinX(r)), y = nearest(CGRectGetMinY(r));
  CGPath snapped;
  snapped.addRect(CGRectApplyAffineTransform(
      CGRectMake(x, y, nearest(CGRectGetMaxX(r)) - x, nearest(CGRectGetMaxY(r)) - y), CGAffineTransformInvert(t)));
  return snapped.isPaintable() ? snapped : path;
}

void CanvasContext::doFill(const CGPath& path, bool evenOdd, const RGBA& color, CGBlendMode blend) {
  add(CanvasOp::fill, {evenOdd ? 1.0 : 0.0});
  commands_->color(color);
  commands_->more({number(blend)});
  commands_->path(path);
}

void CanvasContext::doStroke(const CGPath& path, const CGStrokeStyle& style, const RGBA& color, CGBlendMode blend) {
  add(CanvasOp::stroke, {style.width});
  commands_->color(color);
  commands_->more({number(blend)});
  commands_->path(path);
}

void CanvasContext::doGradient(const CGGradientRef& gradient, const CGGradientPlacement& placement, double alpha,
                               CGBlendMode blend) {
  add(CanvasOp::gradient, {placement.start.x, placement.start.y, placement.end.x, placement.end.y, placement.radius,
                           static_cast<double>(placement.options), alpha, number(blend)});
  for (const CGGradientStop& stop : gradient->stops()) {
    commands_->more({stop.location});
    commands_->color(stop.color);
  }
}

bool CanvasContext::showsPixelForPixel(const CGImage& image, CGRect rect) const {
  const CGAffineTransform t = toPixels();
  const double x = rect.size.width / image.width(), y = rect.size.height / image.height();
  return std::abs(t.a * x - scale_) < pixelTolerance && std::abs(t.d * y + scale_) < pixelTolerance &&
         std::abs(t.b) < pixelTolerance && std::abs(t.c) < pixelTolerance;
}

bool CanvasContext::liesInCorner(CGRect rect) const {
  const CGRect r = CGRectApplyAffineTransform(rect, toPixels());
  const auto isWhole = [](double pixels) { return std::abs(pixels - std::round(pixels)) < pixelTolerance; };
  return std::abs(r.origin.x) < pixelTolerance && std::abs(r.origin.y) < pixelTolerance && isWhole(r.size.width) &&
         isWhole(r.size.height);
}

bool CanvasContext::replaysBest(const CGImage& image, CGRect rect, bool isFirstTime) const {
  if (!showsPixelForPixel(image, rect)) return image.recording()->isCheapToReplay();
  // Pixels of its own are worth their making when they are shown twice, and a chart that is being resized never shows
  // those of its background again. Both ways have to give the same pixels to the last bit: engines round translucent
  // ones, spread the steps of a gradient by their place on the surface, and smooth clips on the canvases of elements
  // only; and where a clip is smoothed, each command would fade for itself.
  return isFirstTime && !isMoving_ && !image.hasPixels(scale_) && extents_.size() == 1 && !isClippedOrGrouped() &&
         liesInCorner(rect) && image.recording()->isOpaqueIn(CGRectMake(0, 0, image.width(), image.height()));
}

void CanvasContext::replayImage(const CGImage& image, CGRect rect) {
  const bool wasReplaying = std::exchange(replaysPicture_, showsPixelForPixel(image, rect));
  saveGState();
  translateCTM(rect.origin.x, rect.origin.y);
  scaleCTM(rect.size.width / image.width(), rect.size.height / image.height());
  clipToRect(CGRectMake(0, 0, image.width(), image.height()));
  drawDisplayList(*image.recording());
  restoreGState();
  replaysPicture_ = wasReplaying;
}

void CanvasContext::doImage(const CGImageRef& image, CGRect rect, double alpha, CGBlendMode blend) {
  if (image->width() <= 0 || image->height() <= 0) return;
  const bool replaceable = image->recording() && alpha == 1 && blend == CGBlendMode::normal;
  const bool isFirstTime = !image->noteShown();
  if (replaceable && replaysBest(*image, rect, isFirstTime)) return replayImage(*image, rect);
  const std::shared_ptr<Surface> surface = image->surface(scale_);
  const auto* pixels = dynamic_cast<const CanvasSurface*>(surface.get());
  assert((!surface || pixels) && "an image of another backend");
  if (pixels == nullptr) {
    if (replaceable) replayImage(*image, rect);
    return;
  }
  // At a broken scale the pixels reach a little further than the image, up and to the right.
  const double width = image->recording() ? image->width() * scale_ : pixels->pixelWidth();
  const double height = image->recording() ? image->height() * scale_ : pixels->pixelHeight();
  add(CanvasOp::image, {static_cast<double>(pixels->id()), rect.origin.x, rect.origin.y, rect.size.width,
                        rect.size.height, width, height, alpha, number(blend)});
}

void CanvasContext::doText(const CGTextRun& run, const RGBA& color, CGBlendMode blend) {
  const int string = commands_->string(run.text);
  add(CanvasOp::text,
      {static_cast<double>(canvasFace(*run.face)), run.size, run.origin.x, run.origin.y, static_cast<double>(string)});
  commands_->color(color);
  commands_->more({number(blend)});
}

void CanvasContext::doClear(CGRect rect) {
  add(CanvasOp::clear, {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
}

void CanvasContext::doBeginGroup(const CGGroupEffects& effects, CGRect bounds) {
  // One pixel more on each side for antialiased edges.
  const CGRect covered = CGRectInset(CGRectIntegral(CGRectApplyAffineTransform(bounds, toPixels())), -1, -1);
  CGRect extent = CGRectIntegral(CGRectIntersection(covered, visibleExtent(extents_.back(), effects.shadow, scale_)));
  // Even an empty group is put onto what lies beneath: it may erase it.
  if (CGRectIsNull(extent) || CGRectIsEmpty(extent)) extent = {extents_.back().origin, {1, 1}};
  extents_.push_back(extent);
  add(CanvasOp::beginGroup, {extent.origin.x, extent.origin.y, extent.size.width, extent.size.height, effects.alpha,
                             number(effects.blend), effects.brightness, effects.shadow ? 1.0 : 0.0});
  const CGShadow shadow = effects.shadow.value_or(CGShadow{});
  commands_->more({shadow.offset.width * scale_, -shadow.offset.height * scale_, shadow.sigma * scale_});
  commands_->color(shadow.color);
  commands_->groupBegun();
}

void CanvasContext::doEndGroup() {
  extents_.pop_back();
  if (!commands_->foldGroup(id_)) add(CanvasOp::endGroup);
}

}  // namespace zelkon
