#include "Backends/Cairo/CairoContext.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <optional>
#include <variant>

#include "Backends/Cairo/CairoPainting.h"
#include "Backends/Cairo/CairoShadow.h"
#include "Backends/Cairo/CairoSurface.h"
#include "Backends/Cairo/OverlayPixels.h"
#include "CoreGraphics/DisplayList.h"

namespace zelkon {

namespace {

constexpr double oneToOneTolerance = 1e-6;
constexpr double largestGroupSide = 100000;  // more than any surface has; keeps the numbers in the range of int

// Whether replaying the commands straight onto a page could touch what lies under the picture.
bool needsOwnGroup(const DisplayList& list) {
  for (const DisplayList::Command& command : list.commands()) {
    const bool touches = std::visit(
        [](const auto& c) {
          if constexpr (requires { c.blend; })
            return c.blend != CGBlendMode::normal;
          else if constexpr (requires { c.effects; })
            return c.effects.blend != CGBlendMode::normal;
          else
            return std::is_same_v<std::decay_t<decltype(c)>, DisplayList::Clear>;
        },
        command);
    if (touches) return true;
  }
  return false;
}

// How far a transform moves that only moves, by whole pixels.
std::optional<CGPoint> moveByPixels(const cairo_matrix_t& m) {
  const auto isNear = [](double value, double other) { return std::abs(value - other) < oneToOneTolerance; };
  if (!isNear(m.xx, 1) || !isNear(m.yy, 1) || !isNear(m.xy, 0) || !isNear(m.yx, 0)) return std::nullopt;
  const CGPoint move{std::round(m.x0), std::round(m.y0)};
  if (!isNear(m.x0, move.x) || !isNear(m.y0, move.y)) return std::nullopt;
  return move;
}

CGPath pathOfRect(CGRect rect) {
  CGPath path;
  path.addRect(rect);
  return path;
}

}  // namespace

struct CairoContext::Group {
  CairoSurfaceHandle surface;  // aligned with the target's pixels by its device offset
  CairoHandle cr;
  CGGroupEffects effects;
  CGRect bounds;          // in the user space of the time of begin
  double x = 0, y = 0;    // the surface's top left corner, in the target's pixels
  double brightness = 1;  // document: the factors of this and all enclosing groups
  int saves = 0;
  bool isUntouched = true;
  bool isLost = false;
};

CairoContext::CairoContext(cairo_surface_t* surface, double height, double scale, Target target,
                           std::shared_ptr<CairoText> text, std::shared_ptr<const void> owner)
    : target_(target), scale_(scale), text_(std::move(text)), owner_(std::move(owner)) {
  auto page = std::make_unique<Group>();
  page->surface.reset(cairo_surface_reference(surface));
  page->cr.reset(cairo_create(surface));
  cairo_translate(page->cr.get(), 0, height);
  cairo_scale(page->cr.get(), scale, -scale);
  groups_.push_back(std::move(page));
}

CairoContext::~CairoContext() = default;

void CairoContext::flush() { cairo_surface_flush(groups_.front()->surface.get()); }

void CairoContext::doSave() {
  cairo_save(top().cr.get());
  ++top().saves;
}

void CairoContext::doRestore() {
  if (top().saves == 0) return;
  --top().saves;
  cairo_restore(top().cr.get());
}

void CairoContext::doConcat(const CGAffineTransform& t) {
  // A singular transform would put Cairo into an error for good; nothing is visible through it anyway.
  const double determinant = t.a * t.d - t.b * t.c;
  if (!std::isfinite(determinant) || determinant == 0 || !std::isfinite(t.tx) || !std::isfinite(t.ty)) {
    cairo_new_path(top().cr.get());
    cairo_clip(top().cr.get());
    return;
  }
  const cairo_matrix_t matrix = cairoMatrix(t);
  cairo_transform(top().cr.get(), &matrix);
}

void CairoContext::doClip(const CGPath& path, bool evenOdd) {
  cairo_t* cr = top().cr.get();
  setCairoPath(cr, path);
  cairo_set_fill_rule(cr, evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
  cairo_clip(cr);
}

void CairoContext::doFill(const CGPath& path, bool evenOdd, const RGBA& color, CGBlendMode blend) {
  cairo_t* cr = top().cr.get();
  top().isUntouched = false;
  setCairoPath(cr, path);
  cairo_set_fill_rule(cr, evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
  setCairoColor(cr, brightened(color, top().brightness));
  cairo_set_operator(cr, cairoOperator(blend));
  cairo_fill(cr);
}

void CairoContext::doStroke(const CGPath& path, const CGStrokeStyle& style, const RGBA& color, CGBlendMode blend) {
  if (!(style.width > 0)) return;
  cairo_t* cr = top().cr.get();
  top().isUntouched = false;
  setCairoPath(cr, path);
  cairo_set_line_width(cr, style.width);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_MITER);
  cairo_set_miter_limit(cr, 10);
  setCairoColor(cr, brightened(color, top().brightness));
  cairo_set_operator(cr, cairoOperator(blend));
  cairo_stroke(cr);
}

void CairoContext::doGradient(const CGGradientRef& gradient, const CGGradientPlacement& placement, double alpha,
                              CGBlendMode blend) {
  if (!gradient) return;
  top().isUntouched = false;
  cairo_set_operator(top().cr.get(), cairoOperator(blend));
  const bool pixels = target_ == Target::pixels;
  if (top().brightness == 1)
    paintCairoGradient(top().cr.get(), *gradient, placement, alpha, pixels);
  else
    paintCairoGradient(top().cr.get(), brightened(*gradient, top().brightness), placement, alpha, pixels);
}

bool CairoContext::isOneToOne(int pixelWidth, int pixelHeight, CGRect pixelsRect) const {
  cairo_matrix_t m;
  cairo_get_matrix(top().cr.get(), &m);
  auto isOne = [](double step) { return std::abs(std::abs(step) - 1) < oneToOneTolerance; };
  return std::abs(m.xy) < oneToOneTolerance && std::abs(m.yx) < oneToOneTolerance &&
         isOne(m.xx * pixelsRect.size.width / pixelWidth) && isOne(m.yy * pixelsRect.size.height / pixelHeight);
}

void CairoContext::doImage(const CGImageRef& image, CGRect rect, double alpha, CGBlendMode blend) {
  if (!image || image->width() <= 0 || image->height() <= 0 || rect.size.width == 0 || rect.size.height == 0) return;
  rect = CGRectStandardize(rect);
  if (image->recording() && target_ == Target::document) return replayImage(*image, rect, alpha, blend);
  const std::shared_ptr<Surface> surface = image->surface(scale_);
  if (!surface) {
    if (image->recording()) replayImage(*image, rect, alpha, blend);
    return;
  }
  const auto* pixels = dynamic_cast<const CairoSurface*>(surface.get());
  assert(pixels && "an image of another backend");
  if (!pixels) return;
  CGRect pixelsRect = rect;
  if (image->recording()) {
    // At a broken scale the pixels reach a little further than the image, up and to the right.
    pixelsRect.size.width *= pixels->pixelWidth() / (image->width() * scale_);
    pixelsRect.size.height *= pixels->pixelHeight() / (image->height() * scale_);
    if (!isOneToOne(pixels->pixelWidth(), pixels->pixelHeight(), pixelsRect) && image->recording()->isCheapToReplay())
      return replayImage(*image, rect, alpha, blend);
  }
  paintPixels(*pixels, pixelsRect, rect, alpha, blend);
}

void CairoContext::replayImage(const CGImage& image, CGRect rect, double alpha, CGBlendMode blend) {
  saveGState();
  const bool inGroup = alpha != 1 || blend != CGBlendMode::normal || needsOwnGroup(*image.recording());
  CGGroupEffects effects;
  effects.alpha = alpha;
  effects.blend = blend;
  if (inGroup) doBeginGroup(effects, rect);
  saveGState();
  doClip(pathOfRect(rect), false);
  concatCTM({rect.size.width / image.width(), 0, 0, rect.size.height / image.height(), rect.origin.x, rect.origin.y});
  drawDisplayList(*image.recording());
  restoreGState();
  if (inGroup) doEndGroup();
  restoreGState();
}

void CairoContext::paintPixels(const CairoSurface& pixels, CGRect pixelsRect, CGRect rect, double alpha,
                               CGBlendMode blend) {
  cairo_t* cr = top().cr.get();
  top().isUntouched = false;
  CairoSurfaceHandle source(cairo_surface_reference(pixels.handle()));
  if (top().brightness != 1) source = brightenedCopy(source.get(), top().brightness);
  cairo_save(cr);
  setCairoPath(cr, pathOfRect(rect));
  cairo_translate(cr, pixelsRect.origin.x, CGRectGetMaxY(pixelsRect));
  cairo_scale(cr, pixelsRect.size.width / pixels.pixelWidth(), -pixelsRect.size.height / pixels.pixelHeight());
  if (target_ == Target::pixels && blend == CGBlendMode::overlay && alpha == 1 && rect == pixelsRect) {
    cairo_matrix_t matrix;
    cairo_get_matrix(cr, &matrix);
    const std::optional<CGPoint> move = moveByPixels(matrix);
    if (move && paintOverlay(cr, source.get(), move->x, move->y)) {
      cairo_restore(cr);
      return;
    }
  }
  cairo_set_source_surface(cr, source.get(), 0, 0);
  // Stretched pictures end at their rectangle instead of fading out half a pixel beyond it.
  cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD);
  cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_GOOD);
  cairo_set_operator(cr, cairoOperator(blend));
  if (alpha == 1) {
    cairo_fill(cr);
  } else {
    cairo_clip(cr);
    cairo_paint_with_alpha(cr, alpha);
  }
  cairo_restore(cr);
}

void CairoContext::doText(const CGTextRun& run, const RGBA& color, CGBlendMode blend) {
  cairo_t* cr = top().cr.get();
  top().isUntouched = false;
  setCairoColor(cr, brightened(color, top().brightness));
  cairo_set_operator(cr, cairoOperator(blend));
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
  text_->draw(cr, run, target_ == Target::pixels);
}

void CairoContext::doClear(CGRect rect) {
  // On a page, clearing makes everything beneath a picture; there is mostly nothing to clear.
  if (target_ == Target::document && top().isUntouched) return;
  cairo_t* cr = top().cr.get();
  setCairoPath(cr, pathOfRect(rect));
  cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
  cairo_fill(cr);
}

CairoContext::DeviceRect CairoContext::clipInDevice() const {
  cairo_t* cr = top().cr.get();
  cairo_matrix_t matrix;
  cairo_get_matrix(cr, &matrix);
  cairo_identity_matrix(cr);
  DeviceRect clip;
  cairo_clip_extents(cr, &clip.x1, &clip.y1, &clip.x2, &clip.y2);
  cairo_set_matrix(cr, &matrix);
  return clip;
}

CairoContext::DeviceRect CairoContext::groupExtent(const CGGroupEffects& effects, CGRect bounds) const {
  DeviceRect extent = clipInDevice();
  if (effects.shadow && extent.x2 > extent.x1 && extent.y2 > extent.y1) {
    // What lies outside the clip can still cast its shadow into it.
    const double reach = gaussianReach(effects.shadow->sigma * scale_);
    const double dx = std::abs(effects.shadow->offset.width) * scale_ + reach;
    const double dy = std::abs(effects.shadow->offset.height) * scale_ + reach;
    extent = {extent.x1 - dx, extent.y1 - dy, extent.x2 + dx, extent.y2 + dy};
  }
  const double inf = std::numeric_limits<double>::infinity();
  DeviceRect covered{inf, inf, -inf, -inf};
  for (const CGPoint corner :
       {bounds.origin, CGPoint{CGRectGetMaxX(bounds), bounds.origin.y}, CGPoint{bounds.origin.x, CGRectGetMaxY(bounds)},
        CGPoint{CGRectGetMaxX(bounds), CGRectGetMaxY(bounds)}}) {
    double x = corner.x, y = corner.y;
    cairo_user_to_device(top().cr.get(), &x, &y);
    if (!std::isfinite(x) || !std::isfinite(y)) return extent;
    covered = {std::min(covered.x1, x), std::min(covered.y1, y), std::max(covered.x2, x), std::max(covered.y2, y)};
  }
  // One pixel more on each side for antialiased edges.
  return {std::max(extent.x1, std::floor(covered.x1) - 1), std::max(extent.y1, std::floor(covered.y1) - 1),
          std::min(extent.x2, std::ceil(covered.x2) + 1), std::min(extent.y2, std::ceil(covered.y2) + 1)};
}

void CairoContext::doBeginGroup(const CGGroupEffects& effects, CGRect bounds) {
  const DeviceRect extent = groupExtent(effects, bounds);
  const double x = std::floor(extent.x1), y = std::floor(extent.y1);
  const double width = std::max(1.0, std::ceil(extent.x2) - x), height = std::max(1.0, std::ceil(extent.y2) - y);
  auto group = std::make_unique<Group>();
  group->effects = effects;
  group->bounds = bounds;
  group->x = x;
  group->y = y;
  if (target_ == Target::document) {
    const cairo_rectangle_t area{x, y, width, height};
    group->surface.reset(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &area));
    group->brightness = top().brightness * effects.brightness;
  } else {
    const auto pixels = CairoSurface::create(static_cast<int>(std::min(width, largestGroupSide)),
                                             static_cast<int>(std::min(height, largestGroupSide)));
    // Without the memory for it the group is lost, but not what is drawn after it.
    group->isLost = !pixels;
    group->surface.reset(pixels ? cairo_surface_reference(pixels->handle())
                                : cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1));
    cairo_surface_set_device_offset(group->surface.get(), -x, -y);
  }
  group->cr.reset(cairo_create(group->surface.get()));
  cairo_matrix_t matrix;
  cairo_get_matrix(top().cr.get(), &matrix);
  cairo_set_matrix(group->cr.get(), &matrix);
  groups_.push_back(std::move(group));
}

void CairoContext::paintShadow(Group& group, const CGShadow& shadow) {
  DeviceRect clip = clipInDevice();
  const double dx = shadow.offset.width * scale_, dy = -shadow.offset.height * scale_;
  const DeviceRect reached{clip.x1 - dx, clip.y1 - dy, clip.x2 - dx, clip.y2 - dy};
  // A page has no pixels: there the shadow becomes a picture of two pixels a point.
  const double resolution = target_ == Target::document ? 2 / scale_ : 1;
  const ShadowMask mask = shadowMask(group.surface.get(), {reached.x1, reached.y1, reached.x2, reached.y2},
                                     shadow.sigma * scale_, resolution);
  if (!mask.alpha) return;
  cairo_t* cr = top().cr.get();
  RGBA color = brightened(shadow.color, top().brightness);
  color.alpha *= group.effects.alpha;
  setCairoColor(cr, color);
  cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
  cairo_translate(cr, mask.x + dx, mask.y + dy);
  cairo_scale(cr, 1 / resolution, 1 / resolution);
  cairo_mask_surface(cr, mask.alpha.get(), 0, 0);
}

void CairoContext::doEndGroup() {
  if (groups_.size() < 2) return;
  const std::unique_ptr<Group> group = std::move(groups_.back());
  groups_.pop_back();
  group->cr.reset();
  cairo_surface_flush(group->surface.get());
  if (group->isLost) return;
  cairo_t* cr = top().cr.get();
  top().isUntouched = false;
  const CGGroupEffects& effects = group->effects;
  if (target_ == Target::pixels && effects.brightness != 1) brightenPixels(group->surface.get(), effects.brightness);
  cairo_save(cr);
  if (effects.blend == CGBlendMode::copy) {
    // Copying the nothing around the group would wipe out all that the clip lets through.
    setCairoPath(cr, pathOfRect(group->bounds));
    cairo_clip(cr);
  }
  cairo_identity_matrix(cr);
  if (effects.shadow) {
    cairo_save(cr);
    paintShadow(*group, *effects.shadow);
    cairo_restore(cr);
  }
  if (!(target_ == Target::pixels && effects.blend == CGBlendMode::overlay && effects.alpha == 1 &&
        paintOverlay(cr, group->surface.get(), group->x, group->y))) {
    cairo_set_source_surface(cr, group->surface.get(), 0, 0);
    cairo_set_operator(cr, cairoOperator(effects.blend));
    if (effects.alpha == 1)
      cairo_paint(cr);
    else
      cairo_paint_with_alpha(cr, effects.alpha);
  }
  cairo_restore(cr);
}

}  // namespace zelkon
