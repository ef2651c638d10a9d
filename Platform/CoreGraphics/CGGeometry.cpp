#include "CoreGraphics/CGGeometry.h"

#include <algorithm>
#include <initializer_list>
#include <limits>

namespace zelkon {

const CGRect CGRectNull = {{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()}, {0, 0}};

CGRect CGRectStandardize(CGRect r) {
  if (r.size.width < 0) {
    r.origin.x += r.size.width;
    r.size.width = -r.size.width;
  }
  if (r.size.height < 0) {
    r.origin.y += r.size.height;
    r.size.height = -r.size.height;
  }
  return r;
}

double CGRectGetMinX(CGRect r) { return CGRectStandardize(r).origin.x; }
double CGRectGetMinY(CGRect r) { return CGRectStandardize(r).origin.y; }
double CGRectGetWidth(CGRect r) { return std::abs(r.size.width); }
double CGRectGetHeight(CGRect r) { return std::abs(r.size.height); }
double CGRectGetMidX(CGRect r) { return CGRectGetMinX(r) + CGRectGetWidth(r) / 2; }
double CGRectGetMidY(CGRect r) { return CGRectGetMinY(r) + CGRectGetHeight(r) / 2; }
double CGRectGetMaxX(CGRect r) { return CGRectGetMinX(r) + CGRectGetWidth(r); }
double CGRectGetMaxY(CGRect r) { return CGRectGetMinY(r) + CGRectGetHeight(r); }

bool CGRectIsNull(CGRect r) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  return r.origin.x == infinity || r.origin.y == infinity;
}

bool CGRectIsEmpty(CGRect r) { return CGRectIsNull(r) || r.size.width == 0 || r.size.height == 0; }

bool CGRectContainsPoint(CGRect r, CGPoint p) {
  if (CGRectIsEmpty(r)) return false;
  return p.x >= CGRectGetMinX(r) && p.x < CGRectGetMaxX(r) && p.y >= CGRectGetMinY(r) && p.y < CGRectGetMaxY(r);
}

bool CGRectIntersectsRect(CGRect a, CGRect b) {
  return !CGRectIsNull(a) && !CGRectIsNull(b) && NSIntersectsRect(CGRectStandardize(a), CGRectStandardize(b));
}

CGRect CGRectIntersection(CGRect a, CGRect b) {
  if (CGRectIsNull(a) || CGRectIsNull(b)) return CGRectNull;
  const double minX = std::max(CGRectGetMinX(a), CGRectGetMinX(b));
  const double minY = std::max(CGRectGetMinY(a), CGRectGetMinY(b));
  const double maxX = std::min(CGRectGetMaxX(a), CGRectGetMaxX(b));
  const double maxY = std::min(CGRectGetMaxY(a), CGRectGetMaxY(b));
  if (!(minX <= maxX && minY <= maxY)) return CGRectNull;
  return CGRectMake(minX, minY, maxX - minX, maxY - minY);
}

CGRect CGRectUnion(CGRect a, CGRect b) {
  if (CGRectIsNull(a)) return b;
  if (CGRectIsNull(b)) return a;
  const double minX = std::min(CGRectGetMinX(a), CGRectGetMinX(b));
  const double minY = std::min(CGRectGetMinY(a), CGRectGetMinY(b));
  const double maxX = std::max(CGRectGetMaxX(a), CGRectGetMaxX(b));
  const double maxY = std::max(CGRectGetMaxY(a), CGRectGetMaxY(b));
  return CGRectMake(minX, minY, maxX - minX, maxY - minY);
}

CGRect CGRectIntegral(CGRect r) {
  if (CGRectIsNull(r)) return r;
  const double minX = std::floor(CGRectGetMinX(r));
  const double minY = std::floor(CGRectGetMinY(r));
  return CGRectMake(minX, minY, std::ceil(CGRectGetMaxX(r)) - minX, std::ceil(CGRectGetMaxY(r)) - minY);
}

CGRect CGRectInset(CGRect r, double dx, double dy) {
  if (CGRectIsNull(r)) return r;
  const CGRect inset = NSInsetRect(CGRectStandardize(r), dx, dy);
  return inset.size.width < 0 || inset.size.height < 0 ? CGRectNull : inset;
}

CGRect CGRectOffset(CGRect r, double dx, double dy) {
  if (CGRectIsNull(r)) return r;
  return CGRectMake(r.origin.x + dx, r.origin.y + dy, r.size.width, r.size.height);
}

bool NSIsEmptyRect(CGRect r) { return !(r.size.width > 0 && r.size.height > 0); }

bool NSIntersectsRect(CGRect a, CGRect b) {
  if (NSIsEmptyRect(a) || NSIsEmptyRect(b)) return false;
  return a.origin.x + a.size.width > b.origin.x && b.origin.x + b.size.width > a.origin.x &&
         a.origin.y + a.size.height > b.origin.y && b.origin.y + b.size.height > a.origin.y;
}

CGRect NSInsetRect(CGRect r, double dx, double dy) {
  return CGRectMake(r.origin.x + dx, r.origin.y + dy, r.size.width - 2 * dx, r.size.height - 2 * dy);
}

CGAffineTransform CGAffineTransformMakeRotation(double radians) {
  const double c = std::cos(radians), s = std::sin(radians);
  return {c, s, -s, c, 0, 0};
}

CGAffineTransform CGAffineTransformConcat(const CGAffineTransform& first, const CGAffineTransform& then) {
  return {first.a * then.a + first.b * then.c,
          first.a * then.b + first.b * then.d,
          first.c * then.a + first.d * then.c,
          first.c * then.b + first.d * then.d,
          first.tx * then.a + first.ty * then.c + then.tx,
          first.tx * then.b + first.ty * then.d + then.ty};
}

CGAffineTransform CGAffineTransformInvert(const CGAffineTransform& t) {
  const double determinant = t.a * t.d - t.b * t.c;
  if (determinant == 0 || !std::isfinite(determinant)) return t;
  return {t.d / determinant,
          -t.b / determinant,
          -t.c / determinant,
          t.a / determinant,
          (t.c * t.ty - t.d * t.tx) / determinant,
          (t.b * t.tx - t.a * t.ty) / determinant};
}

CGPoint CGPointApplyAffineTransform(CGPoint p, const CGAffineTransform& t) {
  return {t.a * p.x + t.c * p.y + t.tx, t.b * p.x + t.d * p.y + t.ty};
}

CGSize CGSizeApplyAffineTransform(CGSize s, const CGAffineTransform& t) {
  return {t.a * s.width + t.c * s.height, t.b * s.width + t.d * s.height};
}

CGRect CGRectApplyAffineTransform(CGRect r, const CGAffineTransform& t) {
  if (CGRectIsNull(r)) return r;
  const CGPoint corner = CGPointApplyAffineTransform(r.origin, t);
  double minX = corner.x, maxX = corner.x, minY = corner.y, maxY = corner.y;
  for (const CGSize step : {CGSize{r.size.width, 0}, CGSize{0, r.size.height}, r.size}) {
    const CGPoint p = CGPointApplyAffineTransform({r.origin.x + step.width, r.origin.y + step.height}, t);
    minX = std::min(minX, p.x);
    maxX = std::max(maxX, p.x);
    minY = std::min(minY, p.y);
    maxY = std::max(maxY, p.y);
  }
  return CGRectMake(minX, minY, maxX - minX, maxY - minY);
}

}  // namespace zelkon
