#include <algorithm>
#include <random>
#include <vector>

#include "Backends/Cairo/OverlayPixels.h"
#include "Cairo/CairoFixture.h"

namespace zelkon {
namespace {

// Compositing and Blending Level 1: the blend function of two plain components, and what is left of both sides.
double overlay(double beneath, double source) {
  return beneath <= 0.5 ? source * 2 * beneath : source + (2 * beneath - 1) - source * (2 * beneath - 1);
}

double mixed(double beneath, double beneathAlpha, double source, double sourceAlpha) {
  const double both = sourceAlpha > 0 && beneathAlpha > 0
                          ? sourceAlpha * beneathAlpha * overlay(beneath / beneathAlpha, source / sourceAlpha)
                          : 0;
  return (1 - beneathAlpha) * source + (1 - sourceAlpha) * beneath + both;
}

uint32_t expected(uint32_t beneath, uint32_t source) {
  const double beneathAlpha = (beneath >> 24) / 255.0, sourceAlpha = (source >> 24) / 255.0;
  const double alpha = sourceAlpha + beneathAlpha - sourceAlpha * beneathAlpha;
  auto pixel = static_cast<uint32_t>(std::lround(alpha * 255)) << 24;
  for (const int shift : {16, 8, 0}) {
    const double component =
        mixed((beneath >> shift & 255) / 255.0, beneathAlpha, (source >> shift & 255) / 255.0, sourceAlpha);
    pixel |= static_cast<uint32_t>(std::lround(component * 255)) << shift;
  }
  return pixel;
}

class Noise {
 public:
  uint32_t premultiplied() {
    const uint32_t bits = static_cast<uint32_t>(random_());
    const uint32_t kind = static_cast<uint32_t>(random_()) % 4;
    const uint32_t alpha = kind == 0 ? 0 : kind == 1 ? 255 : bits >> 24;
    return alpha << 24 | (bits >> 16 & 255) % (alpha + 1) << 16 | (bits >> 8 & 255) % (alpha + 1) << 8 |
           (bits & 255) % (alpha + 1);
  }

 private:
  std::mt19937 random_{5};
};

TEST(OverlayPixels, AreTheFormulaRounded) {
  Noise noise;
  for (size_t count = 0; count < 600; ++count) {
    std::vector<uint32_t> source(count), beneath(count + 1), results(count + 1);
    std::generate(source.begin(), source.end(), [&] { return noise.premultiplied(); });
    std::generate(beneath.begin(), beneath.end(), [&] { return noise.premultiplied(); });
    for (size_t i = 0; i < count; ++i) results[i] = expected(beneath[i], source[i]);
    results[count] = beneath[count];
    overlayPixels(source.data(), beneath.data(), count);
    ASSERT_EQ(beneath, results) << count;
  }
}

using CairoOverlay = CairoFixture;

// A translucent picture over a grey ground: where it lies, and nowhere else.
TEST_F(CairoOverlay, AnImageOnThePixelGridStaysInItsPlaceAndInTheClip) {
  const std::shared_ptr<Surface> image = device.makeSurface(4, 4);
  {
    const auto drawing = device.contextForSurface(image, 1);
    drawing->setFillColor({1, 0, 0, 0.5});
    drawing->fillRect(CGRectMake(0, 0, 4, 4));
    drawing->flush();
  }
  start(10, 10);
  context->setFillColor({0.5, 0.5, 0.5, 1});
  context->fillRect(CGRectMake(0, 0, 10, 10));
  context->clipToRect(CGRectMake(3, 0, 7, 10));
  context->translateCTM(1, 0);
  context->setBlendMode(CGBlendMode::overlay);
  context->drawImage(CGRectMake(1, 1, 4, 4), std::make_shared<const CGImage>(image));
  const Pixel ground{128, 128, 128, 255};
  // The upper and the lower half of the way between the ground and its overlay with full red.
  const Pixel mixed{192, 65, 65, 255};
  for (int row = 0; row < 10; ++row) {
    for (int column = 0; column < 10; ++column) {
      const bool isCovered = column >= 3 && column < 6 && row >= 5 && row < 9;
      expectNear(pixel(column, row), isCovered ? mixed : ground, 1);
    }
  }
}

TEST_F(CairoOverlay, AGroupIsMixedLikeAnImage) {
  start(8, 8);
  context->setFillColor({0.2, 0.4, 0.8, 1});
  context->fillRect(CGRectMake(0, 0, 8, 8));
  CGGroupEffects effects;
  effects.blend = CGBlendMode::overlay;
  context->beginGroup(effects, CGRectMake(2, 2, 3, 3));
  context->setFillColor({1, 1, 1, 1});
  context->fillRect(CGRectMake(2, 2, 3, 3));
  context->endGroup();
  expectNear(pixel(1, 4), {51, 102, 204, 255}, 1);
  expectNear(pixel(2, 5), {102, 204, 255, 255}, 1);
  expectNear(pixel(4, 3), {102, 204, 255, 255}, 1);
  expectNear(pixel(5, 3), {51, 102, 204, 255}, 1);
  expectNear(pixel(4, 2), {51, 102, 204, 255}, 1);
}

// A clip along a slope covers pixels in part, which the mix then covers as far.
TEST_F(CairoOverlay, AClipThroughPixelsKeepsItsSoftEdge) {
  start(4, 4);
  fillWhite(4, 4);
  context->setFillColor({0.5, 0.5, 0.5, 1});
  context->fillRect(CGRectMake(0, 0, 4, 4));
  context->clipToRect(CGRectMake(0, 0, 1.5, 4));
  CGGroupEffects effects;
  effects.blend = CGBlendMode::overlay;
  context->beginGroup(effects, CGRectMake(0, 0, 4, 4));
  context->setFillColor({1, 1, 1, 1});
  context->fillRect(CGRectMake(0, 0, 4, 4));
  context->endGroup();
  EXPECT_GE(pixel(0, 0).red, 254);
  expectNear(pixel(1, 0), {192, 192, 192, 255}, 2);
  expectNear(pixel(2, 0), {128, 128, 128, 255}, 1);
}

}  // namespace
}  // namespace zelkon
