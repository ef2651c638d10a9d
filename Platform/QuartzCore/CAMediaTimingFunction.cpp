#include <cmath>

#include "QuartzCore/CAAnimation.h"

namespace zelkon {

namespace {

// One coordinate of a cubic Bézier from 0 to 1 with the control values p1 and p2.
double bezier(double p1, double p2, double s) {
  const double r = 1 - s;
  return 3 * r * r * s * p1 + 3 * r * s * s * p2 + s * s * s;
}

double bezierSlope(double p1, double p2, double s) {
  const double r = 1 - s;
  return 3 * r * r * p1 + 6 * r * s * (p2 - p1) + 3 * s * s * (1 - p2);
}

constexpr double tolerance = 1e-12;

}  // namespace

double CAMediaTimingFunction::solve(double t) const {
  if (!(t > 0)) return 0;
  if (t >= 1) return 1;
  if (x1 == y1 && x2 == y2) return t;
  double low = 0, high = 1, s = t;
  for (int i = 0; i < 60; ++i) {
    const double error = bezier(x1, x2, s) - t;
    if (std::abs(error) < tolerance) break;
    (error < 0 ? low : high) = s;
    // Newton's step where it stays inside what is known, halving where it does not.
    const double slope = bezierSlope(x1, x2, s);
    const double next = slope > 0 ? s - error / slope : low;
    s = next > low && next < high ? next : (low + high) / 2;
  }
  return bezier(y1, y2, s);
}

}  // namespace zelkon
