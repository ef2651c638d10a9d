// Colour stops along a line or a radius.
#pragma once

#include <memory>
#include <vector>

#include "CoreGraphics/CGColor.h"
#include "CoreGraphics/CGGeometry.h"

namespace zelkon {

struct CGGradientStop {
  double location;  // 0...1
  RGBA color;
  friend bool operator==(const CGGradientStop&, const CGGradientStop&) = default;
};

// Stops sorted by location (equal locations keep their order). Plain components, alpha too, are interpolated.
class CGGradient {
 public:
  // No locations: evenly spread over 0...1. Otherwise one per colour, in any order.
  explicit CGGradient(const std::vector<RGBA>& colors, const std::vector<double>& locations = {});
  const std::vector<CGGradientStop>& stops() const { return stops_; }
  RGBA colorAt(double t) const;  // the nearest stop's colour outside the stops
  friend bool operator==(const CGGradient&, const CGGradient&) = default;

 private:
  std::vector<CGGradientStop> stops_;
};
using CGGradientRef = std::shared_ptr<const CGGradient>;

enum CGGradientDrawingOptions : unsigned {
  kCGGradientDrawsNothingOutside = 0,
  kCGGradientDrawsBeforeStartLocation = 1,
  kCGGradientDrawsAfterEndLocation = 2,
};

// Where a gradient is laid: along start...end, or (radius > 0) from the centre `start` outwards to the radius.
struct CGGradientPlacement {
  CGPoint start, end;
  double radius = 0;
  unsigned options = 0;
  friend bool operator==(const CGGradientPlacement&, const CGGradientPlacement&) = default;
};

}  // namespace zelkon
