#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "CoreGraphics/CGPath.h"

namespace zelkon {
namespace {

using Type = CGPathElement::Type;
constexpr double pi = 3.14159265358979323846;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

void expectNear(CGPoint a, CGPoint b, double tolerance = 1e-9) {
  EXPECT_NEAR(a.x, b.x, tolerance);
  EXPECT_NEAR(a.y, b.y, tolerance);
}

size_t curves(const CGPath& path) {
  size_t count = 0;
  for (const CGPathElement& element : path.elements()) count += element.type == Type::curve;
  return count;
}

struct Corner {
  CGPoint from, corner, toward;
  double radius;
  CGPoint first, second, center;
};

class RoundedCorner : public testing::TestWithParam<Corner> {};

TEST_P(RoundedCorner, TouchesBothLines) {
  const Corner& c = GetParam();
  CGPath path;
  path.moveTo(c.from);
  path.addArcToPoint(c.corner, c.toward, c.radius);
  ASSERT_EQ(path.elements().size(), 3U);
  EXPECT_EQ(path.elements()[1].type, Type::line);
  expectNear(path.elements()[1].points[0], c.first, 1e-4);
  EXPECT_EQ(path.elements()[2].type, Type::curve);
  expectNear(path.elements()[2].points[2], c.second, 1e-4);
  expectNear(*path.currentPoint(), c.second, 1e-4);
  // The middle of the curve lies on the circle, on the corner's side of its centre.
  const CGPoint* p = path.elements()[2].points;
  const CGPoint middle{(c.first.x + 3 * p[0].x + 3 * p[1].x + c.second.x) / 8,
                       (c.first.y + 3 * p[0].y + 3 * p[1].y + c.second.y) / 8};
  const CGPoint toCorner{c.corner.x - c.center.x, c.corner.y - c.center.y};
  const double length = std::hypot(toCorner.x, toCorner.y);
  expectNear(middle, {c.center.x + toCorner.x / length * c.radius, c.center.y + toCorner.y / length * c.radius}, 2e-3);
}

INSTANTIATE_TEST_SUITE_P(
    CGPath, RoundedCorner,
    testing::Values(
        Corner{{126.5, 50}, {126.5, 169.5}, {115, 169.5}, 5, {126.5, 164.5}, {121.5, 169.5}, {121.5, 164.5}},
        Corner{{121.5, 169.5}, {102.5, 169.5}, {102.5, 50}, 5, {107.5, 169.5}, {102.5, 164.5}, {107.5, 164.5}},
        Corner{{106.5, 50}, {106.5, 169.5}, {105, 169.5}, 5, {106.5, 164.5}, {101.5, 169.5}, {101.5, 164.5}},
        Corner{{101.5, 169.5}, {102.5, 169.5}, {102.5, 50}, 5, {97.5, 169.5}, {102.5, 164.5}, {97.5, 164.5}},
        Corner{{126.5, 50}, {126.5, 51.5}, {115, 51.5}, 5, {126.5, 46.5}, {121.5, 51.5}, {121.5, 46.5}},
        Corner{{0, 0}, {10, 0}, {20, 10}, 5, {7.9289, 0}, {11.4645, 1.4645}, {7.9289, 5}}));

TEST(CGPath, DegenerateCornersAreLines) {
  const auto corner = [](CGPoint from, CGPoint at, CGPoint toward, double radius) {
    CGPath path;
    path.moveTo(from);
    path.addArcToPoint(at, toward, radius);
    CGPath line;
    line.moveTo(from);
    line.addLineTo(at);
    return path == line;
  };
  EXPECT_TRUE(corner({0, 0}, {10, 0}, {10, 10}, 0));
  EXPECT_TRUE(corner({10, 0}, {10, 0}, {10, 10}, 5));
  EXPECT_TRUE(corner({0, 0}, {10, 0}, {10, 0}, 5));
  EXPECT_TRUE(corner({0, 0}, {10, 0}, {20, 0}, 5));
  EXPECT_TRUE(corner({0, 0}, {10, 0}, {5, 0}, 5));
}

TEST(CGPath, NothingIsAddedWithoutACurrentPoint) {
  CGPath path;
  path.addLineTo({1, 1});
  path.addCurveTo({1, 1}, {2, 2}, {3, 3});
  path.addArcToPoint({10, 0}, {10, 10}, 5);
  path.close();
  EXPECT_TRUE(path.isEmpty());
  EXPECT_FALSE(path.currentPoint());
  EXPECT_TRUE(CGRectIsNull(path.boundingBox()));
}

TEST(CGPathArc, FullCircleIsFourQuadrants) {
  CGPath path;
  path.addArc({5, 6}, 10, 0, 2 * pi, false);
  ASSERT_EQ(path.elements().size(), 5U);
  EXPECT_EQ(path.elements()[0].type, Type::move);
  EXPECT_EQ(path.elements()[0].points[0], (CGPoint{15, 6}));
  const CGPathElement& quadrant = path.elements()[1];
  expectNear(quadrant.points[0], {15, 6 + 10 * 0.5522847498});
  expectNear(quadrant.points[1], {5 + 10 * 0.5522847498, 16});
  expectNear(quadrant.points[2], {5, 16});
  expectNear(*path.currentPoint(), {15, 6});
}

TEST(CGPathArc, EndBelowStartGoesOnAround) {
  CGPath path;
  path.addArc({0, 0}, 1, 0, -pi / 2, false);
  EXPECT_EQ(curves(path), 3U);
  expectNear(path.elements()[1].points[2], {0, 1});
  expectNear(*path.currentPoint(), {0, -1});
}

TEST(CGPathArc, ClockwiseRunsWithFallingAngles) {
  CGPath path;
  path.addArc({0, 0}, 1, 0, -pi / 2, true);
  EXPECT_EQ(curves(path), 1U);
  expectNear(*path.currentPoint(), {0, -1});
  CGPath around;
  around.addArc({0, 0}, 1, 0, pi / 2, true);
  EXPECT_EQ(curves(around), 3U);
  expectNear(around.elements()[1].points[2], {0, -1});
  expectNear(*around.currentPoint(), {0, 1});
}

TEST(CGPathArc, StartsWithALineFromTheCurrentPoint) {
  CGPath path;
  path.moveTo({0, 0});
  path.addArc({0, 0}, 2, 0, pi / 2, false);
  EXPECT_EQ(path.elements()[1].type, Type::line);
  EXPECT_EQ(path.elements()[1].points[0], (CGPoint{2, 0}));
}

TEST(CGPathArc, WithoutSweepOrRadiusIsAPoint) {
  CGPath none;
  none.addArc({1, 2}, 3, 1, 1, false);
  ASSERT_EQ(none.elements().size(), 1U);
  expectNear(none.elements()[0].points[0], {1 + 3 * std::cos(1), 2 + 3 * std::sin(1)});
  CGPath point;
  point.addArc({1, 2}, 0, 0, 1, false);
  ASSERT_EQ(point.elements().size(), 1U);
  EXPECT_EQ(point.elements()[0].points[0], (CGPoint{1, 2}));
}

TEST(CGPathArc, NegativeOrNonFiniteAddsNothing) {
  CGPath path;
  path.addArc({0, 0}, -1, 0, 1, false);
  path.addArc({0, 0}, nan, 0, 1, false);
  path.addArc({0, 0}, 1, nan, 1, false);
  path.addArc({0, 0}, 1, 0, std::numeric_limits<double>::infinity(), false);
  EXPECT_TRUE(path.isEmpty());
}

TEST(CGPathArc, HugeSweepsStaySmall) {
  CGPath path;
  path.addArc({0, 0}, 1, 0, 1e12, false);
  path.addArc({0, 0}, 1, 1e12, 0, false);
  path.addArc({0, 0}, 1, 0, 3 * pi, false);
  EXPECT_LT(path.elements().size(), 60U);
  expectNear(*path.currentPoint(), {-1, 0});
}

TEST(CGPath, RectangleReturnsToItsOrigin) {
  CGPath path;
  path.addRect(CGRectMake(1, 2, 3, 4));
  ASSERT_EQ(path.elements().size(), 5U);
  EXPECT_EQ(path.elements()[2].points[0], (CGPoint{4, 6}));
  EXPECT_EQ(path.elements()[4].type, Type::close);
  EXPECT_EQ(path.currentPoint(), (CGPoint{1, 2}));
  EXPECT_EQ(path.boundingBox(), CGRectMake(1, 2, 3, 4));
  path.addRect(CGRectNull);
  EXPECT_EQ(path.elements().size(), 5U);
}

TEST(CGPath, CloseReturnsToTheSubpathStart) {
  CGPath path;
  path.moveTo({1, 1});
  path.addLineTo({5, 5});
  path.close();
  EXPECT_EQ(path.currentPoint(), (CGPoint{1, 1}));
}

TEST(CGPath, EllipseTouchesItsRectangle) {
  CGPath path;
  path.addEllipseInRect(CGRectMake(0, 0, 20, 10));
  EXPECT_EQ(curves(path), 4U);
  EXPECT_EQ(path.boundingBox(), CGRectMake(0, 0, 20, 10));
}

TEST(CGPath, RoundedRectangleLimitsItsRadius) {
  CGPath path;
  path.addRoundedRect(CGRectMake(0, 0, 20, 10), 100);
  EXPECT_EQ(path.elements()[0].points[0], (CGPoint{5, 0}));
  EXPECT_EQ(curves(path), 4U);
  const CGRect box = path.boundingBox();
  expectNear(box.origin, {0, 0});
  expectNear({box.size.width, box.size.height}, {20, 10});
  CGPath plain, rect;
  plain.addRoundedRect(CGRectMake(0, 0, 20, 10), 0);
  rect.addRect(CGRectMake(0, 0, 20, 10));
  EXPECT_EQ(plain, rect);
}

TEST(CGPath, ArcsOfImmenseSweepAreAFewTurns) {
  for (const double end : {1e9, 1e18, 1e300, -1e9, -1e18, -1e300}) {
    for (const bool clockwise : {false, true}) {
      CGPath path;
      path.addArc({0, 0}, 10, 0, end, clockwise);
      EXPECT_LE(path.elements().size(), 24u) << end;
      EXPECT_TRUE(path.isPaintable() || path.elements().size() == 1) << end;
    }
  }
}

TEST(CGPath, KnowsThatItIsARectangle) {
  CGPath rect;
  EXPECT_FALSE(rect.rect());
  rect.addRect(CGRectMake(1, 2, 3, 4));
  EXPECT_EQ(rect.rect(), CGRectMake(1, 2, 3, 4));
  EXPECT_EQ(rect.transformed({2, 0, 0, -1, 0, 10}).rect(), CGRectMake(2, 4, 6, 4));
  CGPath reversed, empty;
  reversed.addRect({{4, 6}, {-3, -4}});
  EXPECT_EQ(reversed.rect(), CGRectMake(1, 2, 3, 4));
  empty.addRect(CGRectMake(1, 2, 0, 0));
  EXPECT_EQ(empty.rect(), CGRectMake(1, 2, 0, 0));
}

TEST(CGPath, KnowsThatItIsNoRectangle) {
  CGPath rect, slanted, open, two, round;
  rect.addRect(CGRectMake(1, 2, 3, 4));
  EXPECT_FALSE(rect.transformed({0.8, 0.6, -0.6, 0.8, 0, 0}).rect());
  slanted.moveTo({0, 0});
  slanted.addLineTo({4, 0});
  slanted.addLineTo({4, 4});
  slanted.addLineTo({1, 4});
  slanted.close();
  EXPECT_FALSE(slanted.rect());
  open.moveTo({0, 0});
  open.addLineTo({4, 0});
  open.addLineTo({4, 4});
  open.addLineTo({0, 4});
  EXPECT_FALSE(open.rect());
  two.append(rect);
  two.append(rect);
  EXPECT_FALSE(two.rect());
  round.addEllipseInRect(CGRectMake(0, 0, 4, 4));
  EXPECT_FALSE(round.rect());
}

TEST(CGPath, TransformMovesEveryPoint) {
  CGPath path;
  path.moveTo({1, 1});
  path.addCurveTo({2, 2}, {3, 3}, {4, 4});
  const CGPath moved = path.transformed(CGAffineTransformMakeTranslation(10, 0));
  EXPECT_EQ(moved.elements()[1].points[1], (CGPoint{13, 3}));
  EXPECT_EQ(moved.currentPoint(), (CGPoint{14, 4}));
}

TEST(CGPath, OnlyFinitePathsWithSomethingToDrawArePaintable) {
  CGPath path;
  EXPECT_FALSE(path.isPaintable());
  path.moveTo({1, 1});
  EXPECT_FALSE(path.isPaintable());
  path.addLineTo({2, 2});
  EXPECT_TRUE(path.isPaintable());
  path.addLineTo({nan, 2});
  EXPECT_FALSE(path.isPaintable());
}

}  // namespace
}  // namespace zelkon
