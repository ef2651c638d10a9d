// Layer trees as pixels.

#include "Cairo/CairoFixture.h"
#include "QuartzCore/CACompositor.h"
#include "QuartzCore/CAPreparedTree.h"
#include "QuartzCore/CATextLayer.h"
#include "QuartzCore/CATransaction.h"
#include "QuartzCore/CATreePainter.h"

namespace zelkon {
namespace {

constexpr int width = 120, height = 90;

class ComposedPixels : public CairoFixture, public CALayerTreeObserver {
 protected:
  void SetUp() override {
    CairoFixture::SetUp();
    root->setFrame(CGRectMake(0, 0, width, height));
    root->setBackgroundColor(CGColorCreateGenericRGB(1, 1, 1, 1));
    root->setTreeObserver(this);
  }
  void TearDown() override {
    root->setTreeObserver(nullptr);
    CATransaction::flush();
    compositor.purge();
    CairoFixture::TearDown();
  }
  void layerTreeDidChange() override {}

  CALayerRef add(const CALayerRef& outer, CGRect frame, double gray) {
    const CALayerRef layer = CALayer::layer();
    layer->setFrame(frame);
    layer->setBackgroundColor(CGColorCreateGenericRGB(gray, gray, gray, 1));
    outer->addSublayer(layer);
    return layer;
  }
  std::vector<uint8_t> composed(double scale = 1) {
    CATransaction::flush();
    start(width, height, scale);
    compositor.compose(root, *context, scale, CACurrentMediaTime());
    context->flush();
    return device.readPixels(*surface);
  }
  std::vector<uint8_t> paintedDirectly(double scale = 1) {
    CATransaction::flush();
    start(width, height, scale);
    const CAPreparedTree tree(*root, CACurrentMediaTime());
    CATreePainter(*context, scale, nullptr).paint(tree);
    context->flush();
    return device.readPixels(*surface);
  }
  // A shade over a pie: a disc behind a mask that fades, mixed as an overlay.
  void addShade() {
    const CALayerRef holder = CALayer::layer(), disc = CALayer::layer(), mask = CALayer::layer();
    holder->setFrame(CGRectMake(0, 0, width, height));
    holder->setCompositingFilter(CIFilterCreate(CIOverlayBlendMode{}));
    disc->setFrame(CGRectMake(0, 0, width, height));
    disc->setBackgroundColor(CGColorCreateGenericRGB(0, 0, 0, 1));
    disc->setOpacity(0.5);
    mask->setFrame(CGRectMake(0, 0, width, height));
    mask->setFilters({CIFilterCreate(CIGaussianGradient{{40, 30}, 80, {0, 0, 0, 0}, {0, 0, 0, 1}})});
    mask->setBackgroundColor(kCGColorBlack());
    disc->setMask(mask);
    holder->addSublayer(disc);
    root->addSublayer(holder);
  }
  CALayerRef root = CALayer::layer();
  CACompositor compositor;
};

TEST_F(ComposedPixels, ExposureBrightensPlainComponents) {
  const CALayerRef layer = add(root, CGRectMake(10, 10, 50, 50), 0.205);
  layer->setFilters({CIFilterCreate(CIExposureAdjust{0.5})});
  composed();
  EXPECT_NEAR(redAt(30, 60), 0.2899, 0.004);
  EXPECT_EQ(redAt(90, 10), 1);
}

TEST_F(ComposedPixels, OverlayDarkensWhatLiesBelow) {
  add(root, CGRectMake(0, 0, width, height), 0.82);
  const CALayerRef shade = add(root, CGRectMake(0, 0, 60, height), 0);
  shade->setOpacity(0.335);
  shade->setCompositingFilter(CIFilterCreate(CIOverlayBlendMode{}));
  composed();
  EXPECT_NEAR(redAt(20, 40), 0.7597, 0.006);
  EXPECT_NEAR(redAt(100, 40), 0.82, 0.003);
}

TEST_F(ComposedPixels, AMaskMultipliesByItsAlpha) {
  const CALayerRef layer = add(root, CGRectMake(0, 0, 100, 80), 0), mask = CALayer::layer();
  mask->setFrame(CGRectMake(0, 0, 100, 80));
  mask->setBackgroundColor(kCGColorWhite());
  mask->setFilters({CIFilterCreate(CIGaussianGradient{{0, 40}, 100, {0, 0, 0, 0}, {1, 1, 1, 1}})});
  layer->setMask(mask);
  composed();
  EXPECT_NEAR(redAt(0, 50), 1, 0.01);
  EXPECT_NEAR(redAt(50, 50), 0.5, 0.02);  // half way up the smooth step
  EXPECT_NEAR(redAt(99, 50), 0, 0.01);
}

// Whether its edges lie on pixels or not, nothing is left beyond a mask.
TEST_F(ComposedPixels, AMaskSmallerThanItsLayerCutsIt) {
  const CALayerRef layer = add(root, CGRectMake(10, 10, 100, 60), 0), mask = CALayer::layer();
  mask->setFilters({CIFilterCreate(CIGaussianGradient{{20, 20}, 100, {0, 0, 0, 1}, {0, 0, 0, 0}})});
  layer->setMask(mask);
  for (const double edge : {20.0, 20.5}) {
    CATransactionWithoutActions off;
    mask->setFrame(CGRectMake(edge, 10, 40, 40));
    composed();
    EXPECT_NEAR(redAt(50, height - 40), 0, 0.01) << edge;
    EXPECT_EQ(redAt(20, height - 40), 1) << edge;
    EXPECT_EQ(redAt(72, height - 40), 1) << edge;
    EXPECT_EQ(redAt(50, height - 15), 1) << edge;
    EXPECT_EQ(redAt(50, height - 65), 1) << edge;
  }
}

TEST_F(ComposedPixels, AShadowFallsOffLikeAGaussian) {
  const CALayerRef layer = add(root, CGRectMake(-50, 20, 100, 60), 1);
  layer->setShadowOpacity(0.2);
  layer->setShadowRadius(2.5);
  layer->setShadowOffset({0, 0});
  composed();
  EXPECT_NEAR(1 - redAt(50, 40), 0.2 * 0.4207, 0.012);  // half a point outside
  EXPECT_NEAR(1 - redAt(52, 40), 0.032, 0.012);
  EXPECT_NEAR(1 - redAt(55, 40), 0.004, 0.006);
}

TEST_F(ComposedPixels, PicturesAreAsPaintedDirectly) {
  for (int i = 0; i < 6; ++i) {
    const CALayerRef slice = add(root, CGRectMake(5 + 17 * i, 10 + 3 * i, 25, 40), 0.1 + 0.12 * i);
    slice->setCornerRadius(7);
    slice->setOpacity(0.35 + 0.1 * i);
    slice->setBorderWidth(1.5);
    slice->setBorderColor(CGColorCreateGenericRGB(1, 0.2, 0, 0.5));
    add(slice, CGRectMake(3.3, 4.7, 30, 9.1), 0.7);
    if (i % 2 == 0) {
      slice->setShadowOpacity(0.6);
      slice->setShadowOffset({2, -3});
    }
    if (i % 3 == 0) slice->setFilters({CIFilterCreate(CIExposureAdjust{0.5})});
    if (i == 4) slice->setMasksToBounds(true);
  }
  const auto text = CATextLayer::layer();
  text->setFrame(CGRectMake(20, 30, 60, 20));
  text->setFontSize(13);
  text->setString(std::string("Rent 42"));
  text->setForegroundColor(kCGColorBlack());
  text->setShadowOpacity(0.4);
  root->addSublayer(text);
  addShade();
  for (const double scale : {1.0, 2.0}) {
    const std::vector<uint8_t> direct = paintedDirectly(scale);
    for (int frame = 0; frame < 3; ++frame) EXPECT_EQ(composed(scale), direct) << scale << " " << frame;
    EXPECT_EQ(compositor.repaintsOfLastFrame(), 0);
  }
}

TEST_F(ComposedPixels, ReplayedAndDrawnContentsAreTheSame) {
  struct Bar : CALayerDelegate {
    void drawLayer(CALayer& layer, CGContext& context) override {
      const CGRect r = CGRectInset(layer.bounds(), 3, 2);
      context.setFillColor({0.5, 0.7, 0.1, 1});
      context.fillRect(r);
      if (!cheap) context.clipToRect(r);
      context.setStrokeColor({0.5, 0.5, 0.5, 1});
      context.addRect(CGRectInset(r, 4.5, 4.5));
      context.strokePath();
    }
    bool cheap = true;
  };
  const auto bar = std::make_shared<Bar>();
  const CALayerRef layer = CALayer::layer();
  layer->setBounds(CGRectMake(100, 50, 30.5, 40.25));
  layer->setPosition({50.25, 40.125});
  layer->setDelegate(bar);
  layer->setNeedsDisplay();
  root->addSublayer(layer);
  const std::vector<uint8_t> replayed = composed(4);
  EXPECT_NEAR(redAt(200, 200), 0.5, 0.01) << "the bar is there";
  EXPECT_NEAR(redAt(4, 4), 1, 0.01) << "and not everywhere";
  bar->cheap = false;
  layer->setNeedsDisplay();
  EXPECT_EQ(composed(4), replayed);
}

}  // namespace
}  // namespace zelkon
