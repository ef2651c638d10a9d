#include <gtest/gtest.h>

#include <numbers>

#include "QuartzCore/CATransform3D.h"

namespace zelkon {
namespace {

constexpr double pi = std::numbers::pi;

TEST(CATransform3D, TheNewOperationComesFirst) {
  const CATransform3D t = CATransform3DRotate(CATransform3DScale(CATransform3DIdentity, 2, 1, 1), pi / 2, 0, 0, 1);
  EXPECT_NEAR(t.m11, 0, 1e-15);
  EXPECT_NEAR(t.m12, 1, 1e-15);
  EXPECT_NEAR(t.m21, -2, 1e-15);
  EXPECT_NEAR(t.m22, 0, 1e-15);
  const CGAffineTransform affine = CATransform3DGetAffineTransform(t);
  const CGPoint x = CGPointApplyAffineTransform({1, 0}, affine), y = CGPointApplyAffineTransform({0, 1}, affine);
  EXPECT_NEAR(x.x, 0, 1e-15);
  EXPECT_NEAR(x.y, 1, 1e-15);
  EXPECT_NEAR(y.x, -2, 1e-15);
  EXPECT_NEAR(y.y, 0, 1e-15);
}

TEST(CATransform3D, ConcatenationAppliesTheFirstFirst) {
  const CATransform3D scale = CATransform3DScale(CATransform3DIdentity, 2, 3, 1);
  const CATransform3D move = CATransform3DTranslate(CATransform3DIdentity, 10, 20, 0);
  const auto place = [](const CATransform3D& t) {
    return CGPointApplyAffineTransform({1, 1}, CATransform3DGetAffineTransform(t));
  };
  EXPECT_EQ(place(CATransform3DConcat(scale, move)), (CGPoint{12, 23}));
  EXPECT_EQ(place(CATransform3DConcat(move, scale)), (CGPoint{22, 63}));
}

TEST(CATransform3D, StartStateOfThePie) {
  const CATransform3D t = CATransform3DRotate(CATransform3DScale(CATransform3DIdentity, 0.1, 0.1, 1), pi, 0, 0, 1);
  EXPECT_NEAR(t.m11, -0.1, 1e-15);
  EXPECT_NEAR(t.m22, -0.1, 1e-15);
  EXPECT_NEAR(t.m12, 1.22e-17, 1e-18);
  EXPECT_NEAR(t.m21, -1.22e-17, 1e-18);
  EXPECT_EQ(t.m33, 1);
  EXPECT_EQ(t.m44, 1);
  const CATransform3D twice = CATransform3DRotate(CATransform3DScale(t, 0.1, 0.1, 1), pi, 0, 0, 1);
  EXPECT_NEAR(twice.m11, 0.01, 1e-15);
  EXPECT_NEAR(twice.m12, 0, 1e-17);
}

TEST(CATransform3D, TranslationLiesInTheFourthRow) {
  const CATransform3D t = CATransform3DTranslate(CATransform3DScale(CATransform3DIdentity, 2, 3, 4), 1, 1, 1);
  EXPECT_EQ(t.m41, 2);
  EXPECT_EQ(t.m42, 3);
  EXPECT_EQ(t.m43, 4);
  EXPECT_EQ(CATransform3DGetAffineTransform(t), (CGAffineTransform{2, 0, 0, 3, 2, 3}));
}

TEST(CATransform3D, KnowsWhatIsAffine) {
  EXPECT_TRUE(CATransform3DIsIdentity(CATransform3DIdentity));
  EXPECT_FALSE(CATransform3DIsIdentity(CATransform3D{}));
  EXPECT_TRUE(CATransform3DIsAffine(CATransform3DRotate(CATransform3DIdentity, 1, 0, 0, 1)));
  EXPECT_FALSE(CATransform3DIsAffine(CATransform3DRotate(CATransform3DIdentity, 1, 0, 1, 0)));
  EXPECT_FALSE(CATransform3DIsAffine(CATransform3DScale(CATransform3DIdentity, 1, 1, 2)));
  EXPECT_FALSE(CATransform3DIsAffine(CATransform3D{}));
}

struct Moment {
  double f, m11, m12, m21, m22;
};
class CATransform3DTurning : public testing::TestWithParam<Moment> {};

TEST_P(CATransform3DTurning, GrowsWhileItTurnsBack) {
  const CATransform3D from = CATransform3DRotate(CATransform3DScale(CATransform3DIdentity, 0.1, 0.1, 1), pi, 0, 0, 1);
  const Moment m = GetParam();
  const CATransform3D t = CATransform3DInterpolate(from, CATransform3DIdentity, m.f);
  EXPECT_NEAR(t.m11, m.m11, 5e-5);
  EXPECT_NEAR(t.m12, m.m12, 5e-5);
  EXPECT_NEAR(t.m21, m.m21, 5e-5);
  EXPECT_NEAR(t.m22, m.m22, 5e-5);
  EXPECT_EQ(t.m33, 1);
  EXPECT_EQ(t.m44, 1);
}
INSTANTIATE_TEST_SUITE_P(Moments, CATransform3DTurning,
                         testing::Values(Moment{0, -0.1, 0, 0, -0.1}, Moment{0.25, -0.2298, 0.2298, -0.2298, -0.2298},
                                         Moment{0.5, 0, 0.55, -0.55, 0},
                                         Moment{0.75, 0.54801, 0.54801, -0.54801, 0.54801}, Moment{1, 1, 0, 0, 1}));

TEST(CATransform3DInterpolate, AFullTurnOnlyScales) {
  CATransform3D from = CATransform3DIdentity;
  for (int i = 0; i < 2; ++i) from = CATransform3DRotate(CATransform3DScale(from, 0.1, 0.1, 1), pi, 0, 0, 1);
  const CATransform3D t = CATransform3DInterpolate(from, CATransform3DIdentity, 0.5);
  EXPECT_NEAR(t.m11, 0.505, 1e-12);
  EXPECT_NEAR(t.m12, 0, 1e-12);
}

TEST(CATransform3DInterpolate, ScalesEachAxisByItself) {
  const CATransform3D from = CATransform3DScale(CATransform3DIdentity, 0.01, 1, 1);
  const CATransform3D t = CATransform3DInterpolate(from, CATransform3DIdentity, 0.3);
  EXPECT_NEAR(t.m11, 0.01 + 0.99 * 0.3, 1e-12);
  EXPECT_NEAR(t.m22, 1, 1e-12);
}

TEST(CATransform3DInterpolate, MovesStraight) {
  const CATransform3D to = CATransform3DTranslate(CATransform3DIdentity, 10, -20, 0);
  const CATransform3D t = CATransform3DInterpolate(CATransform3DIdentity, to, 0.25);
  EXPECT_NEAR(t.m41, 2.5, 1e-12);
  EXPECT_NEAR(t.m42, -5, 1e-12);
  EXPECT_NEAR(t.m11, 1, 1e-12);
}

TEST(CATransform3DInterpolate, ATurnToHalfWayRoundRisesFromZero) {
  const CATransform3D to = CATransform3DRotate(CATransform3DIdentity, pi, 0, 0, 1);
  const CATransform3D t = CATransform3DInterpolate(CATransform3DIdentity, to, 0.5);
  EXPECT_NEAR(t.m12, 1, 1e-12);
  EXPECT_NEAR(t.m11, 0, 1e-12);
}

TEST(CATransform3DInterpolate, TakesTheShorterWayRound) {
  const CATransform3D from = CATransform3DRotate(CATransform3DIdentity, 170 * pi / 180, 0, 0, 1);
  const CATransform3D to = CATransform3DRotate(CATransform3DIdentity, -170 * pi / 180, 0, 0, 1);
  const CATransform3D t = CATransform3DInterpolate(from, to, 0.5);
  EXPECT_NEAR(t.m11, -1, 1e-12);
  EXPECT_NEAR(t.m12, 0, 1e-12);
}

TEST(CATransform3DInterpolate, TurnsOutOfThePlaneByTheAngle) {
  const CATransform3D to = CATransform3DRotate(CATransform3DIdentity, pi / 2, 0, 1, 0);
  const CATransform3D t = CATransform3DInterpolate(CATransform3DIdentity, to, 0.5);
  const CATransform3D expected = CATransform3DRotate(CATransform3DIdentity, pi / 4, 0, 1, 0);
  EXPECT_NEAR(t.m11, expected.m11, 1e-12);
  EXPECT_NEAR(t.m13, expected.m13, 1e-12);
  EXPECT_NEAR(t.m31, expected.m31, 1e-12);
  EXPECT_NEAR(t.m22, 1, 1e-12);
}

TEST(CATransform3DInterpolate, KeepsShearAndMirror) {
  CATransform3D sheared = CATransform3DIdentity;
  sheared.m21 = 0.5;
  const CATransform3D half = CATransform3DInterpolate(CATransform3DIdentity, sheared, 0.5);
  EXPECT_NEAR(half.m21, 0.25, 1e-12);
  const CATransform3D mirror = CATransform3DScale(CATransform3DIdentity, -1, 1, 1);
  const CATransform3D flipping = CATransform3DInterpolate(CATransform3DIdentity, mirror, 0.25);
  EXPECT_NEAR(flipping.m11, 0.5, 1e-12);
  EXPECT_NEAR(flipping.m22, 1, 1e-12);
}

TEST(CATransform3DInterpolate, WhatCannotBeTakenApartSwitchesAtTheEnd) {
  const CATransform3D zero{};
  EXPECT_EQ(CATransform3DInterpolate(zero, CATransform3DIdentity, 0.9), zero);
  EXPECT_EQ(CATransform3DInterpolate(zero, CATransform3DIdentity, 1), CATransform3DIdentity);
}

}  // namespace
}  // namespace zelkon
