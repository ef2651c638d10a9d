// What a layer has drawn follows its bounds while they are animated, without being drawn again.
#include "QuartzCore/CACompositor.h"
#include "QuartzCore/Commands.h"
#include "QuartzCore/LayerFixture.h"

namespace zelkon {
namespace {

// Fills the lower half of the layer's bounds and counts how often it is asked to.
struct LowerHalf : CALayerDelegate {
  int draws = 0;
  void drawLayer(CALayer& layer, CGContext& context) override {
    ++draws;
    CGRect half = layer.bounds();
    half.size.height /= 2;
    context.setFillColor({0, 1, 0, 1});
    context.fillRect(half);
  }
};

class CALayerStretch : public LayerFixture {
 protected:
  // A bar of 120 points that grows out of y = 50 in 0.12 seconds.
  CALayerRef addGrowingBar() {
    const CALayerRef bar = CALayer::layer();
    bar->setAnchorPoint({0.5, 0});
    bar->setFrame(CGRectMake(100, 50, 30, 0));
    bar->setDelegate(drawer);
    bar->setNeedsDisplay();
    bar->setNeedsDisplayOnBoundsChange(true);
    root->addSublayer(bar);
    CABasicAnimation grow = CABasicAnimation::animationWithKeyPath("bounds");
    grow.fromValue = CGRectMake(100, 50, 30, 0);
    grow.toValue = CGRectMake(100, 50, 30, 120);
    grow.duration = 0.12;
    bar->addAnimation(grow, "bounds");
    bar->setBounds(CGRectMake(100, 50, 30, 120));
    return bar;
  }
  Lines composed(double seconds) {
    turnAt(seconds);
    RecordingContext context;
    compositor.compose(root, context, 1, start + seconds);
    return CommandPrinter::print(*context.snapshot());
  }
  std::shared_ptr<LowerHalf> drawer = std::make_shared<LowerHalf>();
  CACompositor compositor;
};

TEST_F(CALayerStretch, ABarThatGrowsIsDrawnOnceAndSqueezed) {
  const CALayerRef bar = addGrowingBar();
  turnAt(0);
  EXPECT_EQ(composed(0), Lines{}) << "nothing is seen of a bar without a height";
  EXPECT_EQ(composed(0.03), (Lines{"clip [100 50 30 30]", "fill [100 50 30 15] 0,1,0,1"}));
  EXPECT_EQ(composed(0.06), (Lines{"clip [100 50 30 60]", "fill [100 50 30 30] 0,1,0,1"}));
  EXPECT_EQ(composed(0.2), (Lines{"clip [100 50 30 120]", "fill [100 50 30 60] 0,1,0,1"}));
  EXPECT_EQ(drawer->draws, 1);
  EXPECT_EQ(bar->contents()->size(), (CGSize{30, 120}));
}

}  // namespace
}  // namespace zelkon
