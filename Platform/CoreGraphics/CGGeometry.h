// Points, sizes and rectangles in points, y growing upwards.
#pragma once

#include <cmath>

namespace zelkon {

struct CGPoint {
  double x = 0, y = 0;
  friend bool operator==(const CGPoint&, const CGPoint&) = default;
};
struct CGSize {
  double width = 0, height = 0;
  friend bool operator==(const CGSize&, const CGSize&) = default;
};
struct CGRect {
  CGPoint origin;
  CGSize size;
  friend bool operator==(const CGRect&, const CGRect&) = default;
};
using NSRect = CGRect;
using NSPoint = CGPoint;
using NSSize = CGSize;

inline constexpr CGRect NSZeroRect{};
inline constexpr CGRect CGRectZero{};
extern const CGRect CGRectNull;  // origin (+inf, +inf), size 0

constexpr CGPoint CGPointMake(double x, double y) { return {x, y}; }
constexpr CGSize CGSizeMake(double w, double h) { return {w, h}; }
constexpr CGRect CGRectMake(double x, double y, double w, double h) { return {{x, y}, {w, h}}; }

CGRect CGRectStandardize(CGRect r);  // a negative size becomes positive by moving the origin
double CGRectGetMinX(CGRect r);
double CGRectGetMidX(CGRect r);
double CGRectGetMaxX(CGRect r);
double CGRectGetMinY(CGRect r);
double CGRectGetMidY(CGRect r);
double CGRectGetMaxY(CGRect r);
double CGRectGetWidth(CGRect r);
double CGRectGetHeight(CGRect r);
bool CGRectIsNull(CGRect r);
bool CGRectIsEmpty(CGRect r);
bool CGRectContainsPoint(CGRect r, CGPoint p);  // left and bottom edges inside, right and top edges outside
bool CGRectIntersectsRect(CGRect a, CGRect b);
CGRect CGRectIntersection(CGRect a, CGRect b);  // CGRectNull when they do not meet
CGRect CGRectUnion(CGRect a, CGRect b);
CGRect CGRectIntegral(CGRect r);  // floor of the minimum edges, ceiling of the maximum ones
CGRect CGRectInset(CGRect r, double dx, double dy);
CGRect CGRectOffset(CGRect r, double dx, double dy);
// AppKit's variants: negative or NaN sizes are empty; touching edges do not intersect; insets may go negative.
bool NSIsEmptyRect(CGRect r);
bool NSIntersectsRect(CGRect a, CGRect b);
inline bool NSEqualRects(CGRect a, CGRect b) { return a == b; }
CGRect NSInsetRect(CGRect r, double dx, double dy);

// (x, y) maps to (a x + c y + tx, b x + d y + ty).
struct CGAffineTransform {
  double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
  friend bool operator==(const CGAffineTransform&, const CGAffineTransform&) = default;
};
inline constexpr CGAffineTransform CGAffineTransformIdentity{};
constexpr CGAffineTransform CGAffineTransformMakeTranslation(double tx, double ty) { return {1, 0, 0, 1, tx, ty}; }
constexpr CGAffineTransform CGAffineTransformMakeScale(double sx, double sy) { return {sx, 0, 0, sy, 0, 0}; }
CGAffineTransform CGAffineTransformMakeRotation(double radians);
CGAffineTransform CGAffineTransformConcat(const CGAffineTransform& first, const CGAffineTransform& then);
CGAffineTransform CGAffineTransformInvert(const CGAffineTransform& t);  // the same transform when it is singular
CGPoint CGPointApplyAffineTransform(CGPoint p, const CGAffineTransform& t);
CGSize CGSizeApplyAffineTransform(CGSize s, const CGAffineTransform& t);
CGRect CGRectApplyAffineTransform(CGRect r, const CGAffineTransform& t);  // bounding box of the mapped corners

}  // namespace zelkon
