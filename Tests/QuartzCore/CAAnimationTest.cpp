#include <gtest/gtest.h>

#include "QuartzCore/CAAnimation.h"

namespace zelkon {
namespace {

struct CurvePoint {
  CAMediaTimingFunction curve;
  double t, f;
};
class CAMediaTimingFunctionAt : public testing::TestWithParam<CurvePoint> {};

TEST_P(CAMediaTimingFunctionAt, GivesTheWorkedValue) {
  EXPECT_NEAR(GetParam().curve.solve(GetParam().t), GetParam().f, 6e-5);
}

constexpr auto byDefault = kCAMediaTimingFunctionDefault;
INSTANTIATE_TEST_SUITE_P(
    WorkedValues, CAMediaTimingFunctionAt,
    testing::Values(
        CurvePoint{byDefault, 0.1, 0.0948}, CurvePoint{byDefault, 0.2, 0.2952}, CurvePoint{byDefault, 0.25, 0.4085},
        CurvePoint{byDefault, 0.4, 0.6825}, CurvePoint{byDefault, 0.5, 0.8024}, CurvePoint{byDefault, 0.6, 0.8852},
        CurvePoint{byDefault, 0.75, 0.9605}, CurvePoint{byDefault, 0.8, 0.9756}, CurvePoint{byDefault, 0.9, 0.9943},
        CurvePoint{kCAMediaTimingFunctionEaseIn, 0.25, 0.0935}, CurvePoint{kCAMediaTimingFunctionEaseIn, 0.5, 0.3154},
        CurvePoint{kCAMediaTimingFunctionEaseIn, 0.75, 0.6219}, CurvePoint{kCAMediaTimingFunctionEaseOut, 0.25, 0.3781},
        CurvePoint{kCAMediaTimingFunctionEaseOut, 0.5, 0.6846}, CurvePoint{kCAMediaTimingFunctionEaseOut, 0.75, 0.9065},
        CurvePoint{kCAMediaTimingFunctionEaseInEaseOut, 0.25, 0.1292},
        CurvePoint{kCAMediaTimingFunctionEaseInEaseOut, 0.5, 0.5},
        CurvePoint{kCAMediaTimingFunctionEaseInEaseOut, 0.75, 0.8708},
        CurvePoint{kCAMediaTimingFunctionLinear, 0.3, 0.3}, CurvePoint{byDefault, 0, 0}, CurvePoint{byDefault, 1, 1},
        CurvePoint{byDefault, -1, 0}, CurvePoint{byDefault, 2, 1}));

TEST(CAInterpolate, MixesNumbersAndGeometryByComponents) {
  EXPECT_EQ(std::get<double>(CAInterpolate(1.0, 3.0, 0.25)), 1.5);
  EXPECT_EQ(std::get<CGPoint>(CAInterpolate(CGPoint{0, 10}, CGPoint{4, 20}, 0.5)), (CGPoint{2, 15}));
  EXPECT_EQ(std::get<CGSize>(CAInterpolate(CGSize{0, 10}, CGSize{4, 20}, 0.5)), (CGSize{2, 15}));
  EXPECT_EQ(std::get<CGRect>(CAInterpolate(CGRectMake(0, 0, 0, 0), CGRectMake(4, 8, 12, 16), 0.25)),
            CGRectMake(1, 2, 3, 4));
}

TEST(CAInterpolate, MixesColoursOfOneSpaceByComponents) {
  const CGColorRef half = std::get<CGColorRef>(
      CAInterpolate(CGColorCreateGenericRGB(0, 0.2, 1, 0), CGColorCreateGenericRGB(1, 0.4, 0, 1), 0.5));
  EXPECT_EQ(half->components(), (std::vector<double>{0.5, 0.30000000000000004, 0.5, 0.5}));
  const CGColorRef mixed =
      std::get<CGColorRef>(CAInterpolate(kCGColorBlack(), CGColorCreateGenericRGB(1, 0, 0, 1), 0.5));
  EXPECT_EQ(mixed->rgba(), (RGBA{0.5, 0, 0, 1}));
}

TEST(CAInterpolate, NoColourIsTheOtherOneMadeClear) {
  const CGColorRef half = std::get<CGColorRef>(CAInterpolate(CGColorRef(), CGColorCreateGenericRGB(1, 0.5, 0, 1), 0.5));
  EXPECT_EQ(half->rgba(), (RGBA{1, 0.5, 0, 0.5}));
}

TEST(CAInterpolate, WhatCannotBeMixedSwitchesAtTheEnd) {
  EXPECT_EQ(std::get<bool>(CAInterpolate(false, true, 0.99)), false);
  EXPECT_EQ(std::get<bool>(CAInterpolate(false, true, 1)), true);
  EXPECT_EQ(std::get<double>(CAInterpolate(2.0, true, 0.99)), 2.0);
}

TEST(CABasicAnimation, StartsEmptyLinearAndRemoved) {
  const CABasicAnimation animation = CABasicAnimation::animationWithKeyPath("bounds");
  EXPECT_EQ(animation.keyPath, "bounds");
  EXPECT_FALSE(animation.fromValue || animation.toValue || animation.timingFunction);
  EXPECT_EQ(animation.duration, 0);
  EXPECT_EQ(animation.fillMode, CAFillMode::removed);
  EXPECT_TRUE(animation.removedOnCompletion);
}

TEST(CABasicAnimation, StoresAnyKeyAndReadsNullForOthers) {
  CABasicAnimation animation;
  EXPECT_TRUE(animation.valueForKey("layer").isNull());
  animation.setValue("bar", "layer");
  const CABasicAnimation copy = animation;
  animation.setValue(Value(), "layer");
  EXPECT_TRUE(animation.valueForKey("layer").isNull());
  EXPECT_EQ(copy.valueForKey("layer").string(), "bar");
}

}  // namespace
}  // namespace zelkon
