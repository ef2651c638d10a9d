#include "Backends/Cairo/CairoPainting.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "Backends/Cairo/GradientRegion.h"
#include "Backends/Cairo/RadialPicture.h"

namespace zelkon {

namespace {

// A chord of the parabola that plain interpolation draws in premultiplied space is off by a quarter of its width
// squared at most: 1/1024 for sixteenths.
constexpr int stepsBetweenTranslucentStops = 16;

// Pixels; a smaller gradient has more stops than pixels, and what is larger would take too much memory.
constexpr double leastRadius = 1;
constexpr double largestSide = 8192;

CairoPatternHandle patternFor(const CGGradient& gradient, const CGGradientPlacement& placement, bool premultiplies) {
  CairoPatternHandle pattern(
      placement.radius > 0
          ? cairo_pattern_create_radial(placement.start.x, placement.start.y, 0, placement.start.x, placement.start.y,
                                        placement.radius)
          : cairo_pattern_create_linear(placement.start.x, placement.start.y, placement.end.x, placement.end.y));
  cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_PAD);
  auto add = [&pattern](double location, const RGBA& c) {
    cairo_pattern_add_color_stop_rgba(pattern.get(), location, c.red, c.green, c.blue, c.alpha);
  };
  const auto& stops = gradient.stops();
  // One colour that only fades is the same either way, and each stop costs time at every pixel.
  auto differ = [](const RGBA& a, const RGBA& b) {
    return a.alpha != b.alpha && (a.red != b.red || a.green != b.green || a.blue != b.blue);
  };
  for (size_t i = 0; i < stops.size(); ++i) {
    if (i > 0 && premultiplies && differ(stops[i].color, stops[i - 1].color)) {
      const CGGradientStop &from = stops[i - 1], &to = stops[i];
      for (int step = 1; step < stepsBetweenTranslucentStops; ++step) {
        const double f = static_cast<double>(step) / stepsBetweenTranslucentStops;
        auto between = [f](double a, double b) { return a + (b - a) * f; };
        add(between(from.location, to.location),
            {between(from.color.red, to.color.red), between(from.color.green, to.color.green),
             between(from.color.blue, to.color.blue), between(from.color.alpha, to.color.alpha)});
      }
    }
    add(stops[i].location, stops[i].color);
  }
  return pattern;
}

// In pixels of the device space.
struct Disc {
  CGPoint center;
  double radius;
};

// Nothing when the gradient would not be round there, or too small.
std::optional<Disc> discInDevice(cairo_t* cr, const CGGradientPlacement& placement) {
  cairo_matrix_t matrix;
  cairo_get_matrix(cr, &matrix);
  if (matrix.xy != 0 || matrix.yx != 0 || std::abs(matrix.xx) != std::abs(matrix.yy)) return std::nullopt;
  Disc disc{placement.start, placement.radius * std::abs(matrix.xx)};
  cairo_matrix_transform_point(&matrix, &disc.center.x, &disc.center.y);
  if (!(disc.radius > leastRadius) || !std::isfinite(disc.center.x + disc.center.y + disc.radius)) return std::nullopt;
  return disc;
}

// Sets a source of pixels for the clip in force; false when they would be too many.
bool setRadialPicture(cairo_t* cr, const CGGradient& gradient, const Disc& disc) {
  cairo_matrix_t matrix;
  cairo_get_matrix(cr, &matrix);
  cairo_identity_matrix(cr);
  double x1, y1, x2, y2;
  cairo_clip_extents(cr, &x1, &y1, &x2, &y2);
  x1 = std::floor(x1);
  y1 = std::floor(y1);
  const double width = std::ceil(x2) - x1, height = std::ceil(y2) - y1;
  CairoSurfaceHandle picture;
  if (width > 0 && height > 0 && width <= largestSide && height <= largestSide)
    picture = radialPicture(gradient, {disc.center.x - x1, disc.center.y - y1}, disc.radius, static_cast<int>(width),
                            static_cast<int>(height));
  if (picture) {
    cairo_set_source_surface(cr, picture.get(), x1, y1);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
  } else {
    cairo_set_matrix(cr, &matrix);
  }
  return picture != nullptr;
}

// Paints over the clip in force without Cairo's own radial gradient, or with nothing done gives false.
bool paintRadialPixels(cairo_t* cr, const CGGradient& gradient, const CGGradientPlacement& placement, double alpha) {
  const std::optional<Disc> disc = discInDevice(cr, placement);
  if (!disc) return false;
  if (alpha == 1 && cairo_get_operator(cr) == CAIRO_OPERATOR_DEST_IN &&
      multiplyByRadialAlpha(cr, gradient, disc->center, disc->radius))
    return true;
  if (!setRadialPicture(cr, gradient, *disc)) return false;
  cairo_paint_with_alpha(cr, alpha);
  return true;
}

}  // namespace

cairo_matrix_t cairoMatrix(const CGAffineTransform& t) {
  cairo_matrix_t matrix;
  cairo_matrix_init(&matrix, t.a, t.b, t.c, t.d, t.tx, t.ty);
  return matrix;
}

cairo_operator_t cairoOperator(CGBlendMode blend) {
  switch (blend) {
    case CGBlendMode::normal:
      return CAIRO_OPERATOR_OVER;
    case CGBlendMode::overlay:
      return CAIRO_OPERATOR_OVERLAY;
    case CGBlendMode::copy:
      return CAIRO_OPERATOR_SOURCE;
    case CGBlendMode::destinationIn:
      return CAIRO_OPERATOR_DEST_IN;
    case CGBlendMode::plusLighter:
      return CAIRO_OPERATOR_ADD;
  }
  return CAIRO_OPERATOR_OVER;
}

void setCairoPath(cairo_t* cr, const CGPath& path) {
  cairo_new_path(cr);
  for (const CGPathElement& element : path.elements()) {
    const auto& p = element.points;
    switch (element.type) {
      case CGPathElement::Type::move:
        cairo_move_to(cr, p[0].x, p[0].y);
        break;
      case CGPathElement::Type::line:
        cairo_line_to(cr, p[0].x, p[0].y);
        break;
      case CGPathElement::Type::curve:
        cairo_curve_to(cr, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
        break;
      case CGPathElement::Type::close:
        cairo_close_path(cr);
        break;
    }
  }
}

void setCairoColor(cairo_t* cr, const RGBA& color) {
  cairo_set_source_rgba(cr, color.red, color.green, color.blue, color.alpha);
}

RGBA brightened(const RGBA& color, double factor) {
  auto scaled = [factor](double component) { return std::min(1.0, component * factor); };
  return {scaled(color.red), scaled(color.green), scaled(color.blue), color.alpha};
}

CGGradient brightened(const CGGradient& gradient, double factor) {
  std::vector<RGBA> colors;
  std::vector<double> locations;
  for (const CGGradientStop& stop : gradient.stops()) {
    colors.push_back(brightened(stop.color, factor));
    locations.push_back(stop.location);
  }
  return CGGradient(colors, locations);
}

void paintCairoGradient(cairo_t* cr, const CGGradient& gradient, const CGGradientPlacement& placement, double alpha,
                        bool premultiplies) {
  if (gradient.stops().empty()) return;
  double x1, y1, x2, y2;
  cairo_clip_extents(cr, &x1, &y1, &x2, &y2);
  const CGPath region = gradientRegion(placement, CGRectMake(x1, y1, x2 - x1, y2 - y1));
  if (region.isEmpty()) return;
  cairo_save(cr);
  setCairoPath(cr, region);
  cairo_set_fill_rule(cr, CAIRO_FILL_RULE_WINDING);
  cairo_clip(cr);
  if (!(premultiplies && placement.radius > 0 && paintRadialPixels(cr, gradient, placement, alpha))) {
    if (!(placement.radius > 0) && placement.start == placement.end)
      setCairoColor(cr, gradient.stops().back().color);
    else
      cairo_set_source(cr, patternFor(gradient, placement, premultiplies).get());
    cairo_paint_with_alpha(cr, alpha);
  }
  cairo_restore(cr);
}

}  // namespace zelkon
