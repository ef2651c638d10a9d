#include "Cairo/CairoFixture.h"

namespace zelkon {
namespace {

class CairoEffects : public CairoFixture {
 protected:
  // A group filled with one colour over all of the bitmap.
  void fillInGroup(const CGGroupEffects& effects, const RGBA& color, CGRect rect) {
    context->beginGroup(effects, rect);
    context->setFillColor(color);
    context->fillRect(rect);
    context->endGroup();
  }
};

// ---- gradients ----

TEST_F(CairoEffects, GradientsBetweenDifferentAlphasInterpolatePlainColours) {
  start(101, 2);
  const auto gradient = std::make_shared<const CGGradient>(std::vector<RGBA>{{1, 1, 1, 0}, {0.66, 0.79, 0.16, 1}});
  context->drawLinearGradient(gradient, CGPointMake(0, 0), CGPointMake(101, 0), 0);
  // (0.83, 0.895, 0.58) at alpha 0.5, premultiplied.
  expectNear(pixel(50, 0), {106, 114, 74, 128}, 1);
  for (int column : {10, 25, 40, 60, 75, 90}) {
    const double t = (column + 0.5) / 101;
    auto premultiplied = [t](double from, double to) {
      return static_cast<int>(std::lround(255 * t * (from + (to - from) * t)));
    };
    expectNear(pixel(column, 0),
               {premultiplied(1, 0.66), premultiplied(1, 0.79), premultiplied(1, 0.16), premultiplied(1, 1)}, 1);
  }
}

TEST_F(CairoEffects, WithoutOptionsALinearGradientLeavesTheRestAlone) {
  start(10, 10);
  const auto gradient = std::make_shared<const CGGradient>(std::vector<RGBA>{{0, 0, 0, 1}, {1, 1, 1, 1}});
  context->drawLinearGradient(gradient, CGPointMake(0, 3), CGPointMake(0, 7), 0);
  EXPECT_EQ(pixel(5, 9 - 2).alpha, 0);
  EXPECT_EQ(pixel(5, 9 - 3).alpha, 255);
  EXPECT_EQ(pixel(5, 9 - 6).alpha, 255);
  EXPECT_EQ(pixel(5, 9 - 7).alpha, 0);
  EXPECT_LT(pixel(5, 9 - 3).red, pixel(5, 9 - 6).red);
}

TEST_F(CairoEffects, OptionsExtendALinearGradientWithItsEndColours) {
  const auto gradient = std::make_shared<const CGGradient>(std::vector<RGBA>{{0, 0, 0, 1}, {1, 1, 1, 1}});
  start(10, 10);
  context->drawLinearGradient(gradient, CGPointMake(0, 3), CGPointMake(0, 7), kCGGradientDrawsBeforeStartLocation);
  EXPECT_EQ(pixel(5, 9), (Pixel{0, 0, 0, 255}));
  EXPECT_EQ(pixel(5, 0).alpha, 0);
  start(10, 10);
  context->drawLinearGradient(gradient, CGPointMake(0, 3), CGPointMake(0, 7), kCGGradientDrawsAfterEndLocation);
  EXPECT_EQ(pixel(5, 0), (Pixel{255, 255, 255, 255}));
  EXPECT_EQ(pixel(5, 9).alpha, 0);
}

TEST_F(CairoEffects, BeforeTheFirstStopItsColourHolds) {
  start(100, 1);
  const auto gradient = std::make_shared<const CGGradient>(
      std::vector<RGBA>{{1, 1, 1, 1}, {1, 1, 1, 1}, {0.9, 0.9, 0.9, 1}}, std::vector<double>{1, 0.3, 0});
  context->drawLinearGradient(gradient, CGPointMake(0, 0), CGPointMake(100, 0), 0);
  EXPECT_NEAR(redAt(15, 0), 0.9 + 0.1 * 0.155 / 0.3, 1.0 / 255);
  EXPECT_NEAR(redAt(60, 0), 1, 1e-9);
}

TEST_F(CairoEffects, RadialGradientsRunFromTheCentreAndEndAtTheRadiusUnlessExtended) {
  const auto gradient = std::make_shared<const CGGradient>(std::vector<RGBA>{{0, 0, 0, 1}, {1, 1, 1, 1}});
  start(21, 21);
  context->drawRadialGradient(gradient, CGPointMake(10.5, 10.5), 8, 0);
  EXPECT_NEAR(redAt(10, 10), 0, 0.02);
  EXPECT_NEAR(redAt(14, 10), 0.5, 0.01);
  EXPECT_EQ(pixel(20, 10).alpha, 0);
  start(21, 21);
  context->drawRadialGradient(gradient, CGPointMake(10.5, 10.5), 8, kCGGradientDrawsAfterEndLocation);
  EXPECT_EQ(pixel(0, 0), (Pixel{255, 255, 255, 255}));
}

// ---- shadows ----

TEST_F(CairoEffects, AShadowFallsOffBesideItsCaster) {
  start(60, 60);
  context->setShadow(CGSizeMake(0, 0), 2);
  context->fillRect(CGRectMake(-20, -20, 50, 100));
  EXPECT_EQ(alphaAt(29, 30), 1);
  // The tail of a gaussian of sigma 1, a third of it, at the middles of the first pixels outside.
  EXPECT_NEAR(alphaAt(30, 30), std::erfc(0.5 / std::sqrt(2)) / 2 / 3, 0.01);
  EXPECT_NEAR(alphaAt(31, 30), std::erfc(1.5 / std::sqrt(2)) / 2 / 3, 0.01);
  EXPECT_EQ(alphaAt(36, 30), 0);
}

TEST_F(CairoEffects, AShadowIsSeenWhereItsCasterIsMovedAway) {
  start(80, 40);
  // The caster, far off to the left of the bitmap, throws its shadow's edge onto x = 40.5.
  context->setShadow(CGSizeMake(200, 0), 2);
  context->fillRect(CGRectMake(-300, -100, 140.5, 300));
  const double expected[] = {0.326, 0.280, 0.167, 0.053, 0.008};
  for (int i = 0; i < 5; ++i) EXPECT_NEAR(alphaAt(38 + i, 20), expected[i], 0.01) << i - 2;
}

TEST_F(CairoEffects, AWiderShadowHasTheWidthItsSigmaSays) {
  start(80, 40, 2);
  CGGroupEffects effects;
  effects.shadow = CGShadow{CGSizeMake(200, 0), 2.5, {0, 0, 0, 0.2}};
  fillInGroup(effects, {0, 0, 0, 1}, CGRectMake(-300, -100, 140.25, 300));
  const double expected[] = {0.195, 0.168, 0.100, 0.032, 0.005};
  for (int i = 0; i < 5; ++i) EXPECT_NEAR(alphaAt(70 + 5 * i, 40), expected[i], 0.006) << i;
}

TEST_F(CairoEffects, AShadowWithoutBlurIsACopyMovedUpAndTinted) {
  start(20, 20);
  context->setShadowWithColor(CGSizeMake(5, 3), 0, CGColorCreateGenericRGB(1, 0, 0, 0.5));
  context->fillRect(CGRectMake(2, 2, 4, 4));
  EXPECT_EQ(pixel(3, 16), (Pixel{0, 0, 0, 255}));
  expectNear(pixel(9, 12), {128, 0, 0, 128}, 1);
  EXPECT_EQ(pixel(11, 12).alpha, 0);
  EXPECT_EQ(pixel(9, 10).alpha, 0);
}

TEST_F(CairoEffects, TheOffsetOfAShadowDoesNotFollowTheTransform) {
  start(20, 20);
  context->setShadowWithColor(CGSizeMake(5, 0), 0, kCGColorBlack());
  context->scaleCTM(2, 2);
  context->setFillColor({1, 0, 0, 1});
  context->fillRect(CGRectMake(1, 1, 1, 1));
  EXPECT_EQ(pixel(3, 17), (Pixel{255, 0, 0, 255}));
  EXPECT_EQ(pixel(7, 17), (Pixel{0, 0, 0, 255}));
  EXPECT_EQ(pixel(9, 17).alpha, 0);
}

TEST_F(CairoEffects, ALayerCastsOneShadowWhichAClipInsideDoesNotCut) {
  start(30, 30);
  context->setShadowWithColor(CGSizeMake(8, 0), 0, CGColorCreateGenericGray(0, 0.5));
  context->beginTransparencyLayer();
  context->clipToRect(CGRectMake(5, 5, 10, 10));
  context->setFillColor({1, 1, 1, 1});
  context->fillRect(CGRectMake(0, 0, 30, 30));
  context->fillRect(CGRectMake(0, 0, 30, 30));
  context->endTransparencyLayer();
  EXPECT_EQ(pixel(7, 20), (Pixel{255, 255, 255, 255}));
  expectNear(pixel(20, 20), {0, 0, 0, 128}, 1);
  EXPECT_EQ(pixel(25, 20).alpha, 0);
}

TEST_F(CairoEffects, TheClipOfTheBeginningCutsTheShadow) {
  start(30, 30);
  context->clipToRect(CGRectMake(0, 0, 18, 30));
  context->setShadowWithColor(CGSizeMake(8, 0), 0, kCGColorBlack());
  context->setFillColor({1, 0, 0, 1});
  context->fillRect(CGRectMake(5, 5, 10, 10));
  EXPECT_EQ(pixel(17, 20), (Pixel{0, 0, 0, 255}));
  EXPECT_EQ(pixel(18, 20).alpha, 0);
}

// ---- groups ----

TEST_F(CairoEffects, AGroupIsFadedAsAWhole) {
  start(4, 4);
  context->setAlpha(0.5);
  context->beginTransparencyLayer();
  context->fillRect(CGRectMake(0, 0, 4, 4));
  context->fillRect(CGRectMake(0, 0, 4, 4));
  context->endTransparencyLayer();
  expectNear(pixel(1, 1), {0, 0, 0, 128}, 1);
}

TEST_F(CairoEffects, BlackAndWhiteOverlayDarkenAndLighten) {
  const struct {
    double backdrop, source, alpha, result;
  } rows[] = {{0.205, 0, 1, 0}, {0.55, 0, 1, 0.10}, {0.82, 0, 1, 0.64},      {0.205, 1, 1, 0.41},
              {0.55, 1, 1, 1},  {0.82, 1, 1, 1},    {0.82, 0, 0.335, 0.7597}};
  for (const auto& row : rows) {
    start(2, 2);
    context->setFillColor({row.backdrop, row.backdrop, row.backdrop, 1});
    context->fillRect(CGRectMake(0, 0, 2, 2));
    CGGroupEffects effects;
    effects.blend = CGBlendMode::overlay;
    fillInGroup(effects, {row.source, row.source, row.source, row.alpha}, CGRectMake(0, 0, 2, 2));
    EXPECT_NEAR(redAt(0, 0), row.result, 1.6 / 255) << row.backdrop << " under " << row.source;
  }
}

TEST_F(CairoEffects, OverlayOnNothingIsTheSourceItself) {
  start(2, 2);
  CGGroupEffects effects;
  effects.blend = CGBlendMode::overlay;
  fillInGroup(effects, {0.2, 0.4, 0.6, 1}, CGRectMake(0, 0, 2, 2));
  expectNear(pixel(0, 0), {51, 102, 153, 255}, 1);
}

TEST_F(CairoEffects, DestinationInKeepsOnlyWhatTheGroupCovers) {
  start(4, 4);
  fillWhite(4, 4);
  CGGroupEffects effects;
  effects.blend = CGBlendMode::destinationIn;
  fillInGroup(effects, {1, 0, 0, 0.5}, CGRectMake(0, 0, 2, 4));
  expectNear(pixel(0, 0), {128, 128, 128, 128}, 1);
  EXPECT_EQ(pixel(3, 0), (Pixel{0, 0, 0, 0}));
}

TEST_F(CairoEffects, CopyReplacesWithinTheBoundsOfTheGroup) {
  start(4, 4);
  fillWhite(4, 4);
  CGGroupEffects effects;
  effects.blend = CGBlendMode::copy;
  fillInGroup(effects, {1, 0, 0, 0.5}, CGRectMake(0, 0, 2, 4));
  expectNear(pixel(0, 0), {128, 0, 0, 128}, 1);
  EXPECT_EQ(pixel(3, 0), (Pixel{255, 255, 255, 255}));
}

TEST_F(CairoEffects, PlusLighterAdds) {
  start(2, 2);
  context->setFillColor({0.25, 0.5, 0, 0.5});
  context->fillRect(CGRectMake(0, 0, 2, 2));
  CGGroupEffects effects;
  effects.blend = CGBlendMode::plusLighter;
  fillInGroup(effects, {0.25, 0.5, 0, 0.5}, CGRectMake(0, 0, 2, 2));
  expectNear(pixel(0, 0), {64, 128, 0, 255}, 2);
}

TEST_F(CairoEffects, BrightnessRaisesPlainColoursAndStopsAtOne) {
  start(2, 2);
  CGGroupEffects effects;
  effects.brightness = std::exp2(0.5);
  fillInGroup(effects, {0.205, 0.55, 0.82, 1}, CGRectMake(0, 0, 2, 2));
  EXPECT_NEAR(redAt(0, 0), 0.2899, 1.0 / 255);
  EXPECT_NEAR(pixel(0, 0).green / 255.0, 0.7778, 1.0 / 255);
  EXPECT_EQ(pixel(0, 0).blue, 255);
  start(2, 2);
  fillInGroup(effects, {0.82, 0, 0, 0.5}, CGRectMake(0, 0, 2, 2));
  expectNear(pixel(0, 0), {128, 0, 0, 128}, 1);
}

TEST_F(CairoEffects, GroupsNest) {
  start(4, 4);
  CGGroupEffects half;
  half.alpha = 0.5;
  context->beginGroup(half, CGRectMake(0, 0, 4, 4));
  context->translateCTM(1, 0);
  fillInGroup(half, {0, 0, 0, 1}, CGRectMake(0, 0, 1, 4));
  context->endGroup();
  expectNear(pixel(1, 1), {0, 0, 0, 64}, 1);
  EXPECT_EQ(pixel(0, 1).alpha, 0);
  context->setFillColor({0, 0, 0, 1});
  context->fillRect(CGRectMake(0, 0, 1, 4));
  EXPECT_EQ(pixel(0, 1).alpha, 255);
}

TEST_F(CairoEffects, AGroupTooLargeIsLostWithoutHarmToWhatFollows) {
  start(4, 4);
  CGGroupEffects effects;
  effects.shadow = CGShadow{CGSizeMake(1e12, -1e12), 1e9, {0, 0, 0, 1}};
  fillInGroup(effects, {1, 0, 0, 1}, CGRectMake(-1e9, -1e9, 2e9, 2e9));
  context->fillRect(CGRectMake(0, 0, 4, 4));
  EXPECT_EQ(pixel(1, 1).alpha, 255);
}

// ---- images ----

CGImageRef cornersImage(double alpha = 1) {
  auto bitmap =
      CGBitmapContext::create(nullptr, 4, 4, 0, CGColorSpaceGenericRGB(), CGImageAlphaInfo::premultipliedLast);
  bitmap->setFillColor({1, 0, 0, alpha});
  bitmap->fillRect(CGRectMake(0, 0, 2, 2));
  bitmap->setFillColor({0, 0, 1, alpha});
  bitmap->fillRect(CGRectMake(2, 2, 2, 2));
  return bitmap->createImage();
}

TEST_F(CairoEffects, ImagesStandUprightAtEitherScale) {
  for (double scale : {1.0, 2.0}) {
    start(8, 8, scale);
    context->drawImage(CGRectMake(2, 2, 4, 4), cornersImage());
    const int s = static_cast<int>(scale);
    EXPECT_EQ(pixel(2 * s, 6 * s - 1), (Pixel{255, 0, 0, 255})) << scale;
    EXPECT_EQ(pixel(6 * s - 1, 2 * s), (Pixel{0, 0, 255, 255})) << scale;
    EXPECT_EQ(pixel(2 * s, 2 * s).alpha, 0) << scale;
    EXPECT_EQ(pixel(2 * s - 1, 6 * s - 1).alpha, 0) << scale;
  }
}

TEST_F(CairoEffects, AStretchedCheapRecordingStaysSharp) {
  start(16, 16);
  context->drawImage(CGRectMake(0, 0, 16, 16), cornersImage());
  EXPECT_EQ(pixel(7, 15), (Pixel{255, 0, 0, 255}));
  EXPECT_EQ(pixel(8, 15).alpha, 0);
  EXPECT_EQ(pixel(8, 7), (Pixel{0, 0, 255, 255}));
}

TEST_F(CairoEffects, AStretchedDecodedPictureFillsItsRectangleToTheEdge) {
  start(2, 2);
  fillWhite(2, 2);
  context->flush();
  const auto image = std::make_shared<const CGImage>(surface);
  start(20, 20);
  context->drawImage(CGRectMake(5, 5, 10, 10), image);
  EXPECT_EQ(pixel(5, 5), (Pixel{255, 255, 255, 255}));
  EXPECT_EQ(pixel(14, 14), (Pixel{255, 255, 255, 255}));
  EXPECT_EQ(pixel(4, 5).alpha, 0);
  EXPECT_EQ(pixel(15, 14).alpha, 0);
}

TEST_F(CairoEffects, AnImageIsFadedByTheContextsAlpha) {
  for (double side : {4.0, 8.0}) {
    start(8, 8);
    context->setAlpha(0.5);
    context->drawImage(CGRectMake(0, 0, side, side), cornersImage());
    expectNear(pixel(0, 7), {128, 0, 0, 128}, 1);
  }
}

TEST_F(CairoEffects, AnImageTooLargeForPixelsIsReplayed) {
  auto bitmap =
      CGBitmapContext::create(nullptr, 20000, 4, 0, CGColorSpaceGenericRGB(), CGImageAlphaInfo::premultipliedLast);
  ASSERT_TRUE(bitmap);
  bitmap->clipToRect(CGRectMake(0, 0, 4, 4));
  bitmap->setFillColor({1, 0, 0, 1});
  bitmap->fillRect(CGRectMake(0, 0, 20000, 4));
  start(8, 4, 2);
  context->drawImage(CGRectMake(0, 0, 20000, 4), bitmap->createImage());
  EXPECT_EQ(pixel(0, 0), (Pixel{255, 0, 0, 255}));
  EXPECT_EQ(pixel(8, 0).alpha, 0);
}

}  // namespace
}  // namespace zelkon
