#include "Backends/Cairo/CairoPainting.h"

#include <algorithm>
#include <cmath>

namespace zelkon {

namespace {

// A chord of the parabola that plain interpolation draws in premultiplied space is off by a quarter of its width
// squared at most: 1/1024 for sixteenths.
constexpr int stepsBetweenTranslucentStops = 16;
constexpr double fullTurn = 6.283185307179586;

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
  for (size_t i = 0; i < stops.size(); ++i) {
    if (i > 0 && premultiplies && stops[i].color.alpha != stops[i - 1].color.alpha) {
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

// Clips to what lies between the start line and the end line, or beyond them where the options allow it.
void clipToBand(cairo_t* cr, const CGGradientPlacement& placement) {
  const double dx = placement.end.x - placement.start.x, dy = placement.end.y - placement.start.y;
  const double length = std::hypot(dx, dy), ux = dx / length, uy = dy / length;
  double x1, y1, x2, y2;
  cairo_clip_extents(cr, &x1, &y1, &x2, &y2);
  double along[2] = {0, length}, across[2] = {0, 0};
  for (const CGPoint corner : {CGPoint{x1, y1}, CGPoint{x2, y1}, CGPoint{x1, y2}, CGPoint{x2, y2}}) {
    const double px = corner.x - placement.start.x, py = corner.y - placement.start.y;
    const double a = px * ux + py * uy, c = py * ux - px * uy;
    if (placement.options & kCGGradientDrawsBeforeStartLocation) along[0] = std::min(along[0], a - 1);
    if (placement.options & kCGGradientDrawsAfterEndLocation) along[1] = std::max(along[1], a + 1);
    across[0] = std::min(across[0], c - 1);
    across[1] = std::max(across[1], c + 1);
  }
  cairo_new_path(cr);
  for (const auto& [a, c] : {std::pair{along[0], across[0]}, std::pair{along[1], across[0]},
                             std::pair{along[1], across[1]}, std::pair{along[0], across[1]}})
    cairo_line_to(cr, placement.start.x + a * ux - c * uy, placement.start.y + a * uy + c * ux);
  cairo_close_path(cr);
  cairo_clip(cr);
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
  const bool after = placement.options & kCGGradientDrawsAfterEndLocation;
  const bool isPoint = !(placement.radius > 0) && placement.start == placement.end;
  if (isPoint && !after) return;
  cairo_save(cr);
  if (isPoint) {
    setCairoColor(cr, gradient.stops().back().color);
  } else {
    if (!(placement.radius > 0)) {
      clipToBand(cr, placement);
    } else if (!after) {
      cairo_new_path(cr);
      cairo_arc(cr, placement.start.x, placement.start.y, placement.radius, 0, fullTurn);
      cairo_clip(cr);
    }
    cairo_set_source(cr, patternFor(gradient, placement, premultiplies).get());
  }
  if (alpha == 1)
    cairo_paint(cr);
  else
    cairo_paint_with_alpha(cr, alpha);
  cairo_restore(cr);
}

}  // namespace zelkon
