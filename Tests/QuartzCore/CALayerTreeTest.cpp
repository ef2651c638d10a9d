
#include "Foundation/NSException.h"
#include "QuartzCore/LayerFixture.h"

namespace zelkon {
namespace {

class CALayerTree : public LayerFixture {};

TEST_F(CALayerTree, AddingAgainMovesToTheTop) {
  const CALayerRef a = addLayer(), b = addLayer();
  root->addSublayer(a);
  EXPECT_EQ(root->sublayers(), (std::vector<CALayerRef>{b, a}));
  EXPECT_EQ(a->superlayer(), root);
}

TEST_F(CALayerTree, ALayerHasOneSuperlayer) {
  const CALayerRef a = addLayer(), b = addLayer(), child = CALayer::layer();
  a->addSublayer(child);
  b->addSublayer(child);
  EXPECT_TRUE(a->sublayers().empty());
  EXPECT_EQ(child->superlayer(), b);
}

TEST_F(CALayerTree, InsertsBesideASibling) {
  const CALayerRef a = addLayer(), b = addLayer(), below = CALayer::layer(), above = CALayer::layer();
  root->insertSublayerBelow(below, b);
  root->insertSublayerAbove(above, a);
  EXPECT_EQ(root->sublayers(), (std::vector<CALayerRef>{a, above, below, b}));
  root->insertSublayerAbove(a, b);
  EXPECT_EQ(root->sublayers(), (std::vector<CALayerRef>{above, below, b, a}));
  EXPECT_THROW(root->insertSublayerBelow(CALayer::layer(), CALayer::layer()), NSException);
}

TEST_F(CALayerTree, RefusesCycles) {
  const CALayerRef a = addLayer(), b = CALayer::layer();
  a->addSublayer(b);
  EXPECT_THROW(b->addSublayer(a), NSException);
  EXPECT_THROW(b->addSublayer(root), NSException);
  EXPECT_THROW(b->addSublayer(b), NSException);
  EXPECT_EQ(b->superlayer(), a);
  EXPECT_TRUE(b->sublayers().empty());
}

TEST_F(CALayerTree, TheListIsASnapshot) {
  const CALayerRef a = addLayer(), b = addLayer();
  for (const CALayerRef& layer : root->sublayers()) layer->removeFromSuperlayer();
  EXPECT_TRUE(root->sublayers().empty());
  EXPECT_EQ(a->superlayer(), nullptr);
}

TEST_F(CALayerTree, AReferenceIntoTheListMayBeAdded) {
  const CALayerRef a = addLayer(), b = addLayer();
  root->addSublayer(root->sublayersInPlace().front());
  EXPECT_EQ(root->sublayers(), (std::vector<CALayerRef>{b, a}));
}

TEST_F(CALayerTree, IsLiveBelowAnObserver) {
  const CALayerRef outer = CALayer::layer(), inner = CALayer::layer();
  outer->addSublayer(inner);
  EXPECT_FALSE(inner->isLive());
  root->addSublayer(outer);
  EXPECT_TRUE(inner->isLive());
  outer->removeFromSuperlayer();
  EXPECT_FALSE(inner->isLive());
  root->addSublayer(outer);
  root->setTreeObserver(nullptr);
  EXPECT_FALSE(inner->isLive());
}

TEST_F(CALayerTree, ValuesUnderAnyKey) {
  const CALayerRef layer = addLayer(), stored = CALayer::layer();
  EXPECT_TRUE(layer->valueForKey("com.zelkon.label").isNull());
  layer->setValue(stored, "com.zelkon.label");
  EXPECT_EQ(layer->valueForKey("com.zelkon.label").object<CALayer>(), stored);
  EXPECT_EQ(stored->superlayer(), nullptr);
  root->removeFromSuperlayer();
  EXPECT_EQ(layer->valueForKey("com.zelkon.label").object<CALayer>(), stored);
  layer->setValue(Value(), "com.zelkon.label");
  EXPECT_TRUE(layer->valueForKey("com.zelkon.label").isNull());
}

TEST_F(CALayerTree, SurvivorsOfADeadSuperlayerAreFree) {
  CALayerRef outer = addLayer();
  const CALayerRef inner = CALayer::layer();
  outer->addSublayer(inner);
  outer->removeFromSuperlayer();
  outer.reset();
  EXPECT_EQ(inner->superlayer(), nullptr);
  EXPECT_FALSE(inner->isLive());
}

TEST_F(CALayerTree, TenThousandLayersDeep) {
  CALayerRef layer = root;
  for (int i = 0; i < 10000; ++i) {
    const CALayerRef inner = CALayer::layer();
    inner->setBackgroundColor(kCGColorBlack());
    layer->addSublayer(inner);
    layer = inner;
  }
  CATransaction::flush();
  layer->setOpacity(0.5);
  CATransaction::flush();
  EXPECT_EQ(changes, 2);
  layer.reset();
  root->sublayers().front()->removeFromSuperlayer();
  CATransaction::flush();
}

// ---- display ----

struct Drawer : CALayerDelegate {
  int draws = 0;
  bool fails = false;
  void drawLayer(CALayer& layer, CGContext& context) override {
    ++draws;
    if (fails) NSRaise(NSInternalInconsistencyException, "no drawing today");
    context.setFillColor({1, 0, 0, 1});
    context.fillRect(layer.bounds());
  }
};

class CALayerDisplay : public LayerFixture {
 protected:
  CALayerRef addDrawn(CGRect bounds) {
    const CALayerRef layer = addLayer();
    layer->setBounds(bounds);
    layer->setDelegate(drawer);
    layer->setNeedsDisplay();
    return layer;
  }
  std::shared_ptr<Drawer> drawer = std::make_shared<Drawer>();
};

TEST_F(CALayerDisplay, HappensOnceAtTheCommit) {
  const CALayerRef layer = addDrawn(CGRectMake(100, 50, 30, 120));
  layer->setNeedsDisplay();
  EXPECT_EQ(drawer->draws, 0);
  CATransaction::flush();
  EXPECT_EQ(drawer->draws, 1);
  EXPECT_FALSE(layer->needsDisplay());
  ASSERT_NE(layer->contents(), nullptr);
  EXPECT_EQ(layer->contents()->size(), (CGSize{30, 120}));
  EXPECT_TRUE(layer->animationKeys().empty());
  CATransaction::flush();
  EXPECT_EQ(drawer->draws, 1);
}

TEST_F(CALayerDisplay, EachOfTenThousandLayersIsDrawnOnceInOneCommit) {
  for (int i = 0; i < 10000; ++i) addDrawn(CGRectMake(0, 0, 1, 1));
  CATransaction::flush();
  EXPECT_EQ(drawer->draws, 10000);
  EXPECT_EQ(changes, 1);
}

TEST_F(CALayerDisplay, RedrawingALiveLayerDoesNotAnimate) {
  const CALayerRef layer = addDrawn(CGRectMake(0, 0, 30, 30));
  CATransaction::flush();
  layer->setNeedsDisplay();
  CATransaction::flush();
  EXPECT_EQ(drawer->draws, 2);
  EXPECT_TRUE(layer->animationKeys().empty());
}

TEST_F(CALayerDisplay, FractionalSizesAreRoundedUp) {
  const CALayerRef layer = addDrawn(CGRectMake(0, 0, 30.25, 10.5));
  CATransaction::flush();
  EXPECT_EQ(layer->contents()->size(), (CGSize{31, 11}));
  EXPECT_EQ(layer->model().drawnSize, (CGSize{30.25, 10.5}));
}

TEST_F(CALayerDisplay, WaitsOutsideATree) {
  const CALayerRef layer = CALayer::layer();
  layer->setBounds(CGRectMake(0, 0, 10, 10));
  layer->setDelegate(drawer);
  layer->setNeedsDisplay();
  CATransaction::flush();
  EXPECT_EQ(drawer->draws, 0);
  root->addSublayer(layer);
  CATransaction::flush();
  EXPECT_EQ(drawer->draws, 1);
}

TEST_F(CALayerDisplay, WaitsForRoom) {
  const CALayerRef layer = addDrawn(CGRectMake(0, 0, 10, 0));
  CATransaction::flush();
  EXPECT_EQ(drawer->draws, 0);
  layer->setBounds(CGRectMake(0, 0, 10, 5));
  CATransaction::flush();
  EXPECT_EQ(drawer->draws, 1);
}

TEST_F(CALayerDisplay, FollowsTheBoundsWhereAskedTo) {
  const CALayerRef layer = addDrawn(CGRectMake(0, 0, 10, 10));
  CATransaction::flush();
  layer->setBounds(CGRectMake(0, 0, 20, 10));
  CATransaction::flush();
  EXPECT_EQ(drawer->draws, 1);
  layer->setNeedsDisplayOnBoundsChange(true);
  layer->setBounds(CGRectMake(5, 0, 20, 10));
  CATransaction::flush();
  EXPECT_EQ(drawer->draws, 2);
}

TEST_F(CALayerDisplay, WithoutADrawerContentsStayEmpty) {
  const CALayerRef layer = addLayer();
  layer->setNeedsDisplay();
  CATransaction::flush();
  EXPECT_EQ(layer->contents(), nullptr);
}

TEST_F(CALayerDisplay, ImmenseBoundsAreSurvived) {
  for (const double side : {1e9, 1e300, HUGE_VAL, std::nan("")}) {
    const CALayerRef layer = addDrawn(CGRectMake(0, 0, side, 10));
    CATransaction::flush();
    EXPECT_EQ(layer->contents(), nullptr) << side;
  }
}

TEST_F(CALayerDisplay, AFailureLeavesTheCommitComplete) {
  drawer->fails = true;
  addDrawn(CGRectMake(0, 0, 10, 10));
  const CALayerRef other = addLayer();
  other->addAnimation(animation("opacity", 1), "x");
  EXPECT_THROW(CATransaction::flush(), NSException);
  EXPECT_EQ(changes, 1);
  EXPECT_TRUE(CATransaction::hasRunningAnimations());
  other->setOpacity(0.5);
  EXPECT_EQ(other->animationKeys(), (Lines{"x", "opacity"}));
}

}  // namespace
}  // namespace zelkon
