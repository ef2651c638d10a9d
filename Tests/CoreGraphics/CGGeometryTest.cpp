#include <gtest/gtest.h>

#include <limits>
#include <ostream>

#include "CoreGraphics/CGGeometry.h"

namespace zelkon {

void PrintTo(const CGRect& r, std::ostream* out) {
  *out << "(" << r.origin.x << ", " << r.origin.y << ", " << r.size.width << ", " << r.size.height << ")";
}

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

void expectNear(CGRect a, CGRect b) {
  EXPECT_NEAR(a.origin.x, b.origin.x, 1e-12);
  EXPECT_NEAR(a.origin.y, b.origin.y, 1e-12);
  EXPECT_NEAR(a.size.width, b.size.width, 1e-12);
  EXPECT_NEAR(a.size.height, b.size.height, 1e-12);
}

TEST(CGRectIntegral, FloorsMinimumAndCeilsMaximumEdges) {
  EXPECT_EQ(CGRectIntegral(CGRectMake(1.2, 2.7, 3.3, 4.6)), CGRectMake(1, 2, 4, 6));
  EXPECT_EQ(CGRectIntegral(CGRectMake(0, 0, 41.3, 17.6)), CGRectMake(0, 0, 42, 18));
  EXPECT_EQ(CGRectIntegral(CGRectMake(-0.5, 0, 1, 1)), CGRectMake(-1, 0, 2, 1));
  EXPECT_EQ(CGRectIntegral(CGRectMake(1, 2, 3, 4)), CGRectMake(1, 2, 3, 4));
  EXPECT_TRUE(CGRectIsNull(CGRectIntegral(CGRectNull)));
}

TEST(CGRectInset, ShrinksGrowsAndBecomesNull) {
  const CGRect r = CGRectMake(0, 0, 10, 10);
  EXPECT_EQ(CGRectInset(r, 2, 3), CGRectMake(2, 3, 6, 4));
  EXPECT_EQ(CGRectInset(r, -2, -3), CGRectMake(-2, -3, 14, 16));
  EXPECT_TRUE(CGRectIsNull(CGRectInset(r, 6, 6)));
  EXPECT_EQ(CGRectInset(r, 5, 5), CGRectMake(5, 5, 0, 0));
}

TEST(CGRectNull, IsNullAndEmpty) {
  EXPECT_EQ(CGRectNull.origin.x, std::numeric_limits<double>::infinity());
  EXPECT_EQ(CGRectNull.origin.y, std::numeric_limits<double>::infinity());
  EXPECT_EQ(CGRectNull.size, CGSizeMake(0, 0));
  EXPECT_TRUE(CGRectIsNull(CGRectNull));
  EXPECT_TRUE(CGRectIsEmpty(CGRectNull));
  EXPECT_FALSE(CGRectIsNull(CGRectZero));
}

TEST(CGRectIsEmpty, HoldsWithoutWidthOrHeight) {
  EXPECT_TRUE(CGRectIsEmpty(CGRectMake(1, 1, 0, 5)));
  EXPECT_TRUE(CGRectIsEmpty(CGRectMake(1, 1, 5, 0)));
  EXPECT_FALSE(CGRectIsEmpty(CGRectMake(1, 1, -5, 5)));
}

TEST(CGRectContainsPoint, IncludesMinimumEdgesOnly) {
  const CGRect r = CGRectMake(1, 2, 3, 4);
  EXPECT_TRUE(CGRectContainsPoint(r, {1, 2}));
  EXPECT_TRUE(CGRectContainsPoint(r, {3.999, 5.999}));
  EXPECT_FALSE(CGRectContainsPoint(r, {4, 3}));
  EXPECT_FALSE(CGRectContainsPoint(r, {2, 6}));
  EXPECT_FALSE(CGRectContainsPoint(CGRectZero, {0, 0}));
  EXPECT_FALSE(CGRectContainsPoint(CGRectNull, {0, 0}));
}

TEST(CGRect, EdgesStandardiseNegativeSizes) {
  const CGRect r = CGRectMake(10, 10, -4, -6);
  EXPECT_EQ(CGRectGetMinX(r), 6);
  EXPECT_EQ(CGRectGetMaxX(r), 10);
  EXPECT_EQ(CGRectGetMidX(r), 8);
  EXPECT_EQ(CGRectGetWidth(r), 4);
  EXPECT_EQ(CGRectGetMinY(r), 4);
  EXPECT_EQ(CGRectGetMaxY(r), 10);
  EXPECT_EQ(CGRectGetMidY(r), 7);
  EXPECT_EQ(CGRectGetHeight(r), 6);
  EXPECT_EQ(CGRectStandardize(r), CGRectMake(6, 4, 4, 6));
}

TEST(CGRectUnion, EnclosesBoth) {
  EXPECT_EQ(CGRectUnion(CGRectMake(0, 0, 1, 1), CGRectMake(5, -2, 2, 1)), CGRectMake(0, -2, 7, 3));
  EXPECT_EQ(CGRectUnion(CGRectNull, CGRectMake(1, 2, 3, 4)), CGRectMake(1, 2, 3, 4));
  EXPECT_EQ(CGRectUnion(CGRectMake(1, 2, 3, 4), CGRectNull), CGRectMake(1, 2, 3, 4));
}

TEST(CGRectIntersection, IsTheCommonPartOrNull) {
  const CGRect r = CGRectMake(0, 0, 10, 10);
  EXPECT_EQ(CGRectIntersection(r, CGRectMake(5, 6, 10, 10)), CGRectMake(5, 6, 5, 4));
  EXPECT_EQ(CGRectIntersection(r, CGRectMake(10, 0, 5, 5)), CGRectMake(10, 0, 0, 5));
  EXPECT_TRUE(CGRectIsNull(CGRectIntersection(r, CGRectMake(11, 0, 5, 5))));
  EXPECT_TRUE(CGRectIsNull(CGRectIntersection(r, CGRectNull)));
  EXPECT_TRUE(CGRectIntersectsRect(r, CGRectMake(5, 5, 10, 10)));
  EXPECT_TRUE(CGRectIntersectsRect(r, CGRectMake(15, 15, -10, -10)));
  EXPECT_FALSE(CGRectIntersectsRect(r, CGRectMake(10, 0, 5, 5)));
  EXPECT_FALSE(CGRectIntersectsRect(r, CGRectNull));
}

TEST(NSIsEmptyRect, CountsNegativeAndNaNAsEmpty) {
  EXPECT_TRUE(NSIsEmptyRect(NSZeroRect));
  EXPECT_TRUE(NSIsEmptyRect(CGRectMake(0, 0, -1, 5)));
  EXPECT_TRUE(NSIsEmptyRect(CGRectMake(0, 0, nan, 5)));
  EXPECT_FALSE(NSIsEmptyRect(CGRectMake(0, 0, 0.1, 5)));
}

TEST(NSIntersectsRect, NeedsCommonArea) {
  const CGRect r = CGRectMake(0, 0, 10, 10);
  EXPECT_FALSE(NSIntersectsRect(r, CGRectMake(10, 0, 5, 5)));
  EXPECT_TRUE(NSIntersectsRect(r, CGRectMake(9.5, 0, 5, 5)));
  EXPECT_FALSE(NSIntersectsRect(CGRectMake(0, 0, 0, 10), CGRectMake(0, 0, 5, 5)));
  EXPECT_FALSE(NSIntersectsRect(r, NSZeroRect));
  EXPECT_FALSE(NSIntersectsRect(r, CGRectMake(0, 10, 5, 5)));
}

TEST(NSInsetRect, MayGoNegative) {
  EXPECT_EQ(NSInsetRect(CGRectMake(0, 0, 10, 10), 6, 1), CGRectMake(6, 1, -2, 8));
  EXPECT_TRUE(NSEqualRects(CGRectMake(1, 2, 3, 4), CGRectMake(1, 2, 3, 4)));
  EXPECT_FALSE(NSEqualRects(CGRectMake(1, 2, 3, 4), CGRectMake(1, 2, 3, 4.0000001)));
}

TEST(CGRectOffset, MovesTheOrigin) { EXPECT_EQ(CGRectOffset(CGRectMake(1, 2, 3, 4), 5, -1), CGRectMake(6, 1, 3, 4)); }

TEST(CGAffineTransform, ConcatenationAppliesTheFirstFirst) {
  const CGAffineTransform t =
      CGAffineTransformConcat(CGAffineTransformMakeScale(2, 3), CGAffineTransformMakeTranslation(10, 20));
  EXPECT_EQ(CGPointApplyAffineTransform({1, 1}, t), (CGPoint{12, 23}));
  EXPECT_EQ(CGSizeApplyAffineTransform({1, 1}, t), (CGSize{2, 3}));
}

TEST(CGAffineTransform, InverseUndoes) {
  const CGAffineTransform t =
      CGAffineTransformConcat(CGAffineTransformMakeRotation(0.7), CGAffineTransform{2, 0.5, 0, 3, 4, 5});
  const CGPoint p = CGPointApplyAffineTransform(CGPointApplyAffineTransform({7, -8}, t), CGAffineTransformInvert(t));
  EXPECT_NEAR(p.x, 7, 1e-12);
  EXPECT_NEAR(p.y, -8, 1e-12);
  const CGAffineTransform singular = CGAffineTransformMakeScale(0, 1);
  EXPECT_EQ(CGAffineTransformInvert(singular), singular);
}

TEST(CGAffineTransform, RotationTurnsCounterClockwise) {
  const CGPoint p = CGPointApplyAffineTransform({1, 0}, CGAffineTransformMakeRotation(std::acos(0.0)));
  EXPECT_NEAR(p.x, 0, 1e-15);
  EXPECT_NEAR(p.y, 1, 1e-15);
}

TEST(CGAffineTransform, RectangleBecomesItsBoundingBox) {
  const CGAffineTransform quarterTurn = CGAffineTransformMakeRotation(std::acos(0.0));
  expectNear(CGRectApplyAffineTransform(CGRectMake(1, 2, 3, 4), quarterTurn), CGRectMake(-6, 1, 4, 3));
  EXPECT_TRUE(CGRectIsNull(CGRectApplyAffineTransform(CGRectNull, quarterTurn)));
}

}  // namespace
}  // namespace zelkon
