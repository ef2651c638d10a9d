#include <numbers>

#include "QuartzCore/CompositorFixture.h"

namespace zelkon {
namespace {

TEST_F(CACompositorTest, PlacesTheRootByItsFrame) {
  root->setFrame(CGRectMake(7, 8, 400, 300));
  addFilled(CGRectMake(10, 20, 30, 40), red);
  CATransaction::flush();
  EXPECT_EQ(composed(1), Lines{"fill [17 28 30 40] 1,0,0,1"});
}

TEST_F(CACompositorTest, OrdersBackgroundContentsSublayersBorder) {
  struct Dot : CALayerDelegate {
    void drawLayer(CALayer&, CGContext& context) override { context.fillRect(CGRectMake(1, 1, 2, 2)); }
  };
  const auto dot = std::make_shared<Dot>();
  const CALayerRef layer = addFilled(CGRectMake(0, 0, 20, 20), red);
  layer->setBorderWidth(1);
  layer->setBorderColor(blue);
  layer->setDelegate(dot);
  layer->setNeedsDisplay();
  const CALayerRef inner = CALayer::layer();
  inner->setFrame(CGRectMake(5, 5, 5, 5));
  inner->setBackgroundColor(blue);
  layer->addSublayer(inner);
  EXPECT_EQ(composed(), (Lines{"fill [0 0 20 20] 1,0,0,1", "clip [0 0 20 20]", "fill [1 1 2 2] 0,0,0,1",
                               "fill [5 5 5 5] 0,0,1,1", "eofill [0 0 20 20] 0,0,1,1"}));
}

TEST_F(CACompositorTest, LeavesOutWhatCannotBeSeen) {
  addFilled(CGRectMake(0, 0, 10, 10), red)->setHidden(true);
  addFilled(CGRectMake(0, 0, 10, 10), red)->setOpacity(0);
  addFilled(CGRectMake(0, 0, 10, 10), red)->setTransform(CATransform3DScale(CATransform3DIdentity, 0, 1, 1));
  addFilled(CGRectMake(0, 0, 10, 10), red)->setTransform(CATransform3D{});
  EXPECT_EQ(composed(), Lines{});
}

TEST_F(CACompositorTest, AFillTakesItsOpacityByItselfMoreThanOneThingAsAGroup) {
  const CALayerRef layer = addFilled(CGRectMake(0, 0, 10, 10), red);
  layer->setOpacity(0.5);
  EXPECT_EQ(composed(), Lines{"fill [0 0 10 10] 1,0,0,0.5"});
  const CALayerRef inner = CALayer::layer();
  inner->setFrame(CGRectMake(0, 0, 5, 5));
  inner->setBackgroundColor(blue);
  layer->addSublayer(inner);
  EXPECT_EQ(composed(1), (Lines{"group a0.5", "fill [0 0 10 10] 1,0,0,1", "fill [0 0 5 5] 0,0,1,1", "end"}));
}

TEST_F(CACompositorTest, ShowsPresentationValues) {
  const CALayerRef layer = addFilled(CGRectMake(0, 0, 10, 10), red);
  CATransaction::flush();
  layer->setPosition({105, 5});
  layer->setHidden(true);
  EXPECT_EQ(composed(0.125), Lines{"fill [80.24 0 10 10] 1,0,0,0.1976"});
  EXPECT_EQ(composed(0.25), Lines{});
}

TEST_F(CACompositorTest, ShadowLiesUnderTheWholeLayerAndTurnsWithIt) {
  const CALayerRef layer = addFilled(CGRectMake(0, 0, 20, 20), red);
  layer->setShadowOpacity(0.2);
  layer->setShadowRadius(2.5);
  layer->setShadowOffset({1, -4});
  EXPECT_EQ(composed(),
            (Lines{"group a1", "group a1 shadow 1,-4 s2.5 0,0,0,0.2", "fill [0 0 20 20] 1,0,0,1", "end", "end"}));
  {
    CATransactionWithoutActions off;
    const CATransform3D grown = CATransform3DScale(CATransform3DIdentity, 2, 2, 1);
    layer->setTransform(CATransform3DRotate(grown, std::numbers::pi / 2, 0, 0, 1));
  }
  const Lines turned = composed(1);
  ASSERT_EQ(turned.size(), 5u);
  EXPECT_EQ(turned[1], "group a1 shadow 8,2 s5 0,0,0,0.2");
}

TEST_F(CACompositorTest, ExposureBrightensTheGroup) {
  addFilled(CGRectMake(0, 0, 20, 20), red)->setFilters({CIFilterCreate(CIExposureAdjust{0.5})});
  EXPECT_EQ(composed(), (Lines{"group a1", "group a1 x1.414", "fill [0 0 20 20] 1,0,0,1", "end", "end"}));
}

TEST_F(CACompositorTest, AGradientFilterStandsInForTheContentOfAMask) {
  const CALayerRef disc = addFilled(CGRectMake(0, 0, 300, 183), red), mask = CALayer::layer();
  mask->setFrame(CGRectMake(0, 0, 300, 183));
  mask->setBackgroundColor(blue);
  mask->setFilters({CIFilterCreate(CIGaussianGradient{{212, 166}, 158, {0, 0, 0, 0}, {0, 0, 0, 1}})});
  disc->setMask(mask);
  disc->setOpacity(0.5);
  EXPECT_EQ(composed(), (Lines{"group a0.5", "fill [0 0 300 183] 1,0,0,1", "group a1 destinationIn",
                               "clip [0 0 300 183]", "gradient at 212,166 r158", "end", "end"}));
}

TEST_F(CACompositorTest, AHiddenMaskLeavesNothing) {
  const CALayerRef disc = addFilled(CGRectMake(0, 0, 300, 183), red), mask = CALayer::layer();
  mask->setFrame(CGRectMake(0, 0, 300, 183));
  mask->setBackgroundColor(blue);
  mask->setHidden(true);
  disc->setMask(mask);
  EXPECT_EQ(composed(), Lines{});
}

TEST_F(CACompositorTest, AMaskOfItselfEnds) {
  const CALayerRef disc = addFilled(CGRectMake(0, 0, 30, 30), red), mask = CALayer::layer();
  mask->setFrame(CGRectMake(0, 0, 30, 30));
  mask->setBackgroundColor(blue);
  mask->setMask(mask);
  disc->setMask(mask);
  EXPECT_FALSE(composed().empty());
  mask->setMask(nullptr);
}

TEST_F(CACompositorTest, OddNumbersHarmNothing) {
  for (const double odd : {HUGE_VAL, -HUGE_VAL, std::nan(""), 1e300, -1e300}) {
    const CALayerRef layer = addFilled(CGRectMake(0, 0, 20, 20), red);
    layer->setShadowOpacity(odd);
    layer->setShadowRadius(odd);
    layer->setShadowOffset({odd, odd});
    layer->setCornerRadius(odd);
    layer->setBorderWidth(odd);
    layer->setZPosition(odd);
    layer->setOpacity(odd);
    layer->setFilters({CIFilterCreate(CIExposureAdjust{odd}),
                       CIFilterCreate(CIGaussianGradient{{odd, odd}, odd, {0, 0, 0, 0}, {odd, odd, odd, odd}})});
    const CALayerRef moved = addFilled(CGRectMake(0, 0, 20, 20), red);
    moved->setTransform(CATransform3DScale(CATransform3DIdentity, odd, odd, 1));
    moved->setPosition({odd, odd});
    addFilled(CGRectMake(odd, odd, odd, odd), red)->setShadowOpacity(1);
  }
  for (const std::string& line : composed()) EXPECT_EQ(line.find("nan"), std::string::npos) << line;
}

TEST_F(CACompositorTest, AGradientWithoutARadiusIsItsOuterColour) {
  addFilled(CGRectMake(0, 0, 20, 20), red)
      ->setFilters({CIFilterCreate(CIGaussianGradient{{5, 5}, 0, {0, 0, 0, 0}, {0, 0, 1, 1}})});
  EXPECT_EQ(composed(), Lines{"fill [0 0 20 20] 0,0,1,1"});
}

TEST_F(CACompositorTest, OverlayMixesWithWhatLiesBelow) {
  addFilled(CGRectMake(0, 0, 50, 50), blue);
  addFilled(CGRectMake(0, 0, 20, 20), red)->setCompositingFilter(CIFilterCreate(CIOverlayBlendMode{}));
  EXPECT_EQ(composed(), (Lines{"fill [0 0 50 50] 0,0,1,1", "group a1 overlay", "fill [0 0 20 20] 1,0,0,1", "end"}));
}

TEST_F(CACompositorTest, MaskingToBoundsClipsSublayersAndTheShadow) {
  const CALayerRef layer = addFilled(CGRectMake(0, 0, 20, 20), red);
  layer->setMasksToBounds(true);
  const CALayerRef inner = CALayer::layer();
  inner->setFrame(CGRectMake(5, 5, 50, 50));
  inner->setBackgroundColor(blue);
  layer->addSublayer(inner);
  EXPECT_EQ(composed(), (Lines{"fill [0 0 20 20] 1,0,0,1", "clip [0 0 20 20]", "fill [5 5 50 50] 0,0,1,1"}));
  layer->setShadowOpacity(1);
  const Lines shadowed = composed();
  ASSERT_GT(shadowed.size(), 2u);
  EXPECT_EQ(shadowed[1], "clip [0 0 20 20]");
}

TEST_F(CACompositorTest, CentredContentsKeepTheirSize) {
  const CALayerRef layer = addLayer(CGRectMake(0, 0, 300, 183));
  RecordingContext drawing;
  drawing.fillRect(CGRectMake(0, 0, 163, 163));
  layer->setContentsGravity(CAContentsGravity::center);
  layer->setContents(std::make_shared<const CGImage>(drawing.snapshot(), 163, 163));
  EXPECT_EQ(composed(1), (Lines{"clip [68.5 10 163 163]", "fill [68.5 10 163 163] 0,0,0,1"}));
}

TEST_F(CACompositorTest, ChangedContentsFadeIntoEachOther) {
  const auto picture = [](double side) {
    RecordingContext drawing;
    drawing.fillRect(CGRectMake(0, 0, side, side));
    return std::make_shared<const CGImage>(drawing.snapshot(), 10, 10);
  };
  const CALayerRef layer = addLayer();
  layer->setContents(picture(3));
  CATransaction::flush();
  CATransaction::begin();
  CATransaction::setAnimationTimingFunction(kCAMediaTimingFunctionLinear);
  layer->setContents(picture(7));
  CATransaction::commit();
  EXPECT_EQ(composed(0.0625),
            (Lines{"group a1", "group a0.75", "clip [0 0 10 10]", "fill [0 0 3 3] 0,0,0,1", "end",
                   "group a0.25 plusLighter", "clip [0 0 10 10]", "fill [0 0 7 7] 0,0,0,1", "end", "end"}));
  EXPECT_EQ(composed(0.25), (Lines{"clip [0 0 10 10]", "fill [0 0 7 7] 0,0,0,1"}));
}

TEST_F(CACompositorTest, HigherZPositionsComeLater) {
  addFilled(CGRectMake(0, 0, 1, 1), red)->setZPosition(1);
  addFilled(CGRectMake(0, 0, 2, 2), red);
  addFilled(CGRectMake(0, 0, 3, 3), red);
  EXPECT_EQ(composed(), (Lines{"fill [0 0 2 2] 1,0,0,1", "fill [0 0 3 3] 1,0,0,1", "fill [0 0 1 1] 1,0,0,1"}));
}

TEST_F(CACompositorTest, WritesNothingToTheLayers) {
  const CALayerRef layer = addFilled(CGRectMake(0, 0, 10, 10), red);
  composed();
  const unsigned long version = root->subtreeVersion();
  composed(1);
  EXPECT_EQ(root->subtreeVersion(), version);
  EXPECT_EQ(changes, 1);
}

TEST_F(CACompositorTest, DeepAndBroadTreesAreComposed) {
  CALayerRef layer = root;
  for (int i = 0; i < 10000; ++i) {
    const CALayerRef inner = CALayer::layer();
    inner->setBounds(CGRectMake(0, 0, 2, 2));
    inner->setBackgroundColor(red);
    layer->addSublayer(inner);
    layer = inner;
  }
  layer.reset();
  EXPECT_EQ(composed().size(), 10000u);
}

}  // namespace
}  // namespace zelkon
