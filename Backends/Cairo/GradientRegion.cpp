#include "Backends/Cairo/GradientRegion.h"

#include <algorithm>
#include <cmath>

namespace zelkon {

namespace {

CGPath bandRegion(const CGGradientPlacement& placement, CGRect visible) {
  const double dx = placement.end.x - placement.start.x, dy = placement.end.y - placement.start.y;
  const double length = std::hypot(dx, dy), ux = dx / length, uy = dy / length;
  double along[2] = {0, length}, across[2] = {0, 0};
  for (const CGPoint corner :
       {visible.origin, CGPoint{CGRectGetMaxX(visible), visible.origin.y},
        CGPoint{visible.origin.x, CGRectGetMaxY(visible)}, CGPoint{CGRectGetMaxX(visible), CGRectGetMaxY(visible)}}) {
    const double px = corner.x - placement.start.x, py = corner.y - placement.start.y;
    const double a = px * ux + py * uy, c = py * ux - px * uy;
    if (placement.options & kCGGradientDrawsBeforeStartLocation) along[0] = std::min(along[0], a - 1);
    if (placement.options & kCGGradientDrawsAfterEndLocation) along[1] = std::max(along[1], a + 1);
    across[0] = std::min(across[0], c - 1);
    across[1] = std::max(across[1], c + 1);
  }
  auto at = [&](double a, double c) {
    return CGPoint{placement.start.x + a * ux - c * uy, placement.start.y + a * uy + c * ux};
  };
  CGPath band;
  band.moveTo(at(along[0], across[0]));
  band.addLineTo(at(along[1], across[0]));
  band.addLineTo(at(along[1], across[1]));
  band.addLineTo(at(along[0], across[1]));
  band.close();
  return band;
}

}  // namespace

CGPath gradientRegion(const CGGradientPlacement& placement, CGRect visible) {
  const bool after = placement.options & kCGGradientDrawsAfterEndLocation;
  CGPath region;
  if (placement.radius > 0 && !after) {
    const double radius = placement.radius;
    region.addEllipseInRect(CGRectMake(placement.start.x - radius, placement.start.y - radius, 2 * radius, 2 * radius));
  } else if (placement.radius > 0) {
    region.addRect(visible);
  } else if (placement.start == placement.end) {
    if (after) region.addRect(visible);
  } else {
    region = bandRegion(placement, visible);
  }
  return region;
}

}  // namespace zelkon
