// The three filters that layers use, as immutable values attached to them. They work on plain, gamma-encoded
// components.
#pragma once

#include <memory>
#include <variant>

#include "CoreGraphics/CGColor.h"
#include "CoreGraphics/CGGradient.h"

namespace zelkon {

// "CIExposureAdjust": rgb' = rgb * 2^EV, clamped, alpha unchanged.
struct CIExposureAdjust {
  double inputEV = 0;
  double factor() const;  // 2^EV
  friend bool operator==(const CIExposureAdjust&, const CIExposureAdjust&) = default;
};

// "CIGaussianGradient", a generator: with t = min(1, distance / radius), weight w = t^2 (3 - 2t), colour0 (1-w) +
// colour1 w. The centre is in points of the layer's bounds space, y up.
struct CIGaussianGradient {
  CGPoint inputCenter;
  double inputRadius = 0;
  RGBA inputColor0, inputColor1;
  RGBA colorAt(CGPoint p) const;
  // The same as stops of a radial gradient, exact to less than 1/1000.
  CGGradientRef gradient() const;
  friend bool operator==(const CIGaussianGradient&, const CIGaussianGradient&) = default;
};

// "CIOverlayBlendMode": B = 2 Cb Cs for Cb <= 1/2, else 1 - 2 (1-Cb)(1-Cs).
struct CIOverlayBlendMode {
  static RGBA blend(const RGBA& backdrop, const RGBA& source);  // plain components in and out
  friend bool operator==(const CIOverlayBlendMode&, const CIOverlayBlendMode&) = default;
};

using CIFilter = std::variant<CIExposureAdjust, CIGaussianGradient, CIOverlayBlendMode>;
using CIFilterRef = std::shared_ptr<const CIFilter>;
template <typename Filter>
CIFilterRef CIFilterCreate(Filter filter) {
  return std::make_shared<const CIFilter>(std::move(filter));
}
const char* CIFilterName(const CIFilter& filter);  // "CIExposureAdjust", ...

}  // namespace zelkon
