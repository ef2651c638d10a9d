#include <gtest/gtest.h>

#include <cmath>

#include "CoreImage/CIFilter.h"

namespace zelkon {
namespace {

TEST(CIExposureAdjust, HalfAStopBrightensByTheRootOfTwo) {
  EXPECT_NEAR(CIExposureAdjust{0.5}.factor(), 1.41421, 1e-5);
  EXPECT_NEAR(0.205 * CIExposureAdjust{0.5}.factor(), 0.2899, 5e-5);
  EXPECT_NEAR(0.2296 * CIExposureAdjust{0.5}.factor(), 0.3247, 5e-5);
  EXPECT_GT(0.82 * CIExposureAdjust{0.5}.factor(), 1);
  EXPECT_NEAR(0.55 * CIExposureAdjust{0.5}.factor(), 0.7778, 5e-5);
  EXPECT_EQ(CIExposureAdjust{0}.factor(), 1);
}

struct GaussianPoint {
  double t, weight;
};

class CIGaussianGradientWeight : public testing::TestWithParam<GaussianPoint> {};

TEST_P(CIGaussianGradientWeight, FollowsTheSmoothStep) {
  const CIGaussianGradient filter{{0, 0}, 158.925, {0, 0, 0, 0}, {0, 0, 0, 1}};
  EXPECT_NEAR(filter.colorAt({GetParam().t * 158.925, 0}).alpha, GetParam().weight, 1e-4);
}

INSTANTIATE_TEST_SUITE_P(WorkedPoints, CIGaussianGradientWeight,
                         testing::Values(GaussianPoint{0, 0}, GaussianPoint{0.6152, 0.6698},
                                         GaussianPoint{0.4863, 0.4795}, GaussianPoint{0.3970, 0.3477},
                                         GaussianPoint{0.4678, 0.4517}, GaussianPoint{0.9276, 0.9850},
                                         GaussianPoint{0.3211, 0.2431}, GaussianPoint{0.8811, 0.9609},
                                         GaussianPoint{0.4327, 0.3997}, GaussianPoint{1, 1}, GaussianPoint{3, 1}));

// The gloss of a pie of radius 81.5 around (150, 91.5): a shade above and to the right of it, a light below and to the
// left, drawn at opacities of 0.5 and 0.7.
struct GlossPoint {
  const char* name;
  CGPoint point;
  double shade, shadeAlpha, faintShade, light, lightAlpha, faintLight;
};

class GlossOfAPie : public testing::TestWithParam<GlossPoint> {};

TEST_P(GlossOfAPie, FadesWithTheDistanceFromItsCentres) {
  const GlossPoint& row = GetParam();
  constexpr double radius = 1.95 * 81.5;
  const CIGaussianGradient shade{{212.755, 166.48}, radius, {0, 0, 0, 0}, {0, 0, 0, 1}};
  const CIGaussianGradient light{{91.32, 45.86}, radius, {0, 0, 0, 0}, {1, 1, 1, 1}};
  const auto reached = [&](const CIGaussianGradient& filter) {
    return std::min(1.0, std::hypot(row.point.x - filter.inputCenter.x, row.point.y - filter.inputCenter.y) / radius);
  };
  EXPECT_NEAR(reached(shade), row.shade, 6e-5);
  EXPECT_NEAR(reached(light), row.light, 6e-5);
  EXPECT_NEAR(shade.colorAt(row.point).alpha, row.shadeAlpha, 6e-5);
  EXPECT_NEAR(light.colorAt(row.point).alpha, row.lightAlpha, 6e-5);
  EXPECT_NEAR(0.5 * shade.colorAt(row.point).alpha, row.faintShade, 6e-4);
  EXPECT_NEAR(0.7 * light.colorAt(row.point).alpha, row.faintLight, 6e-4);
}

INSTANTIATE_TEST_SUITE_P(
    Points, GlossOfAPie,
    testing::Values(GlossPoint{"Centre", {150, 91.5}, 0.6152, 0.6698, 0.335, 0.4678, 0.4517, 0.316},
                    GlossPoint{"Right", {231.5, 91.5}, 0.4863, 0.4795, 0.240, 0.9276, 0.9850, 0.690},
                    GlossPoint{"Left", {68.5, 91.5}, 1, 1, 0.5, 0.3211, 0.2431, 0.170},
                    GlossPoint{"Top", {150, 173}, 0.3970, 0.3477, 0.174, 0.8811, 0.9609, 0.673},
                    GlossPoint{"Bottom", {150, 10}, 1, 1, 0.5, 0.4327, 0.3997, 0.280}),
    [](const auto& row) { return row.param.name; });

TEST(CIGaussianGradient, ItsStopsFollowTheCurveWithinOneThousandth) {
  const CIGaussianGradient filter{{0, 0}, 1, {0, 0, 0, 0}, {1, 0.5, 0.25, 0.8}};
  const CGGradientRef gradient = filter.gradient();
  for (int i = 0; i <= 1000; ++i) {
    const double t = i / 1000.0;
    const RGBA exact = filter.colorAt({t, 0}), stops = gradient->colorAt(t);
    EXPECT_NEAR(stops.alpha, exact.alpha, 1e-3) << t;
    EXPECT_NEAR(stops.red * stops.alpha, exact.red * exact.alpha, 1e-3) << t;
    EXPECT_NEAR(stops.blue * stops.alpha, exact.blue * exact.alpha, 1e-3) << t;
  }
}

TEST(CIGaussianGradient, WithoutARadiusItIsTheOuterColour) {
  const CIGaussianGradient filter{{5, 5}, 0, {1, 0, 0, 1}, {0, 0, 1, 1}};
  EXPECT_EQ(filter.colorAt({5, 5}), (RGBA{0, 0, 1, 1}));
}

TEST(CIOverlayBlendMode, BlackDarkensAndWhiteLightens) {
  const auto over = [](double backdrop, double source) {
    return CIOverlayBlendMode::blend({backdrop, backdrop, backdrop, 1}, {source, source, source, 1}).red;
  };
  EXPECT_NEAR(over(0.205, 0), 0, 1e-12);
  EXPECT_NEAR(over(0.55, 0), 0.10, 1e-12);
  EXPECT_NEAR(over(0.82, 0), 0.64, 1e-12);
  EXPECT_NEAR(over(0.205, 1), 0.41, 1e-12);
  EXPECT_NEAR(over(0.55, 1), 1, 1e-12);
  EXPECT_NEAR(over(0.82, 1), 1, 1e-12);
}

TEST(CIOverlayBlendMode, SourceAlphaWeighsTheMix) {
  const RGBA mixed = CIOverlayBlendMode::blend({0.82, 0.82, 0.82, 1}, {0, 0, 0, 0.335});
  EXPECT_NEAR(mixed.green, 0.7597, 1e-4);
  EXPECT_NEAR(mixed.alpha, 1, 1e-12);
}

TEST(CIOverlayBlendMode, OverNothingTheSourceShowsAsItIs) {
  const RGBA mixed = CIOverlayBlendMode::blend({0, 0, 0, 0}, {0.3, 0.6, 0.9, 0.5});
  EXPECT_NEAR(mixed.red, 0.3, 1e-12);
  EXPECT_NEAR(mixed.blue, 0.9, 1e-12);
  EXPECT_NEAR(mixed.alpha, 0.5, 1e-12);
  EXPECT_EQ(CIOverlayBlendMode::blend({0, 0, 0, 0}, {1, 1, 1, 0}).alpha, 0);
}

TEST(CIFilter, KnowsItsName) {
  EXPECT_STREQ(CIFilterName(*CIFilterCreate(CIExposureAdjust{0.5})), "CIExposureAdjust");
  EXPECT_STREQ(CIFilterName(*CIFilterCreate(CIGaussianGradient{})), "CIGaussianGradient");
  EXPECT_STREQ(CIFilterName(*CIFilterCreate(CIOverlayBlendMode{})), "CIOverlayBlendMode");
}

}  // namespace
}  // namespace zelkon
