// Layers, transactions and the media clock in two sessions at a time.
#include <gtest/gtest.h>

#include "Foundation/NSRunLoop.h"
#include "Foundation/PlatformSession.h"
#include "QuartzCore/LayerFixture.h"

namespace zelkon {
namespace {

// A second session beside that of the fixture, whose root layer is in the other one.
class LayerSession : public LayerFixture {
 protected:
  template <typename Body>
  void inOther(Body body) {
    const PlatformSession::Scope scope(other);
    body();
  }
  PlatformSession other;
};

TEST_F(LayerSession, EachHasItsOwnMediaClock) {
  CASetCurrentMediaTime(5);
  inOther([] {
    EXPECT_EQ(CACurrentMediaTime(), 0);
    CASetCurrentMediaTime(2);
  });
  EXPECT_EQ(CACurrentMediaTime(), 5);
  inOther([] { EXPECT_EQ(CACurrentMediaTime(), 2); });
}

TEST_F(LayerSession, AnOpenTransactionIsOpenInItsSessionAlone) {
  const CATransactionWithoutActions noActions;
  inOther([] {
    EXPECT_FALSE(CATransaction::disableActions());
    CATransaction::setAnimationDuration(3);
    CATransaction::commit();
    EXPECT_EQ(CATransaction::animationDuration(), 3) << "the implicit transaction is still open";
    CATransaction::flush();
  });
  EXPECT_TRUE(CATransaction::disableActions());
  EXPECT_EQ(CATransaction::animationDuration(), 0.25);
}

TEST_F(LayerSession, ACommitLooksAtTheLayersOfItsSessionAlone) {
  root->setOpacity(0.5);
  inOther([] { CATransaction::flush(); });
  EXPECT_EQ(changes, 0);
  CATransaction::flush();
  EXPECT_EQ(changes, 1);
}

TEST_F(LayerSession, AnimationsRunAndEndInTheirSession) {
  const CALayerRef layer = addCommittedLayer();
  layer->addAnimation(animation("opacity", 1), "fade");
  CATransaction::flush();
  inOther([] {
    EXPECT_FALSE(CATransaction::hasRunningAnimations());
    CASetCurrentMediaTime(100);
    CATransaction::deliverEndedAnimations();
  });
  turnAt(0);
  EXPECT_EQ(diary->take(), Lines{"start opacity"});
  EXPECT_TRUE(CATransaction::hasRunningAnimations());
  turnAt(2);
  EXPECT_EQ(diary->take(), Lines{"end opacity"});
}

TEST_F(LayerSession, LayersMayGoWithTheSessionThatHoldsThem) {
  std::weak_ptr<CALayer> gone;
  {
    PlatformSession session;
    const PlatformSession::Scope scope(session);
    const CALayerRef layer = CALayer::layer();
    layer->setTreeObserver(this);
    layer->addAnimation(animation("opacity", 1), "fade");
    // Never due.
    NSRunLoop::mainRunLoop().performAfterDelay(layer.get(), 1, [layer] { layer->setOpacity(0); });
    gone = layer;
  }
  EXPECT_TRUE(gone.expired());
}

TEST(LayerSessionDeathTest, AnObservedLayerThatGoesInAnotherSessionIsAnError) {
  struct Observer : CALayerTreeObserver {
    void layerTreeDidChange() override {}
  };
  EXPECT_DEBUG_DEATH(
      {
        Observer observer;
        const CALayerRef layer = CALayer::layer();
        layer->setTreeObserver(&observer);
        PlatformSession other;
        const PlatformSession::Scope scope(other);
        layer->setTreeObserver(nullptr);
      },
      "the layer belongs to another session");
}

}  // namespace
}  // namespace zelkon
