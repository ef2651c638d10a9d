#include <cmath>

#include "Cairo/CairoFixture.h"

namespace zelkon {
namespace {

using CairoRadial = CairoFixture;

CGGradientRef fading() {
  return std::make_shared<const CGGradient>(std::vector<RGBA>{{0, 0, 0, 1}, {0, 0, 0, 0.2}}, std::vector<double>{0, 1});
}

// Of the middle of a pixel, from the top left corner of a bitmap of that height.
double fadedAlpha(int column, int row, int height, CGPoint center, double radius) {
  const double distance = std::hypot(column + 0.5 - center.x, height - row - 0.5 - center.y);
  return 1 - 0.8 * std::min(1.0, distance / radius);
}

TEST_F(CairoRadial, AGradientKeepsWhatLiesBeneathAsFarAsItsAlpha) {
  constexpr int width = 33, height = 21;
  constexpr CGPoint center{12, 9};
  constexpr double radius = 17;
  start(width, height);
  context->setFillColor({0.8, 0.4, 0.2, 1});
  context->fillRect(CGRectMake(0, 0, 30, height));
  context->clipToRect(CGRectMake(2, 0, width - 2, height - 1));
  context->setBlendMode(CGBlendMode::destinationIn);
  context->drawRadialGradient(fading(), center, radius,
                              kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation);
  for (int row = 0; row < height; ++row) {
    for (int column = 0; column < width; ++column) {
      const bool isFilled = column < 30, isClipped = column < 2 || row == 0;
      const double kept = !isFilled ? 0 : isClipped ? 1 : fadedAlpha(column, row, height, center, radius);
      const auto byte = [&](double component) { return static_cast<int>(std::lround(component * kept * 255)); };
      expectNear(pixel(column, row), {byte(0.8), byte(0.4), byte(0.2), byte(1)}, 1);
    }
  }
}

}  // namespace
}  // namespace zelkon
