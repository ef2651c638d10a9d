#include <cmath>

#include "QuartzCore/LayerFixture.h"

namespace zelkon {
namespace {

class CALayerAnimation : public LayerFixture {};

TEST_F(CALayerAnimation, BarGrowsUpward) {
  const CALayerRef bar = CALayer::layer();
  bar->setAnchorPoint({0.5, 0});
  bar->setFrame(CGRectMake(100, 50, 30, 0));
  const CGRect empty = CGRectMake(100, 50, 30, 0), full = CGRectMake(100, 50, 30, 120);
  bar->setBounds(full);
  CABasicAnimation grow = CABasicAnimation::animationWithKeyPath("bounds");
  grow.fromValue = empty;
  grow.toValue = full;
  grow.duration = 0.12;
  bar->addAnimation(grow, "bounds");
  root->addSublayer(bar);
  turnAt(0);
  EXPECT_EQ(shown(bar, 0).bounds, empty);
  for (const auto& [time, barHeight] : {std::pair{0.03, 30.0}, {0.06, 60.0}, {0.12, 120.0}, {0.5, 120.0}}) {
    const CALayerProperties p = shown(bar, time);
    EXPECT_NEAR(p.bounds.size.height, barHeight, 1e-6) << time;
    EXPECT_NEAR(CALayerFrame(p).origin.y, 50, 1e-6);
    EXPECT_NEAR(CALayerFrame(p).size.height, barHeight, 1e-6);
    EXPECT_EQ(CALayerToSuperlayerTransform(p), CGAffineTransformIdentity);
  }
}

TEST_F(CALayerAnimation, BarGrowsDownward) {
  const CALayerRef bar = CALayer::layer();
  bar->setAnchorPoint({0.5, 1});
  bar->setFrame(CGRectMake(100, 50, 30, 0));
  EXPECT_EQ(bar->position(), (CGPoint{115, 50}));
  bar->setBounds(CGRectMake(100, 20, 30, 30));
  EXPECT_EQ(bar->frame(), CGRectMake(100, 20, 30, 30));
  CABasicAnimation grow = CABasicAnimation::animationWithKeyPath("bounds");
  grow.fromValue = CGRectMake(100, 50, 30, 0);
  grow.toValue = CGRectMake(100, 20, 30, 30);
  grow.duration = 0.03;
  bar->addAnimation(grow, "bounds");
  root->addSublayer(bar);
  turnAt(0);
  const CALayerProperties half = shown(bar, 0.015);
  EXPECT_NEAR(half.bounds.origin.y, 35, 1e-9);
  EXPECT_NEAR(CALayerFrame(half).origin.y, 35, 1e-9);
  EXPECT_NEAR(CALayerFrame(half).size.height, 15, 1e-9);
  for (const double time : {0.0, 0.01, 0.015, 0.02, 0.03}) {
    const CALayerProperties p = shown(bar, time);
    EXPECT_NEAR(CGRectGetMaxY(CALayerFrame(p)), 50, 1e-9) << time;
    const CGAffineTransform place = CALayerToSuperlayerTransform(p);
    EXPECT_NEAR(place.tx, 0, 1e-9) << time;
    EXPECT_NEAR(place.ty, 0, 1e-9) << time;
  }
}

TEST_F(CALayerAnimation, AWipeUncoversABodyThatStandsStill) {
  const CGRect plot = CGRectMake(85, 61, 400, 200);
  const CALayerRef clip = CALayer::layer(), body = CALayer::layer();
  clip->setAnchorPoint({0, 0.5});
  clip->setFrame(CGRectMake(85, 61, 0, 200));
  EXPECT_EQ(clip->position(), (CGPoint{85, 161}));
  EXPECT_EQ(clip->bounds(), CGRectMake(0, 0, 0, 200));
  body->setFrame(plot);
  clip->addSublayer(body);
  const auto bodyCorner = [&](const CALayerProperties& p) {
    return CGPointApplyAffineTransform(body->frame().origin, CALayerToSuperlayerTransform(p));
  };
  EXPECT_EQ(bodyCorner(clip->model()), (CGPoint{85 + 85, 61 + 61})) << "before the clip has the plot's origin";
  clip->setBounds(plot);
  EXPECT_EQ(clip->frame(), plot);
  CABasicAnimation wipe = CABasicAnimation::animationWithKeyPath("bounds");
  wipe.fromValue = CGRectMake(85, 61, 0, 200);
  wipe.toValue = plot;
  wipe.duration = 1;
  clip->addAnimation(wipe, "bounds");
  root->addSublayer(clip);
  turnAt(0);
  for (const double time : {0.0, 0.25, 0.5, 1.0}) EXPECT_EQ(bodyCorner(shown(clip, time)), (CGPoint{85, 61})) << time;
  const CGRect quarter = CALayerFrame(shown(clip, 0.25));
  EXPECT_NEAR(CGRectGetMinX(quarter), 85, 1e-9);
  EXPECT_NEAR(CGRectGetMaxX(quarter), 185, 1e-9);
}

TEST_F(CALayerAnimation, FromOnlyRunsToTheModelAndToOnlyFromIt) {
  const CALayerRef layer = addLayer();
  layer->setOpacity(0.8);
  CABasicAnimation from = CABasicAnimation::animationWithKeyPath("opacity");
  from.fromValue = 0.0;
  from.duration = 1;
  layer->addAnimation(from, "a");
  turnAt(0);
  EXPECT_NEAR(shown(layer, 0.5).opacity, 0.4, 1e-12);
  layer->removeAllAnimations();
  CABasicAnimation to = CABasicAnimation::animationWithKeyPath("opacity");
  to.toValue = 0.0;
  to.duration = 1;
  layer->addAnimation(to, "a");
  turnAt(0);
  EXPECT_NEAR(shown(layer, 0.5).opacity, 0.4, 1e-12);
  EXPECT_NEAR(shown(layer, 1).opacity, 0.8, 1e-12);
}

TEST_F(CALayerAnimation, WithoutEndsItRunsFromWhatWasShownToTheModel) {
  const CALayerRef layer = addCommittedLayer();
  {
    CATransactionWithoutActions off;
    layer->setOpacity(0.8);
    CABasicAnimation neither = CABasicAnimation::animationWithKeyPath("opacity");
    neither.duration = 1;
    layer->addAnimation(neither, "a");
    layer->setOpacity(0.2);
  }
  turnAt(0);
  EXPECT_NEAR(shown(layer, 0).opacity, 0.8, 1e-12);
  EXPECT_NEAR(shown(layer, 0.5).opacity, 0.5, 1e-12);
  EXPECT_NEAR(shown(layer, 1).opacity, 0.2, 1e-12);
}

TEST_F(CALayerAnimation, FillModesHoldTheEnds) {
  const CALayerRef layer = addLayer();
  layer->setOpacity(0.5);
  const auto opacityAt = [&](CAFillMode mode, double time) {
    layer->removeAllAnimations();
    CABasicAnimation held = animation("opacity", 1);
    held.fromValue = 0.1;
    held.toValue = 0.9;
    held.beginTime = 1;
    held.fillMode = mode;
    held.removedOnCompletion = false;
    layer->addAnimation(held, "held");
    turnAt(0);
    return shown(layer, time).opacity;
  };
  EXPECT_EQ(opacityAt(CAFillMode::removed, 0.5), 0.5);
  EXPECT_EQ(opacityAt(CAFillMode::backwards, 0.5), 0.1);
  EXPECT_EQ(opacityAt(CAFillMode::forwards, 0.5), 0.5);
  EXPECT_NEAR(opacityAt(CAFillMode::removed, 1.5), 0.5, 1e-12);
  EXPECT_EQ(opacityAt(CAFillMode::removed, 2.5), 0.5);
  EXPECT_EQ(opacityAt(CAFillMode::backwards, 2.5), 0.5);
  EXPECT_EQ(opacityAt(CAFillMode::forwards, 2.5), 0.9);
  EXPECT_EQ(opacityAt(CAFillMode::both, 0.5), 0.1);
  EXPECT_EQ(opacityAt(CAFillMode::both, 2.5), 0.9);
}

TEST_F(CALayerAnimation, TheLayerKeepsACopy) {
  const CALayerRef layer = addLayer();
  CABasicAnimation original = animation("opacity", 0.5, "first");
  original.setValue("slice", "kind");
  layer->addAnimation(original, "fade");
  original.duration = 9;
  original.setValue("other", "kind");
  EXPECT_EQ(layer->animationForKey("fade")->duration, 0.5);
  EXPECT_EQ(layer->animationForKey("fade")->valueForKey("kind").string(), "slice");
  turnAt(0);
  turnAt(0.5);
  ASSERT_EQ(diary->stopped.size(), 1u);
  EXPECT_EQ(diary->stopped[0].valueForKey("kind").string(), "slice");
}

TEST_F(CALayerAnimation, WithoutADurationItTakesTheTransactions) {
  const CALayerRef layer = addLayer();
  layer->addAnimation(animation("opacity", 0), "a");
  EXPECT_EQ(layer->animationForKey("a")->duration, 0.25);
  CATransaction::begin();
  CATransaction::setAnimationDuration(0);
  layer->addAnimation(animation("opacity", 0), "b");
  CATransaction::commit();
  EXPECT_EQ(layer->animationForKey("b")->duration, 0);
  layer->removeAnimationForKey("a");
  turn();
  EXPECT_EQ(diary->take(), (Lines{"start opacity", "cut opacity", "end opacity"}));
}

// ---- delivery ----

TEST_F(CALayerAnimation, BarsAndTheirEnd) {
  const CALayerRef tall = addLayer(), low = addLayer(), flat = addLayer();
  tall->addAnimation(animation("bounds", 0.15, "tall"), "bounds");
  low->addAnimation(animation("bounds", 0.04, "low"), "bounds");
  flat->addAnimation(animation("bounds", 0, "flat"), "bounds");
  turnAt(0);
  EXPECT_EQ(diary->take(), (Lines{"start tall", "start low", "start flat"}));
  turnAt(0.039);
  EXPECT_EQ(diary->take(), Lines{});
  turnAt(0.04);
  EXPECT_EQ(diary->take(), Lines{"end low"});
  turnAt(0.16);
  EXPECT_EQ(diary->take(), Lines{"end tall"});
  EXPECT_TRUE(CATransaction::hasRunningAnimations());
  turnAt(0.25);
  EXPECT_EQ(diary->take(), Lines{"end flat"});
  EXPECT_FALSE(CATransaction::hasRunningAnimations());
}

TEST_F(CALayerAnimation, EndsComeInOrderOfTimeThenOfAdding) {
  const CALayerRef a = addLayer(), b = addLayer(), c = addLayer();
  c->addAnimation(animation("opacity", 0.5, "c"), "x");
  b->addAnimation(animation("opacity", 0.5, "b"), "x");
  a->addAnimation(animation("opacity", 0.2, "a"), "x");
  turnAt(0);
  diary->take();
  turnAt(3);
  EXPECT_EQ(diary->take(), (Lines{"end a", "end c", "end b"}));
}

TEST_F(CALayerAnimation, ReplacedAndRemovedOnesDidNotFinish) {
  const CALayerRef layer = addLayer();
  layer->addAnimation(animation("opacity", 1, "first"), "x");
  turnAt(0);
  diary->take();
  layer->addAnimation(animation("opacity", 1, "second"), "x");
  layer->addAnimation(animation("opacity", 1, "third"), "y");
  EXPECT_EQ(diary->take(), Lines{}) << "not inside the call";
  turnAt(0);
  EXPECT_EQ(diary->take(), (Lines{"start second", "start third", "cut first"}));
  layer->removeAllAnimations();
  turnAt(0.1);
  EXPECT_EQ(diary->take(), (Lines{"cut second", "cut third"}));
  turnAt(5);
  EXPECT_EQ(diary->take(), Lines{});
}

TEST_F(CALayerAnimation, ALayerThatLeavesTheTreeCutsThemShort) {
  const CALayerRef outer = addLayer(), inner = CALayer::layer();
  outer->addSublayer(inner);
  inner->addAnimation(animation("opacity", 1, "inner"), "x");
  turnAt(0);
  diary->take();
  outer->removeFromSuperlayer();
  turnAt(0.1);
  EXPECT_EQ(diary->take(), Lines{"cut inner"});
  EXPECT_TRUE(inner->animationKeys().empty());
  inner->setOpacity(0);
  EXPECT_TRUE(inner->animationKeys().empty());
}

TEST_F(CALayerAnimation, ALayerThatDiesCutsThemShort) {
  CALayerRef layer = CALayer::layer();
  layer->addAnimation(animation("opacity", 1, "waiting"), "x");
  layer.reset();
  turn();
  EXPECT_EQ(diary->take(), Lines{"cut waiting"});
}

TEST_F(CALayerAnimation, OutsideATreeTheyWait) {
  const CALayerRef layer = CALayer::layer();
  layer->addAnimation(animation("opacity", 1, "late"), "x");
  turnAt(5);
  EXPECT_EQ(diary->take(), Lines{});
  EXPECT_FALSE(CATransaction::hasRunningAnimations());
  root->addSublayer(layer);
  turnAt(5);
  EXPECT_EQ(diary->take(), Lines{"start late"});
  EXPECT_NEAR(shown(layer, 5.25).opacity, 0.25, 1e-9);
  turnAt(6);
  EXPECT_EQ(diary->take(), Lines{"end late"});
}

TEST_F(CALayerAnimation, ThoseThatStayAreToldOnceAndGoSilently) {
  const CALayerRef layer = addLayer();
  CABasicAnimation stays = animation("opacity", 0.1, "stays");
  stays.removedOnCompletion = false;
  layer->addAnimation(stays, "x");
  turnAt(0);
  diary->take();
  turnAt(0.2);
  EXPECT_EQ(diary->take(), Lines{"end stays"});
  EXPECT_EQ(layer->animationKeys(), Lines{"x"});
  EXPECT_EQ(shown(layer, 0.2).opacity, 1) << "the model shows";
  EXPECT_FALSE(CATransaction::hasRunningAnimations());
  layer->removeAnimationForKey("x");
  turnAt(0.3);
  EXPECT_EQ(diary->take(), Lines{});
}

TEST_F(CALayerAnimation, HiddenLayersReportTheirEnd) {
  const CALayerRef layer = addLayer();
  layer->setHidden(true);
  layer->addAnimation(animation("opacity", 0.1), "x");
  turnAt(0);
  turnAt(0.1);
  EXPECT_EQ(diary->take(), (Lines{"start opacity", "end opacity"}));
}

struct Restarter : CAAnimationDelegate {
  CALayerRef layer;
  CALayerRef other;
  int stops = 0;
  void animationDidStop(const CABasicAnimation& animation, bool) override {
    ++stops;
    EXPECT_EQ(layer->animationForKey("x"), nullptr) << "gone before its delegate hears of it";
    if (other) other->removeAllAnimations();
    if (stops < 3) layer->addAnimation(animation, "x");
    layer->setOpacity(0.5);
  }
};

TEST_F(CALayerAnimation, ADelegateMayChangeLayers) {
  const auto restarter = std::make_shared<Restarter>();
  restarter->layer = addLayer();
  restarter->other = addLayer();
  CABasicAnimation again = animation("opacity", 0.1);
  again.delegate = restarter;
  restarter->layer->addAnimation(again, "x");
  restarter->other->addAnimation(animation("opacity", 0.1, "other"), "x");
  turnAt(0);
  for (int i = 1; i < 10; ++i) turnAt(i * 0.2);
  EXPECT_EQ(restarter->stops, 3);
  EXPECT_EQ(diary->take(), (Lines{"start other", "end other"}));
}

TEST_F(CALayerAnimation, AnUnnamedOneReplacesNothing) {
  const CALayerRef layer = addLayer();
  layer->addAnimation(animation("opacity", 1), "");
  layer->addAnimation(animation("opacity", 1), "");
  EXPECT_TRUE(layer->animationKeys().empty());
  turnAt(0);
  turnAt(1);
  EXPECT_EQ(diary->take(), (Lines{"start opacity", "start opacity", "end opacity", "end opacity"}));
}

TEST_F(CALayerAnimation, AValueOfTheWrongKindChangesNothing) {
  const CALayerRef layer = addLayer();
  CABasicAnimation odd = animation("bounds", 1);
  layer->addAnimation(odd, "x");
  turnAt(0);
  EXPECT_EQ(shown(layer, 0.5).bounds, layer->bounds());
}

TEST_F(CALayerAnimation, OddDurationsEnd) {
  const CALayerRef layer = addLayer();
  layer->addAnimation(animation("opacity", std::nan("")), "x");
  layer->addAnimation(animation("opacity", -3), "y");
  turnAt(0);
  turnAt(0.25);
  EXPECT_FALSE(CATransaction::hasRunningAnimations());
}

}  // namespace
}  // namespace zelkon
