// One bar as its layer's picture shows it, pixel by pixel.
#include "Cairo/CairoFixture.h"
#include "Classes/Plotting/BarPlot.h"

namespace zelkon {
namespace {

// A bar of 30 by 120 points whose layer has the coordinates (100, 50) at its lower left corner.
class BarPixels : public CairoFixture {
 protected:
  void SetUp() override {
    CairoFixture::SetUp();
    const auto plot = std::make_shared<BarPlot>();
    const CALayerRef bar = CALayer::layer();
    bar->setName("upwardFacing");
    bar->setCornerRadius(5);
    bar->setBounds(CGRectMake(100, 50, 30, 120));
    bar->setDelegate(plot);
    bar->setNeedsDisplay();
    bar->displayIfNeeded();
    ASSERT_NE(bar->contents(), nullptr);
    ASSERT_EQ(bar->contents()->size(), (CGSize{30, 120}));
    surface = bar->contents()->surface(1);
    ASSERT_NE(surface, nullptr);
    context = device.contextForSurface(surface, 1);
  }
  // The pixel whose lower left corner has these coordinates of the layer.
  Pixel at(int x, int y) { return pixel(x - 100, 169 - y); }
  double shadowAt(int x, int y) { return at(x, y).alpha / 255.0; }
};

TEST_F(BarPixels, TheOutlineIsAColumnOfPixelsOnEachSideAndARowOnTop) {
  const Pixel outline{128, 128, 128, 255};
  for (const int y : {60, 100, 150}) {
    expectNear(at(102, y), outline, 1);
    expectNear(at(126, y), outline, 1);
    EXPECT_EQ(at(101, y).alpha, 0) << "nothing is seen to the left of it";
  }
  for (const int x : {109, 115, 119}) expectNear(at(x, 169), outline, 1);
}

TEST_F(BarPixels, TheGradientRunsFromTheLayersOriginNotFromTheBarsFoot) {
  // Above the outline's lower edge t is 51.5 / 120, not 0.
  expectNear(at(115, 51), {136, 183, 32, 255}, 1);
  expectNear(at(110, 130), {168, 201, 41, 255}, 1);
  expectNear(at(110, 160), {168, 201, 41, 255}, 1);
}

TEST_F(BarPixels, ASoftShadowFallsThreePointsToTheRightAndIsCutByThePicture) {
  // Its edge lies at x = 129.5, far from the bar's upper end: two, one and no points inside it.
  EXPECT_NEAR(shadowAt(127, 100), 0.326, 0.01);
  EXPECT_NEAR(shadowAt(128, 100), 0.280, 0.01);
  EXPECT_NEAR(shadowAt(129, 100), 0.167, 0.01);
  // And three points down: beside the bar's upper end there is none yet.
  EXPECT_NEAR(shadowAt(128, 169), 0, 0.02);
}

}  // namespace
}  // namespace zelkon
