#include "CoreImage/CIFilter.h"

#include <algorithm>
#include <cmath>

namespace zelkon {

namespace {

double overlay(double backdrop, double source) {
  return backdrop <= 0.5 ? 2 * backdrop * source : 1 - 2 * (1 - backdrop) * (1 - source);
}

double smoothstep(double t) { return t * t * (3 - 2 * t); }

// Mixes as premultiplied colours. Where nothing is left to see, the plain components are those of the colour that
// comes into sight next to it, so that stops on either side interpolate without a tint.
RGBA mixPremultiplied(const RGBA& a, const RGBA& b, double w) {
  const double weightA = (1 - w) * a.alpha, weightB = w * b.alpha;
  const double alpha = weightA + weightB;
  if (!(alpha > 0)) {
    RGBA clear = a.alpha > 0 ? a : b;
    clear.alpha = 0;
    return clear;
  }
  const auto mix = [&](double x, double y) { return (x * weightA + y * weightB) / alpha; };
  return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue), alpha};
}

// Between stops the curve is taken as straight: with this many the error stays below 1/1000 in every component.
constexpr int gradientSegments = 64;

}  // namespace

double CIExposureAdjust::factor() const { return std::exp2(inputEV); }

RGBA CIGaussianGradient::colorAt(CGPoint p) const {
  const double distance = std::hypot(p.x - inputCenter.x, p.y - inputCenter.y);
  const double t = inputRadius > 0 ? std::min(1.0, distance / inputRadius) : 1;
  return mixPremultiplied(inputColor0, inputColor1, smoothstep(t));
}

CGGradientRef CIGaussianGradient::gradient() const {
  std::vector<RGBA> colors;
  std::vector<double> locations;
  for (int i = 0; i <= gradientSegments; ++i) {
    const double t = static_cast<double>(i) / gradientSegments;
    colors.push_back(mixPremultiplied(inputColor0, inputColor1, smoothstep(t)));
    locations.push_back(t);
  }
  return std::make_shared<const CGGradient>(colors, locations);
}

RGBA CIOverlayBlendMode::blend(const RGBA& backdrop, const RGBA& source) {
  const double alpha = source.alpha + backdrop.alpha - source.alpha * backdrop.alpha;
  if (!(alpha > 0)) return {0, 0, 0, 0};
  const auto component = [&](double cb, double cs) {
    const double premultiplied = (1 - backdrop.alpha) * source.alpha * cs + (1 - source.alpha) * backdrop.alpha * cb +
                                 source.alpha * backdrop.alpha * overlay(cb, cs);
    return premultiplied / alpha;
  };
  return {component(backdrop.red, source.red), component(backdrop.green, source.green),
          component(backdrop.blue, source.blue), alpha};
}

const char* CIFilterName(const CIFilter& filter) {
  struct Name {
    const char* operator()(const CIExposureAdjust&) const { return "CIExposureAdjust"; }
    const char* operator()(const CIGaussianGradient&) const { return "CIGaussianGradient"; }
    const char* operator()(const CIOverlayBlendMode&) const { return "CIOverlayBlendMode"; }
  };
  return std::visit(Name{}, filter);
}

}  // namespace zelkon
