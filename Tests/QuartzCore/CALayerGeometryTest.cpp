#include <cmath>
#include <limits>
#include <numbers>

#include "QuartzCore/LayerFixture.h"

namespace zelkon {
namespace {

void expectRect(CGRect actual, CGRect expected, double tolerance = 1e-9) {
  EXPECT_NEAR(actual.origin.x, expected.origin.x, tolerance);
  EXPECT_NEAR(actual.origin.y, expected.origin.y, tolerance);
  EXPECT_NEAR(actual.size.width, expected.size.width, tolerance);
  EXPECT_NEAR(actual.size.height, expected.size.height, tolerance);
}

CALayerRef layerWith(CGRect bounds, CGPoint position, CGPoint anchor = {0.5, 0.5}) {
  CALayerRef layer = CALayer::layer();
  layer->setBounds(bounds);
  layer->setPosition(position);
  layer->setAnchorPoint(anchor);
  return layer;
}

TEST(CALayerDefaults, AreThePlatforms) {
  const CALayerRef layer = CALayer::layer();
  EXPECT_EQ(layer->bounds(), CGRectZero);
  EXPECT_EQ(layer->position(), CGPoint{});
  EXPECT_EQ(layer->anchorPoint(), (CGPoint{0.5, 0.5}));
  EXPECT_TRUE(CATransform3DIsIdentity(layer->transform()));
  EXPECT_EQ(layer->zPosition(), 0);
  EXPECT_FALSE(layer->isHidden());
  EXPECT_FALSE(layer->masksToBounds());
  EXPECT_EQ(layer->opacity(), 1);
  EXPECT_EQ(layer->contents(), nullptr);
  EXPECT_EQ(layer->contentsGravity(), CAContentsGravity::resize);
  EXPECT_EQ(layer->backgroundColor(), nullptr);
  EXPECT_EQ(layer->cornerRadius(), 0);
  EXPECT_EQ(layer->model().borderWidth, 0);
  EXPECT_EQ(layer->model().borderColor->rgba(), (RGBA{0, 0, 0, 1}));
  EXPECT_EQ(layer->model().shadowOpacity, 0);
  EXPECT_EQ(layer->model().shadowOffset, (CGSize{0, -3}));
  EXPECT_EQ(layer->model().shadowRadius, 3);
  EXPECT_FALSE(layer->needsDisplayOnBoundsChange());
  EXPECT_EQ(layer->autoresizingMask(), 0u);
  EXPECT_EQ(layer->edgeAntialiasingMask(), 15u);
  EXPECT_EQ(layer->superlayer(), nullptr);
  EXPECT_TRUE(layer->sublayers().empty());
  EXPECT_EQ(layer->delegate(), nullptr);
  EXPECT_EQ(layer->name(), "");
}

TEST(CALayerFrameGetter, FollowsBoundsPositionAndAnchor) {
  const CGRect bounds = CGRectMake(0, 0, 100, 50);
  expectRect(layerWith(bounds, {200, 300})->frame(), CGRectMake(150, 275, 100, 50));
  expectRect(layerWith(bounds, {200, 300}, {0, 0})->frame(), CGRectMake(200, 300, 100, 50));
  expectRect(layerWith(bounds, {200, 300}, {1, 1})->frame(), CGRectMake(100, 250, 100, 50));
  expectRect(layerWith(bounds, {0, 0}, {2, -1})->frame(), CGRectMake(-200, 50, 100, 50));
  expectRect(layerWith(CGRectMake(11, 22, 100, 50), {200, 300})->frame(), CGRectMake(150, 275, 100, 50));
}

TEST(CALayerFrameGetter, IsTheBoxOfTheTransformedBounds) {
  CALayerRef layer = layerWith(CGRectMake(0, 0, 100, 50), {200, 300});
  layer->setTransform(CATransform3DScale(CATransform3DIdentity, 2, 4, 1));
  expectRect(layer->frame(), CGRectMake(100, 200, 200, 200));
  layer = layerWith(CGRectMake(0, 0, 100, 100), {0, 0});
  layer->setTransform(CATransform3DRotate(CATransform3DIdentity, std::numbers::pi / 4, 0, 0, 1));
  expectRect(layer->frame(), CGRectMake(-70.71, -70.71, 141.42, 141.42), 0.005);
}

TEST(CALayerFrameSetter, KeepsTheBoundsOrigin) {
  const CALayerRef layer = layerWith(CGRectMake(11, 22, 5, 5), {0, 0});
  layer->setFrame(CGRectMake(10, 20, 100, 50));
  EXPECT_EQ(layer->bounds(), CGRectMake(11, 22, 100, 50));
}

TEST(CALayerFrameSetter, PlacesTheAnchor) {
  const auto positionFor = [](CGPoint anchor, CGRect frame) {
    const CALayerRef layer = layerWith({}, {}, anchor);
    layer->setFrame(frame);
    expectRect(layer->frame(), frame);
    return layer->position();
  };
  EXPECT_EQ(positionFor({0.5, 0.5}, CGRectMake(10, 20, 100, 50)), (CGPoint{60, 45}));
  EXPECT_EQ(positionFor({0, 0}, CGRectMake(10, 20, 100, 50)), (CGPoint{10, 20}));
  EXPECT_EQ(positionFor({1, 1}, CGRectMake(10, 20, 100, 50)), (CGPoint{110, 70}));
  EXPECT_EQ(positionFor({0.5, 0.5}, CGRectMake(10, 20, 0, 0)), (CGPoint{10, 20}));
}

TEST(CALayerFrameSetter, PlacesTheAnchorExactlyWhereverTheLayerWas) {
  for (int i = 0; i < 200; ++i) {
    const CALayerRef layer = layerWith({}, {100.0 / 3 + 0.07 * i, 200.15});
    const CGRect frame = CGRectMake(i, 2 * i, 310 - i, 183);
    layer->setFrame(frame);
    EXPECT_EQ(layer->position(), (CGPoint{i + (310 - i) / 2.0, 2 * i + 91.5})) << i;
    EXPECT_EQ(layer->frame(), frame) << i;
  }
}

TEST(CALayerFrameSetter, GoesBackThroughTheTransform) {
  CALayerRef layer = CALayer::layer();
  layer->setTransform(CATransform3DScale(CATransform3DIdentity, 2, 4, 1));
  layer->setFrame(CGRectMake(10, 20, 100, 50));
  EXPECT_EQ(layer->bounds().size, (CGSize{50, 12.5}));
  EXPECT_EQ(layer->position(), (CGPoint{60, 45}));
  expectRect(layer->frame(), CGRectMake(10, 20, 100, 50));
  layer = CALayer::layer();
  layer->setTransform(CATransform3DTranslate(CATransform3DIdentity, 10, 20, 0));
  layer->setFrame(CGRectMake(10, 20, 100, 50));
  EXPECT_EQ(layer->bounds().size, (CGSize{100, 50}));
  EXPECT_EQ(layer->position(), (CGPoint{50, 25}));
}

TEST(CALayerFrameSetter, SurvivesATransformWithoutInverse) {
  const CALayerRef layer = layerWith(CGRectMake(0, 0, 30, 40), {0, 0});
  layer->setTransform(CATransform3D{});
  layer->setFrame(CGRectMake(10, 20, 100, 50));
  EXPECT_EQ(layer->bounds().size, (CGSize{30, 40}));
}

TEST(CALayerGeometry, NegativeSizesBecomePositive) {
  const CALayerRef layer = CALayer::layer();
  layer->setBounds(CGRectMake(0, 0, -100, -50));
  EXPECT_EQ(layer->bounds(), CGRectMake(-100, -50, 100, 50));
  const CALayerRef framed = CALayer::layer();
  framed->setFrame(CGRectMake(0, 0, -100, -50));
  EXPECT_EQ(framed->bounds(), CGRectMake(0, 0, 100, 50));
  EXPECT_EQ(framed->position(), (CGPoint{-50, -25}));
}

TEST(CALayerGeometry, MovingTheAnchorMovesTheFrame) {
  const CALayerRef layer = layerWith(CGRectMake(0, 0, 100, 50), {200, 300});
  layer->setAnchorPoint({0, 0});
  EXPECT_EQ(layer->position(), (CGPoint{200, 300}));
  EXPECT_EQ(layer->frame(), CGRectMake(200, 300, 100, 50));
}

TEST(CALayerGeometry, UpwardBarKeepsTheCoordinatesOfItsSuperlayer) {
  const CALayerRef bar = CALayer::layer();
  bar->setAnchorPoint({0.5, 0});
  bar->setFrame(CGRectMake(100, 50, 30, 0));
  EXPECT_EQ(bar->bounds(), CGRectMake(0, 0, 30, 0));
  EXPECT_EQ(bar->position(), (CGPoint{115, 50}));
  bar->setBounds(CGRectMake(100, 50, 30, 120));
  EXPECT_EQ(bar->position(), (CGPoint{115, 50}));
  EXPECT_EQ(bar->frame(), CGRectMake(100, 50, 30, 120));
  EXPECT_EQ(CALayerToSuperlayerTransform(bar->model()), CGAffineTransformIdentity);
}

TEST(CALayerGeometry, BoundsOriginShiftsWhatIsInside) {
  const CALayerRef body = layerWith(CGRectMake(0, 0, 0, 200), {85, 161}, {0, 0.5});
  const CGPoint corner = CGPointApplyAffineTransform({0, 0}, CALayerToSuperlayerTransform(body->model()));
  EXPECT_EQ(corner, (CGPoint{85, 61}));
}

TEST(CALayerGeometry, TakesAnyNumber) {
  const CALayerRef layer = CALayer::layer();
  layer->setBounds(CGRectMake(0, 0, std::numeric_limits<double>::quiet_NaN(), 1e300));
  layer->setFrame(CGRectMake(-HUGE_VAL, 0, HUGE_VAL, 5));
  layer->setPosition({std::nan(""), HUGE_VAL});
  EXPECT_TRUE(std::isnan(layer->position().x));
}

// ---- autoresizing ----

CGRect resized(unsigned mask, CGRect child, CGSize from, CGSize to) {
  const CALayerRef outer = layerWith({{}, from}, {}), inner = CALayer::layer();
  inner->setFrame(child);
  inner->setAutoresizingMask(mask);
  outer->addSublayer(inner);
  outer->setBounds({{}, to});
  return inner->frame();
}

constexpr unsigned minX = 1, width = 2, maxX = 4, minY = 8, height = 16, maxY = 32;

TEST(CALayerAutoresizing, SharesTheGrowth) {
  const auto grown = [](unsigned mask) { return resized(mask, CGRectMake(10, 10, 30, 30), {100, 100}, {200, 150}); };
  expectRect(grown(0), CGRectMake(10, 10, 30, 30));
  expectRect(grown(width), CGRectMake(10, 10, 130, 30));
  expectRect(grown(width | height), CGRectMake(10, 10, 130, 80));
  expectRect(grown(minX), CGRectMake(110, 10, 30, 30));
  expectRect(grown(maxX), CGRectMake(10, 10, 30, 30));
  expectRect(grown(minX | maxX), CGRectMake(24.29, 10, 30, 30), 0.005);
  expectRect(grown(63), CGRectMake(20, 15, 60, 45));
  expectRect(grown(width | minX), CGRectMake(35, 10, 105, 30));
  expectRect(grown(width | maxX), CGRectMake(10, 10, 63.33, 30), 0.005);
  expectRect(grown(height | minY), CGRectMake(10, 22.5, 30, 67.5));
  expectRect(grown(height | maxY), CGRectMake(10, 10, 30, 46.67), 0.005);
}

TEST(CALayerAutoresizing, GrowsFromNothing) {
  expectRect(resized(18, CGRectMake(10, 10, 0, 0), {100, 100}, {200, 150}), CGRectMake(10, 10, 100, 50));
  // Parts that have nothing to share by take equal shares.
  expectRect(resized(minX | width, CGRectMake(0, 10, 0, 30), {100, 100}, {200, 150}), CGRectMake(50, 10, 50, 30));
  expectRect(resized(minX | width | maxX, CGRectMake(0, 0, 0, 30), {0, 100}, {90, 100}), CGRectMake(30, 0, 30, 30));
}

TEST(CALayerAutoresizing, LeavesTheTransformAlone) {
  const CALayerRef outer = layerWith(CGRectMake(0, 0, 100, 100), {});
  const CALayerRef inner = layerWith(CGRectMake(0, 0, 30, 30), {25, 25});
  const CATransform3D doubled = CATransform3DScale(CATransform3DIdentity, 2, 2, 1);
  inner->setTransform(doubled);
  inner->setAutoresizingMask(width);
  outer->addSublayer(inner);
  outer->setBounds(CGRectMake(0, 0, 200, 100));
  EXPECT_EQ(inner->bounds(), CGRectMake(0, 0, 130, 30));
  EXPECT_EQ(inner->position(), (CGPoint{75, 25}));
  EXPECT_EQ(inner->transform(), doubled);
}

TEST(CALayerAutoresizing, ChartLayersFollowTheirView) {
  expectRect(resized(18, CGRectMake(0, 17, 300, 183), {300, 200}, {400, 260}), CGRectMake(0, 17, 400, 243));
  expectRect(resized(10, CGRectMake(49.625, 0, 200.75, 17), {300, 200}, {400, 260}),
             CGRectMake(49.625, 60, 300.75, 17));
}

TEST(CALayerAutoresizing, OnlyTheSizeCounts) {
  const CALayerRef outer = layerWith(CGRectMake(0, 0, 100, 100), {}), inner = CALayer::layer();
  inner->setFrame(CGRectMake(10, 10, 30, 30));
  inner->setAutoresizingMask(63);
  outer->addSublayer(inner);
  outer->setBounds(CGRectMake(50, 50, 100, 100));
  EXPECT_EQ(inner->frame(), CGRectMake(10, 10, 30, 30));
}

class CALayerAutoresizingLive : public LayerFixture {};

TEST_F(CALayerAutoresizingLive, AnimatesLikeAnyOtherChange) {
  const CALayerRef outer = addLayer(CGRectMake(0, 0, 100, 100)), inner = CALayer::layer();
  inner->setFrame(CGRectMake(10, 10, 30, 30));
  inner->setAutoresizingMask(width);
  outer->addSublayer(inner);
  CATransaction::flush();
  {
    CATransactionWithoutActions off;
    outer->setBounds(CGRectMake(0, 0, 150, 100));
  }
  EXPECT_TRUE(inner->animationKeys().empty());
  outer->setBounds(CGRectMake(0, 0, 200, 100));
  EXPECT_EQ(inner->animationKeys(), (Lines{"bounds", "position"}));
}

TEST(CALayerAutoresizing, ReachesTheDepths) {
  const CALayerRef outer = layerWith(CGRectMake(0, 0, 100, 100), {});
  CALayerRef innermost = outer;
  for (int i = 0; i < 10000; ++i) {
    const CALayerRef layer = CALayer::layer();
    layer->setFrame(CGRectMake(0, 0, 100, 100));
    layer->setAutoresizingMask(width | height);
    innermost->addSublayer(layer);
    innermost = layer;
  }
  outer->setFrame(CGRectMake(0, 0, 250, 150));
  EXPECT_EQ(innermost->bounds(), CGRectMake(0, 0, 250, 150));
}

}  // namespace
}  // namespace zelkon
