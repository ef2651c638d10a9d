#include <gtest/gtest.h>

#include <limits>

#include "CoreGraphics/CGColor.h"
#include "CoreGraphics/CGGradient.h"
#include "CoreGraphics/FontFace.h"
#include "Foundation/NSException.h"

namespace zelkon {
namespace {

void expectNear(RGBA a, RGBA b) {
  EXPECT_NEAR(a.red, b.red, 1e-12);
  EXPECT_NEAR(a.green, b.green, 1e-12);
  EXPECT_NEAR(a.blue, b.blue, 1e-12);
  EXPECT_NEAR(a.alpha, b.alpha, 1e-12);
}

TEST(CGColor, CountsAlphaAmongItsComponents) {
  const CGColorRef rgb = CGColorCreateGenericRGB(0.1, 0.2, 0.3, 0.4);
  EXPECT_EQ(rgb->numberOfComponents(), 4);
  EXPECT_EQ(rgb->components(), (std::vector<double>{0.1, 0.2, 0.3, 0.4}));
  EXPECT_EQ(rgb->alpha(), 0.4);
  const CGColorRef gray = CGColorCreateGenericGray(0.5, 0.8);
  EXPECT_EQ(gray->numberOfComponents(), 2);
  EXPECT_EQ(gray->rgba(), (RGBA{0.5, 0.5, 0.5, 0.8}));
  EXPECT_EQ(CGColor(CGColorSpaceCalibratedWhite(), {0.3, 1}).numberOfComponents(), 2);
}

TEST(CGColor, WrongNumberOfComponentsRaises) {
  EXPECT_THROW(CGColor(CGColorSpaceGenericGray(), {1, 1, 1, 1}), NSException);
  EXPECT_THROW(CGColor(CGColorSpaceGenericRGB(), {1, 1}), NSException);
  EXPECT_THROW(CGColor(nullptr, {1, 1}), NSException);
}

TEST(CGColor, EqualityNeedsTheSameSpace) {
  EXPECT_EQ(*CGColorCreateGenericRGB(1, 0, 0, 1), *CGColorCreateGenericRGB(1, 0, 0, 1));
  EXPECT_FALSE(*CGColorCreateGenericRGB(1, 0, 0, 1) == *CGColorCreateDeviceRGB(1, 0, 0, 1));
  EXPECT_FALSE(*CGColorCreateGenericRGB(1, 0, 0, 1) == *CGColorCreateGenericRGB(1, 0, 0, 0.5));
}

TEST(CGColor, ConstantsAreGenericGrays) {
  EXPECT_EQ(kCGColorBlack()->components(), (std::vector<double>{0, 1}));
  EXPECT_EQ(kCGColorWhite()->components(), (std::vector<double>{1, 1}));
  EXPECT_EQ(kCGColorClear()->components(), (std::vector<double>{0, 0}));
  EXPECT_EQ(kCGColorClear()->colorSpace()->name, "GenericGray");
}

TEST(CGGradient, SpreadsColoursEvenlyWithoutLocations) {
  const CGGradient gradient({{0, 0, 0, 1}, {0.5, 0, 0, 1}, {1, 0, 0, 1}});
  EXPECT_EQ(gradient.stops()[1].location, 0.5);
  EXPECT_EQ(gradient.stops()[2].location, 1);
}

TEST(CGGradient, SortsColoursWithTheirLocations) {
  const RGBA red{1, 0, 0, 1}, green{0, 1, 0, 1}, blue{0, 0, 1, 1};
  const CGGradient reversed({red, green, blue}, {1, 0.5, 0});
  EXPECT_EQ(reversed.colorAt(0), blue);
  EXPECT_EQ(reversed.colorAt(0.5), green);
  EXPECT_EQ(reversed.colorAt(1), red);
  const CGGradient late({red, green, blue}, {1, 0.8, 0.5});
  EXPECT_EQ(late.colorAt(0), blue);
  EXPECT_EQ(late.colorAt(0.5), blue);
}

TEST(CGGradient, EqualLocationsKeepTheirOrder) {
  const RGBA red{1, 0, 0, 1}, green{0, 1, 0, 1};
  const CGGradient gradient({red, green}, {0.5, 0.5});
  EXPECT_EQ(gradient.stops()[0].color, red);
  EXPECT_EQ(gradient.stops()[1].color, green);
  EXPECT_EQ(gradient.colorAt(0.4), red);
  EXPECT_EQ(gradient.colorAt(0.6), green);
}

TEST(CGGradient, InterpolatesPlainComponents) {
  const CGGradient gradient({{1, 1, 1, 0}, {0.66, 0.79, 0.16, 1}});
  expectNear(gradient.colorAt(0.5), {0.83, 0.895, 0.58, 0.5});
  const CGGradient blue({{0.75, 0.88, 0.96, 1}, {1, 1, 1, 1}});
  expectNear(blue.colorAt(0.5), {0.875, 0.94, 0.98, 1});
}

TEST(CGGradient, ThreeStopsOutOfOrder) {
  const CGGradient gradient({{1, 1, 1, 1}, {1, 1, 1, 1}, {0.9, 0.9, 0.9, 1}}, {1, 0.3, 0});
  EXPECT_NEAR(gradient.colorAt(0.15).red, 0.95, 1e-12);
  EXPECT_NEAR(gradient.colorAt(0).red, 0.9, 1e-12);
  EXPECT_EQ(gradient.colorAt(0.3).red, 1);
  EXPECT_EQ(gradient.colorAt(0.7).red, 1);
}

TEST(CGGradient, HoldsTheNearestColourOutside) {
  const CGGradient gradient({{0, 0, 0, 1}, {1, 1, 1, 1}}, {0.2, 0.6});
  EXPECT_EQ(gradient.colorAt(-1), (RGBA{0, 0, 0, 1}));
  EXPECT_EQ(gradient.colorAt(9), (RGBA{1, 1, 1, 1}));
}

TEST(CGGradient, SurvivesOddInput) {
  EXPECT_EQ(CGGradient({}).colorAt(0.5), (RGBA{0, 0, 0, 0}));
  EXPECT_EQ(CGGradient({{1, 0, 0, 1}}).colorAt(0.5), (RGBA{1, 0, 0, 1}));
  EXPECT_THROW(CGGradient({{1, 0, 0, 1}}, {0, 1}), NSException);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(CGGradient({{1, 0, 0, 1}, {0, 1, 0, 1}}, {nan, 2}).stops()[1].location, 1);
}

TEST(FontFace, MetricsAreThoseOfTheNamedFonts) {
  EXPECT_NEAR(FontFaceLucidaGrande()->ascent * 11, 10.635, 5e-4);
  EXPECT_NEAR(FontFaceLucidaGrande()->descent * 11, 2.320, 5e-4);
  EXPECT_NEAR(FontFaceLucidaGrande()->ascent * 13, 12.56836, 5e-6);
  EXPECT_NEAR(FontFaceHelvetica()->ascent * 9, 6.930, 5e-4);
  EXPECT_NEAR(FontFaceHelvetica()->descent * 9, 2.070, 5e-4);
  EXPECT_EQ(FontFaceLucidaGrandeBold()->postScriptName, "LucidaGrande-Bold");
  EXPECT_TRUE(FontFaceLucidaGrandeBold()->bold);
  EXPECT_EQ(FontFaceLucidaGrandeBold()->ascent, FontFaceLucidaGrande()->ascent);
}

}  // namespace
}  // namespace zelkon
