#include <cmath>
#include <numbers>

#include "QuartzCore/LayerFixture.h"

namespace zelkon {
namespace {

class CALayerImplicitAnimation : public LayerFixture {};

TEST_F(CALayerImplicitAnimation, ASetterOfACommittedLayerAnimatesByTheDefaultCurve) {
  const CALayerRef layer = addCommittedLayer();
  layer->setOpacity(0);
  EXPECT_EQ(layer->opacity(), 0);
  EXPECT_EQ(layer->animationKeys(), Lines{"opacity"});
  turnAt(0);
  EXPECT_EQ(shown(layer, 0).opacity, 1);
  EXPECT_NEAR(shown(layer, 0.125).opacity, 1 - 0.8024, 1e-4);
  EXPECT_EQ(shown(layer, 0.25).opacity, 0);
  turnAt(0.25);
  EXPECT_TRUE(layer->animationKeys().empty());
  EXPECT_FALSE(CATransaction::hasRunningAnimations());
}

TEST_F(CALayerImplicitAnimation, NoneForALayerOutsideATree) {
  const CALayerRef layer = CALayer::layer();
  layer->setOpacity(0.5);
  EXPECT_TRUE(layer->animationKeys().empty());
  EXPECT_FALSE(layer->actionForKey("opacity"));
}

TEST_F(CALayerImplicitAnimation, NoneForALayerOfTheSameTransaction) {
  const CALayerRef layer = addLayer();
  layer->setOpacity(0.5);
  EXPECT_TRUE(layer->animationKeys().empty());
  EXPECT_TRUE(layer->actionForKey("opacity"));
}

TEST_F(CALayerImplicitAnimation, ANewLayersExplicitAnimationSurvivesItsSetter) {
  const CALayerRef bar = addLayer();
  CABasicAnimation grow = CABasicAnimation::animationWithKeyPath("bounds");
  grow.fromValue = CGRectMake(100, 50, 30, 0);
  grow.toValue = CGRectMake(100, 50, 30, 120);
  grow.duration = 0.12;
  bar->addAnimation(grow, "bounds");
  bar->setBounds(CGRectMake(100, 50, 30, 120));
  ASSERT_NE(bar->animationForKey("bounds"), nullptr);
  EXPECT_EQ(bar->animationForKey("bounds")->duration, 0.12);
}

TEST_F(CALayerImplicitAnimation, OnALiveLayerTheSetterReplacesIt) {
  const CALayerRef bar = addCommittedLayer();
  bar->addAnimation(animation("bounds", 5), "bounds");
  bar->setBounds(CGRectMake(0, 0, 30, 120));
  EXPECT_EQ(bar->animationForKey("bounds")->duration, 0.25);
}

TEST_F(CALayerImplicitAnimation, AnEqualValueDoesNothing) {
  const CALayerRef layer = addCommittedLayer();
  layer->setBackgroundColor(CGColorCreateGenericRGB(1, 0, 0, 1));
  turnAt(1);
  const unsigned long version = layer->appearanceVersion();
  layer->setOpacity(1);
  layer->setFrame(layer->frame());
  layer->setHidden(false);
  layer->setBackgroundColor(CGColorCreateGenericRGB(1, 0, 0, 1));
  EXPECT_TRUE(layer->animationKeys().empty());
  EXPECT_EQ(layer->appearanceVersion(), version);
}

TEST_F(CALayerImplicitAnimation, NoneWhileActionsAreOff) {
  const CALayerRef layer = addCommittedLayer();
  {
    CATransactionWithoutActions off;
    layer->setOpacity(0.5);
    EXPECT_TRUE(layer->actionForKey("opacity"));
  }
  EXPECT_TRUE(layer->animationKeys().empty());
  EXPECT_EQ(shown(layer, 0).opacity, 0.5);
}

TEST_F(CALayerImplicitAnimation, FrameAnimatesAsBoundsAndPosition) {
  const CALayerRef layer = addCommittedLayer();
  layer->setFrame(CGRectMake(20, 20, 50, 50));
  EXPECT_EQ(layer->animationKeys(), (Lines{"bounds", "position"}));
}

TEST_F(CALayerImplicitAnimation, EveryAnimatablePropertyHasADefaultAction) {
  const CALayerRef layer = addCommittedLayer();
  for (const char* key : {"anchorPoint", "backgroundColor", "borderColor", "borderWidth", "bounds", "contents",
                          "cornerRadius", "hidden", "opacity", "position", "shadowColor", "shadowOffset",
                          "shadowOpacity", "shadowRadius", "transform", "zPosition"})
    EXPECT_TRUE(layer->actionForKey(key)) << key;
  layer->setAnchorPoint({0, 0});
  layer->setZPosition(1);
  layer->setCornerRadius(5);
  layer->setBorderWidth(2);
  layer->setBorderColor(kCGColorWhite());
  layer->setBackgroundColor(kCGColorWhite());
  layer->setShadowOpacity(1);
  layer->setShadowOffset({1, 1});
  layer->setShadowRadius(1);
  layer->setShadowColor(kCGColorWhite());
  layer->setTransform(CATransform3DScale(CATransform3DIdentity, 2, 2, 1));
  EXPECT_EQ(layer->animationKeys(),
            (Lines{"anchorPoint", "zPosition", "cornerRadius", "borderWidth", "borderColor", "backgroundColor",
                   "shadowOpacity", "shadowOffset", "shadowRadius", "shadowColor", "transform"}));
}

TEST_F(CALayerImplicitAnimation, OtherKeysDoNotAnimate) {
  const CALayerRef layer = addCommittedLayer();
  layer->setName("slice");
  layer->setAutoresizingMask(18);
  layer->setFilters({CIFilterCreate(CIExposureAdjust{0.5})});
  EXPECT_TRUE(layer->animationKeys().empty());
  EXPECT_FALSE(layer->actionForKey("frame"));
  EXPECT_FALSE(layer->actionForKey("name"));
}

TEST_F(CALayerImplicitAnimation, AReplacementStartsFromWhatIsShown) {
  const CALayerRef layer = addCommittedLayer();
  layer->setOpacity(0);
  turnAt(0);
  turnAt(0.125);
  layer->setOpacity(1);
  turnAt(0.125);
  EXPECT_NEAR(shown(layer, 0.125).opacity, 0.1976, 1e-4);
  EXPECT_NEAR(shown(layer, 0.25).opacity, 0.1976 + 0.8024 * 0.8024, 1e-4);
}

TEST_F(CALayerImplicitAnimation, ReinsertingALiveLayerLeavesItAnimating) {
  const CALayerRef layer = addCommittedLayer();
  addCommittedLayer();
  CABasicAnimation fade = animation("opacity", 10);
  layer->addAnimation(fade, "fade");
  turnAt(0);
  root->addSublayer(layer);
  layer->setPosition({50, 50});
  turnAt(0.1);
  EXPECT_EQ(layer->animationKeys(), (Lines{"fade", "position"}));
  EXPECT_EQ(diary->take(), Lines{"start opacity"});
}

TEST_F(CALayerImplicitAnimation, HidingFadesWhileTheModelIsFinal) {
  const CALayerRef layer = addCommittedLayer();
  layer->setHidden(true);
  EXPECT_TRUE(layer->isHidden());
  EXPECT_EQ(layer->animationKeys(), Lines{"hidden"});
  turnAt(0);
  EXPECT_NEAR(shown(layer, 0.125).hiddenFade, 1 - 0.8024, 1e-4);
  EXPECT_EQ(shown(layer, 0.25).hiddenFade, 0);
  turnAt(0.3);
  layer->setHidden(false);
  turnAt(0.3);
  EXPECT_NEAR(shown(layer, 0.425).hiddenFade, 0.8024, 1e-4);
}

TEST_F(CALayerImplicitAnimation, TheTransactionSaysHowLongAndByWhichCurve) {
  const CALayerRef layer = addCommittedLayer();
  CATransaction::begin();
  CATransaction::setAnimationDuration(4);
  CATransaction::setAnimationTimingFunction(kCAMediaTimingFunctionLinear);
  layer->setHidden(true);
  CATransaction::commit();
  turnAt(0);
  EXPECT_NEAR(shown(layer, 1).hiddenFade, 0.75, 1e-12);
  EXPECT_EQ(layer->animationForKey("hidden")->duration, 4);
}

TEST_F(CALayerImplicitAnimation, DefaultActionWithATargetRunsToIt) {
  const CALayerRef layer = addCommittedLayer();
  CATransactionWithoutActions off;
  layer->setOpacity(0);
  std::optional<CABasicAnimation> action = layer->actionForKey("opacity");
  ASSERT_TRUE(action);
  EXPECT_EQ(action->keyPath, "opacity");
  EXPECT_EQ(action->duration, 0);
  EXPECT_EQ(action->timingFunction, kCAMediaTimingFunctionDefault);
  EXPECT_EQ(action->fillMode, CAFillMode::backwards);
  EXPECT_TRUE(action->removedOnCompletion);
  EXPECT_FALSE(action->toValue);
  EXPECT_EQ(std::get<double>(*action->fromValue), 0);
}

TEST_F(CALayerImplicitAnimation, PieStartUp) {
  const CALayerRef slices = addCommittedLayer();
  const CATransform3D turned =
      CATransform3DRotate(CATransform3DScale(CATransform3DIdentity, 0.1, 0.1, 1), std::numbers::pi, 0, 0, 1);
  {
    CATransactionWithoutActions off;
    slices->setOpacity(0);
    slices->setTransform(turned);
  }
  for (const char* key : {"opacity", "transform"}) {
    std::optional<CABasicAnimation> action = slices->actionForKey(key);
    ASSERT_TRUE(action);
    if (std::string(key) == "opacity")
      action->toValue = 1.0;
    else
      action->toValue = CATransform3DIdentity;
    action->delegate = diary;
    slices->addAnimation(*action, key);
  }
  {
    CATransactionWithoutActions off;
    slices->setOpacity(1);
    slices->setTransform(CATransform3DIdentity);
  }
  EXPECT_EQ(slices->opacity(), 1);
  turnAt(0);
  const CALayerProperties half = shown(slices, 0.125);
  EXPECT_NEAR(half.opacity, 0.802, 5e-4);
  EXPECT_NEAR(std::hypot(half.transform.m11, half.transform.m12), 0.822, 5e-4);
  EXPECT_NEAR(std::atan2(half.transform.m12, half.transform.m11) * 180 / std::numbers::pi, 35.6, 0.05);
  EXPECT_EQ(diary->take(), (Lines{"start opacity", "start transform"}));
  turnAt(0.25);
  EXPECT_EQ(diary->take(), (Lines{"end opacity", "end transform"}));
}

}  // namespace
}  // namespace zelkon
