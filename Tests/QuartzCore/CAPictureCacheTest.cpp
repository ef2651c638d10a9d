// The pictures that a compositor keeps from frame to frame.
#include <stdexcept>

#include "CoreGraphics/GraphicsDevice.h"
#include "QuartzCore/CompositorFixture.h"

namespace zelkon {
namespace {

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

// Remembers what it is asked for.
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

class CAPictureCacheTest : public CACompositorTest {
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

TEST_F(CAPictureCacheTest, AMaskOfAGradientOnWholePixelsNeedsNoGroup) {
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

TEST_F(CAPictureCacheTest, AGroupIsFlattenedOnceAndDrawnFromItsPicture) {
  addGroup();
  const Lines fromPicture{"image [10 20 30 40] a0.5"};
  EXPECT_EQ(onScreen(), fromPicture);
  EXPECT_EQ(compositor.repaintsOfLastFrame(), 1);
  EXPECT_EQ(device.surfaces, (std::vector<std::pair<int, int>>{{30, 40}}));
  EXPECT_EQ(onScreen(1), fromPicture);
  EXPECT_EQ(compositor.repaintsOfLastFrame(), 0);
  EXPECT_EQ(device.surfaces.size(), 1u);
}

TEST_F(CAPictureCacheTest, AChangeInsideMakesItAnew) {
  const CALayerRef group = addGroup();
  onScreen();
  onScreen(0.1);
  group->sublayers().front()->setMasksToBounds(true);
  EXPECT_EQ(onScreen(0.2).size(), 1u);
  EXPECT_EQ(compositor.repaintsOfLastFrame(), 1);
  EXPECT_EQ(device.surfaces.size(), 2u);
}

TEST_F(CAPictureCacheTest, WhatChangesFrameAfterFrameIsPaintedDirectly) {
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

TEST_F(CAPictureCacheTest, ItsOwnFadeAndMoveUseThePicture) {
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

TEST_F(CAPictureCacheTest, AtRestOffThePixelGridItIsPaintedDirectly) {
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

TEST_F(CAPictureCacheTest, AnAnimationInsideIsPaintedDirectly) {
  const CALayerRef group = addGroup();
  onScreen();
  group->sublayers().front()->setOpacity(0.2);
  EXPECT_EQ(onScreen(0.1).front(), "group a0.5");
  EXPECT_EQ(onScreen(1).front(), "image [10 20 30 40] a0.5");
}

TEST_F(CAPictureCacheTest, APictureHasRoomForTheShadow) {
  const CALayerRef layer = addFilled(CGRectMake(10, 20, 30, 40), red);
  layer->setShadowOpacity(1);
  layer->setShadowRadius(2);
  layer->setShadowOffset({5, 0});
  EXPECT_EQ(onScreen(), Lines{"image [9 14 42 52] a1"});
}

TEST_F(CAPictureCacheTest, WithoutSurfacesItIsPaintedDirectly) {
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

TEST_F(CAPictureCacheTest, NewContentsDrawnAsThoseOfTheLastFrameTakeTheirPixels) {
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

TEST_F(CAPictureCacheTest, ContentsTakeNoPixelsOfAnotherSizeOrScale) {
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

TEST_F(CAPictureCacheTest, ContentsWithoutPixelsDoNotStandBeforeThoseThatHaveThem) {
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

TEST_F(CAPictureCacheTest, AGroupKeepsNoEarlierContents) {
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

TEST_F(CAPictureCacheTest, AFrameThatWasCutShortLeavesNothingBehind) {
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

TEST_F(CAPictureCacheTest, WhatIsNoLongerShownIsNotKept) {
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

TEST_F(CAPictureCacheTest, ANewScaleAndAPurgeDropThem) {
  addGroup();
  onScreen();
  onScreen(0, 2);
  EXPECT_EQ(device.surfaces.back(), (std::pair<int, int>{60, 80}));
  compositor.purge();
  onScreen(0, 2);
  EXPECT_EQ(device.surfaces.size(), 3u);
}

TEST_F(CAPictureCacheTest, AnOverlaysPictureIsMixedAsAnOverlay) {
  const CALayerRef disc = addFilled(CGRectMake(0, 0, 20, 20), red);
  disc->setCompositingFilter(CIFilterCreate(CIOverlayBlendMode{}));
  EXPECT_EQ(onScreen(), Lines{"image [0 0 20 20] a1 overlay"});
}

TEST_F(CAPictureCacheTest, PixelsOfAnUnsmoothedLayerAreWhole) {
  const CALayerRef layer = addLayer(CGRectMake(0.4, 0.6, 10, 10));
  layer->setEdgeAntialiasingMask(0);
  layer->setContents(std::make_shared<const CGImage>(std::make_shared<RecordedSurface>(10, 10)));
  EXPECT_EQ(onScreen(1), Lines{"image [0 1 10 10] a1"});
}

}  // namespace
}  // namespace zelkon
