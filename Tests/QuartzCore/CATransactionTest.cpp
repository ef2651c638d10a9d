#include "Foundation/NSException.h"
#include "QuartzCore/CATransaction.h"
#include "QuartzCore/LayerFixture.h"

namespace zelkon {
namespace {

class CATransactionTest : public LayerFixture {};

TEST_F(CATransactionTest, StartsWithThePlatformsValues) {
  EXPECT_EQ(CATransaction::animationDuration(), 0.25);
  EXPECT_FALSE(CATransaction::disableActions());
  EXPECT_FALSE(CATransaction::animationTimingFunction());
}

TEST_F(CATransactionTest, NestedOnesSeeTheEnclosingValuesAndKeepTheirChangesToThemselves) {
  CATransaction::begin();
  CATransaction::setAnimationDuration(2);
  CATransaction::begin();
  EXPECT_EQ(CATransaction::animationDuration(), 2);
  CATransaction::setDisableActions(true);
  CATransaction::setAnimationDuration(3);
  CATransaction::commit();
  EXPECT_EQ(CATransaction::animationDuration(), 2);
  EXPECT_FALSE(CATransaction::disableActions());
  CATransaction::commit();
  EXPECT_EQ(CATransaction::animationDuration(), 0.25);
}

TEST_F(CATransactionTest, ValuesAndAccessorsAreTheSame) {
  CATransaction::begin();
  CATransaction::setValue(true, kCATransactionDisableActions);
  CATransaction::setValue(1.5, kCATransactionAnimationDuration);
  CATransaction::setValue("text", "ad hoc");
  EXPECT_TRUE(CATransaction::disableActions());
  EXPECT_EQ(CATransaction::animationDuration(), 1.5);
  EXPECT_EQ(CATransaction::valueForKey("ad hoc").string(), "text");
  EXPECT_EQ(CATransaction::valueForKey(kCATransactionAnimationDuration).doubleValue(), 1.5);
  EXPECT_TRUE(CATransaction::valueForKey("never set").isNull());
  CATransaction::commit();
  EXPECT_TRUE(CATransaction::valueForKey("ad hoc").isNull());
}

TEST_F(CATransactionTest, AnUnmatchedCommitIsHarmless) {
  CATransaction::commit();
  addLayer();
  CATransaction::commit();
  EXPECT_EQ(changes, 0) << "the implicit transaction waits for the end of the turn";
  CATransaction::flush();
  EXPECT_EQ(changes, 1);
}

TEST_F(CATransactionTest, ImplicitValuesLastUntilTheEndOfTheTurn) {
  CATransaction::setDisableActions(true);
  EXPECT_TRUE(CATransaction::disableActions());
  CATransaction::flush();
  EXPECT_FALSE(CATransaction::disableActions());
}

TEST_F(CATransactionTest, TheOutermostCommitSendsEverythingOut) {
  CATransaction::begin();
  const CALayerRef layer = addLayer();
  CATransaction::begin();
  layer->setOpacity(0.5);
  CATransaction::commit();
  EXPECT_EQ(changes, 0);
  CATransaction::commit();
  EXPECT_EQ(changes, 1);
}

TEST_F(CATransactionTest, InsideAnImplicitOneCommitWaitsForTheTurn) {
  const CALayerRef layer = addLayer();
  {
    CATransactionWithoutActions off;
    layer->setOpacity(0.5);
  }
  EXPECT_EQ(changes, 0);
  CATransaction::flush();
  EXPECT_EQ(changes, 1);
}

TEST_F(CATransactionTest, FlushLeavesAnOpenExplicitOneAlone) {
  CATransaction::begin();
  addLayer();
  CATransaction::flush();
  EXPECT_EQ(changes, 0);
  CATransaction::commit();
  EXPECT_EQ(changes, 1);
}

TEST_F(CATransactionTest, NothingChangedNothingTold) {
  CATransaction::flush();
  CATransaction::begin();
  CATransaction::commit();
  CALayer::layer()->setOpacity(0.5);
  CATransaction::flush();
  EXPECT_EQ(changes, 0);
}

TEST_F(CATransactionTest, ManyChangesAreToldOnce) {
  const CALayerRef layer = addLayer();
  for (int i = 0; i < 10; ++i) layer->setOpacity(0.1 * i);
  CATransaction::flush();
  EXPECT_EQ(changes, 1);
  layer->setOpacity(0.7);
  CATransaction::flush();
  EXPECT_EQ(changes, 2);
}

TEST_F(CATransactionTest, AChangeDeepInsideAndInAMaskIsToldToo) {
  const CALayerRef outer = addLayer(), inner = CALayer::layer(), mask = CALayer::layer();
  outer->addSublayer(inner);
  inner->setMask(mask);
  CATransaction::flush();
  changes = 0;
  const unsigned long before = root->subtreeVersion();
  mask->setBackgroundColor(kCGColorBlack());
  EXPECT_NE(root->subtreeVersion(), before);
  inner->setCornerRadius(3);
  CATransaction::flush();
  EXPECT_EQ(changes, 1);
}

TEST_F(CATransactionTest, AllAnimationsOfATransactionStartTogether) {
  CATransaction::begin();
  const CALayerRef a = addLayer();
  a->addAnimation(animation("opacity", 1), "x");
  CASetCurrentMediaTime(start + 2);
  const CALayerRef b = addLayer();
  b->addAnimation(animation("opacity", 1), "x");
  CATransaction::commit();
  EXPECT_NEAR(shown(a, 2.5).opacity, 0.5, 1e-9);
  EXPECT_NEAR(shown(b, 2.5).opacity, 0.5, 1e-9);
}

struct RaisingDelegate : CALayerDelegate {
  const char* reason;
  explicit RaisingDelegate(const char* r) : reason(r) {}
  void drawLayer(CALayer&, CGContext&) override { NSRaise(NSInternalInconsistencyException, reason); }
};

// What the end of a turn raises; empty when it raises nothing.
std::string raisedByTurn() {
  try {
    CATransaction::flush();
    return "";
  } catch (const NSException& exception) {
    return exception.reason();
  }
}

TEST_F(CATransactionTest, WhatADrawingRaisesAtTheEndOfAScopeComesAtTheEndOfTheTurn) {
  const auto first = std::make_shared<RaisingDelegate>("first"), second = std::make_shared<RaisingDelegate>("second");
  const auto drawOnce = [&](const std::shared_ptr<RaisingDelegate>& delegate) {
    const CATransactionWithoutActions scope;
    const CALayerRef layer = addLayer();
    layer->setDelegate(delegate);
    layer->setNeedsDisplay();
  };
  drawOnce(first);
  drawOnce(second);
  EXPECT_EQ(changes, 2) << "the scopes were carried out";
  EXPECT_EQ(raisedByTurn(), "first");
  EXPECT_EQ(raisedByTurn(), "");
  // Also while something else is raised already.
  try {
    const CATransactionWithoutActions scope;
    drawOnce(second);
    NSRaise(NSRangeException, "in the scope");
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.reason(), "in the scope");
  }
  EXPECT_FALSE(CATransaction::disableActions());
  EXPECT_EQ(raisedByTurn(), "second");
}

TEST_F(CATransactionTest, TheClockNeverGoesBack) {
  CASetCurrentMediaTime(start + 3);
  CASetCurrentMediaTime(start + 1);
  EXPECT_EQ(CACurrentMediaTime(), start + 3);
}

}  // namespace
}  // namespace zelkon
