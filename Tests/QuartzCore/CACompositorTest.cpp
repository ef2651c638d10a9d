#include <chrono>
#include <numbers>

#include "CoreGraphics/GraphicsDevice.h"
#include "QuartzCore/CACompositor.h"
#include "QuartzCore/Commands.h"
#include "QuartzCore/LayerFixture.h"

namespace zelkon {
namespace {

const CGColorRef red = CGColorCreateGenericRGB(1, 0, 0, 1);
const CGColorRef blue = CGColorCreateGenericRGB(0, 0, 1, 1);

class CACompositorTest : public LayerFixture {
 protected:
  CALayerRef addFilled(CGRect frame, const CGColorRef& color) {
    const CALayerRef layer = addLayer(frame);
    layer->setBackgroundColor(color);
    return layer;
  }
  Lines composed(double seconds = 0) {
    CATransaction::flush();
    RecordingContext context;
    compositor.compose(root, context, 1, start + seconds);
    return CommandPrinter::print(*context.snapshot());
  }
  CACompositor compositor;
};

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

// ---- pictures, over a device that remembers what it is asked for ----

struct RecordedSurface : Surface {
  RecordedSurface(int w, int h) : width(w), height(h) {}
  int pixelWidth() const override { return width; }
  int pixelHeight() const override { return height; }
  int width, height;
};

class PixelContext : public RecordingContext {
 public:
  bool prefersRecordings() const override { return false; }
};

struct RecordingDevice : GraphicsDevice {
  RecordingDevice() : earlier(install(this)) {}
  ~RecordingDevice() override { install(earlier); }
  double screenScale() const override { return 1; }
  std::shared_ptr<Surface> makeSurface(int width, int height) override {
    surfaces.emplace_back(width, height);
    return refuses ? nullptr : std::make_shared<RecordedSurface>(width, height);
  }
  std::unique_ptr<CGContext> contextForSurface(const std::shared_ptr<Surface>&, double) override {
    return std::make_unique<PixelContext>();
  }
  std::shared_ptr<Surface> decodePNG(const uint8_t*, size_t) override { return nullptr; }
  std::vector<uint8_t> readPixels(const Surface&) override { return {}; }
  double advanceOfText(const FontFace&, std::string_view) override { return 1; }
  GraphicsDevice* earlier;
  bool refuses = false;
  std::vector<std::pair<int, int>> surfaces;
};

class CACompositorPictures : public CACompositorTest {
 protected:
  Lines onScreen(double seconds = 0, double scale = 1) {
    CATransaction::flush();
    PixelContext context;
    compositor.compose(root, context, scale, start + seconds);
    return CommandPrinter::print(*context.snapshot());
  }
  CALayerRef addGroup() {
    const CALayerRef layer = addFilled(CGRectMake(10, 20, 30, 40), red);
    const CALayerRef inner = CALayer::layer();
    inner->setFrame(CGRectMake(0, 0, 5, 5));
    inner->setBackgroundColor(blue);
    layer->addSublayer(inner);
    layer->setOpacity(0.5);
    return layer;
  }
  RecordingDevice device;
};

TEST_F(CACompositorPictures, AMaskOfAGradientOnWholePixelsNeedsNoGroup) {
  device.refuses = true;
  const CALayerRef disc = addFilled(CGRectMake(10, 10, 60, 40), red), mask = CALayer::layer();
  mask->setFrame(CGRectMake(5, 0, 40, 40));
  mask->setFilters({CIFilterCreate(CIGaussianGradient{{20, 20}, 30, {0, 0, 0, 0}, {0, 0, 0, 1}})});
  disc->setMask(mask);
  EXPECT_EQ(onScreen(), (Lines{"group a1", "clip [15 10 40 40]", "fill [10 10 60 40] 1,0,0,1", "clip [15 10 40 40]",
                               "gradient at 35,30 r30 destinationIn", "end"}));
  // Its edge would cut through pixels, which only the group mixes as they ought to be.
  mask->setFrame(CGRectMake(5.5, 0, 40, 40));
  EXPECT_EQ(onScreen(1), (Lines{"group a1", "fill [10 10 60 40] 1,0,0,1", "group a1 destinationIn",
                                "clip [15.5 10 40 40]", "gradient at 35.5,30 r30", "end", "end"}));
}

TEST_F(CACompositorPictures, AGroupIsFlattenedOnceAndDrawnFromItsPicture) {
  addGroup();
  const Lines fromPicture{"image [10 20 30 40] a0.5"};
  EXPECT_EQ(onScreen(), fromPicture);
  EXPECT_EQ(compositor.repaintsOfLastFrame(), 1);
  EXPECT_EQ(device.surfaces, (std::vector<std::pair<int, int>>{{30, 40}}));
  EXPECT_EQ(onScreen(1), fromPicture);
  EXPECT_EQ(compositor.repaintsOfLastFrame(), 0);
  EXPECT_EQ(device.surfaces.size(), 1u);
}

TEST_F(CACompositorPictures, AChangeInsideMakesItAnew) {
  const CALayerRef group = addGroup();
  onScreen();
  onScreen(0.1);
  group->sublayers().front()->setMasksToBounds(true);
  EXPECT_EQ(onScreen(0.2).size(), 1u);
  EXPECT_EQ(compositor.repaintsOfLastFrame(), 1);
  EXPECT_EQ(device.surfaces.size(), 2u);
}

TEST_F(CACompositorPictures, WhatChangesFrameAfterFrameIsPaintedDirectly) {
  const CALayerRef group = addGroup();
  const CALayerRef inner = group->sublayers().front();
  onScreen();
  for (int i = 1; i < 5; ++i) {
    inner->setMasksToBounds(i % 2 == 1);
    EXPECT_EQ(onScreen(i * 0.1).front(), "group a0.5");
  }
  EXPECT_EQ(device.surfaces.size(), 1u);
  EXPECT_EQ(onScreen(1).front(), "image [10 20 30 40] a0.5");
}

TEST_F(CACompositorPictures, ItsOwnFadeAndMoveUseThePicture) {
  const CALayerRef group = addGroup();
  onScreen();
  onScreen(0.1);
  turnAt(0.1);
  group->setOpacity(1);
  group->setTransform(CATransform3DScale(CATransform3DIdentity, 2, 2, 1));
  onScreen(0.1);
  const size_t made = device.surfaces.size();
  for (double time : {0.15, 0.2, 0.3}) EXPECT_EQ(onScreen(time).front().substr(0, 5), "image") << time;
  EXPECT_EQ(device.surfaces.size(), made);
}

TEST_F(CACompositorPictures, AtRestOffThePixelGridItIsPaintedDirectly) {
  const CALayerRef group = addGroup();
  {
    CATransactionWithoutActions off;
    group->setTransform(CATransform3DScale(CATransform3DIdentity, 2, 2, 1));
  }
  EXPECT_EQ(onScreen().front(), "group a0.5");
  {
    CATransactionWithoutActions off;
    group->setTransform(CATransform3DIdentity);
    group->setPosition({25.5, 40});
  }
  EXPECT_EQ(onScreen(1).front(), "group a0.5");
  EXPECT_EQ(onScreen(2, 2).front(), "image [10.5 20 30 40] a0.5") << "half a point is a whole pixel here";
}

TEST_F(CACompositorPictures, AnAnimationInsideIsPaintedDirectly) {
  const CALayerRef group = addGroup();
  onScreen();
  group->sublayers().front()->setOpacity(0.2);
  EXPECT_EQ(onScreen(0.1).front(), "group a0.5");
  EXPECT_EQ(onScreen(1).front(), "image [10 20 30 40] a0.5");
}

TEST_F(CACompositorPictures, APictureHasRoomForTheShadow) {
  const CALayerRef layer = addFilled(CGRectMake(10, 20, 30, 40), red);
  layer->setShadowOpacity(1);
  layer->setShadowRadius(2);
  layer->setShadowOffset({5, 0});
  EXPECT_EQ(onScreen(), Lines{"image [9 14 42 52] a1"});
}

TEST_F(CACompositorPictures, WithoutSurfacesItIsPaintedDirectly) {
  device.refuses = true;
  addGroup();
  EXPECT_EQ(onScreen().front(), "group a0.5");
  EXPECT_EQ(onScreen(1).front(), "group a0.5");
}

// Drawn anew each time, with a clip, so that it is shown from pixels.
CGImageRef drawnWithWidth(double width) {
  RecordingContext context;
  context.clipToRect(CGRectMake(0, 0, width, 40));
  context.fillRect(CGRectMake(0, 0, 30, 40));
  return std::make_shared<const CGImage>(context.snapshot(), 30, 40);
}

TEST_F(CACompositorPictures, NewContentsDrawnAsThoseOfTheLastFrameTakeTheirPixels) {
  CALayerRef layer = addFilled(CGRectMake(10, 20, 30, 40), red);
  const auto show = [&](double width) {
    const CGImageRef contents = drawnWithWidth(width);
    layer->setContents(contents);
    onScreen();
    return contents->surface(1);
  };
  const auto replaceLayer = [&] {
    layer->removeFromSuperlayer();
    layer = addFilled(CGRectMake(10, 20, 30, 40), red);
  };
  const std::shared_ptr<Surface> first = show(5);
  EXPECT_EQ(show(5), first) << "on the same layer";
  replaceLayer();
  EXPECT_EQ(show(5), first) << "on another layer";
  EXPECT_EQ(device.surfaces.size(), 1u);
  EXPECT_NE(show(6), first);
  EXPECT_NE(show(5), first) << "not from an earlier frame";
  EXPECT_EQ(device.surfaces.size(), 3u);
}

TEST_F(CACompositorPictures, ContentsTakeNoPixelsOfAnotherSizeOrScale) {
  const CALayerRef layer = addFilled(CGRectMake(10, 20, 30, 40), red);
  const CGImageRef small = drawnWithWidth(5);
  layer->setContents(small);
  onScreen();
  const std::shared_ptr<Surface> pixels = small->surface(1);
  const auto large = std::make_shared<const CGImage>(small->recording(), 31, 40);
  layer->setContents(large);
  onScreen();
  EXPECT_NE(large->surface(1), pixels);
  const CGImageRef same = drawnWithWidth(5);
  layer->setContents(same);
  onScreen(0, 2);
  EXPECT_NE(same->surface(2), pixels);
  EXPECT_EQ(device.surfaces.back(), (std::pair<int, int>{60, 80}));
}

TEST_F(CACompositorPictures, ContentsWithoutPixelsDoNotStandBeforeThoseThatHaveThem) {
  for (int withPixels = 0; withPixels < 3; ++withPixels) {
    std::shared_ptr<Surface> pixels;
    for (int i = 0; i < 3; ++i) {
      const CGImageRef contents = drawnWithWidth(5);
      if (i == withPixels) pixels = contents->surface(1);
      addFilled(CGRectMake(10, 20, 30, 40), red)->setContents(contents);
    }
    onScreen();
    for (const CALayerRef& layer : std::vector<CALayerRef>(root->sublayers())) layer->removeFromSuperlayer();
    const CGImageRef contents = drawnWithWidth(5);
    addFilled(CGRectMake(10, 20, 30, 40), red)->setContents(contents);
    onScreen();
    EXPECT_EQ(contents->surface(1), pixels) << withPixels;
    root->sublayers().front()->removeFromSuperlayer();
    onScreen();
  }
}

TEST_F(CACompositorPictures, AGroupKeepsNoEarlierContents) {
  const CALayerRef group = addGroup();
  std::weak_ptr<const CGImage> earlier;
  {
    CATransactionWithoutActions off;
    const CGImageRef drawn = drawnWithWidth(5);
    earlier = drawn;
    group->setOpacity(1);
    group->setContents(drawn);
  }
  onScreen();
  EXPECT_FALSE(earlier.expired());
  {
    CATransactionWithoutActions off;
    group->setContents(drawnWithWidth(6));
    group->setOpacity(0.5);
  }
  EXPECT_EQ(onScreen(1).front(), "image [10 20 30 40] a0.5");
  EXPECT_TRUE(earlier.expired());
}

TEST_F(CACompositorPictures, AFrameThatWasCutShortLeavesNothingBehind) {
  struct Failing : PixelContext {
    void doFill(const CGPath&, bool, const RGBA&, CGBlendMode) override { throw std::runtime_error("no room"); }
  };
  std::weak_ptr<const CGImage> contents;
  const CALayerRef layer = CALayer::layer();
  layer->setFrame(CGRectMake(0, 0, 30, 40));
  root->addSublayer(layer);
  {
    const CGImageRef drawn = drawnWithWidth(5);
    contents = drawn;
    layer->setContents(drawn);
  }
  onScreen();
  layer->removeFromSuperlayer();
  layer->setContents(nullptr);
  addFilled(CGRectMake(10, 20, 30, 40), red);
  CATransaction::flush();
  Failing failing;
  EXPECT_THROW(compositor.compose(root, failing, 1, start), std::runtime_error);
  onScreen();
  EXPECT_TRUE(contents.expired());
}

TEST_F(CACompositorPictures, WhatIsNoLongerShownIsNotKept) {
  const CALayerRef layer = addFilled(CGRectMake(10, 20, 30, 40), red);
  std::weak_ptr<const CGImage> contents;
  {
    const CGImageRef drawn = drawnWithWidth(5);
    contents = drawn;
    layer->setContents(drawn);
  }
  onScreen();
  layer->removeFromSuperlayer();
  onScreen();
  layer->setContents(nullptr);
  EXPECT_TRUE(contents.expired());
}

TEST_F(CACompositorPictures, ANewScaleAndAPurgeDropThem) {
  addGroup();
  onScreen();
  onScreen(0, 2);
  EXPECT_EQ(device.surfaces.back(), (std::pair<int, int>{60, 80}));
  compositor.purge();
  onScreen(0, 2);
  EXPECT_EQ(device.surfaces.size(), 3u);
}

TEST_F(CACompositorPictures, AnOverlaysPictureIsMixedAsAnOverlay) {
  const CALayerRef disc = addFilled(CGRectMake(0, 0, 20, 20), red);
  disc->setCompositingFilter(CIFilterCreate(CIOverlayBlendMode{}));
  EXPECT_EQ(onScreen(), Lines{"image [0 0 20 20] a1 overlay"});
}

TEST_F(CACompositorPictures, PixelsOfAnUnsmoothedLayerAreWhole) {
  const CALayerRef layer = addLayer(CGRectMake(0.4, 0.6, 10, 10));
  layer->setEdgeAntialiasingMask(0);
  layer->setContents(std::make_shared<const CGImage>(std::make_shared<RecordedSurface>(10, 10)));
  EXPECT_EQ(onScreen(1), Lines{"image [0 1 10 10] a1"});
}

}  // namespace
}  // namespace zelkon
