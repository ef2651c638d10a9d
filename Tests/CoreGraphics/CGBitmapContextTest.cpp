#include <gtest/gtest.h>

#include <limits>

#include "CoreGraphics/CGBitmapContext.h"
#include "CoreGraphics/CommandNames.h"
#include "CoreGraphics/GraphicsDevice.h"

namespace zelkon {
namespace {

std::shared_ptr<CGBitmapContext> bitmap(size_t width, size_t height, size_t bytesPerRow = 0) {
  return CGBitmapContext::create(nullptr, width, height, bytesPerRow, CGColorSpaceDeviceRGB(),
                                 CGImageAlphaInfo::premultipliedFirst);
}

TEST(CGBitmapContext, RejectsImpossibleSizes) {
  EXPECT_EQ(bitmap(0, 10), nullptr);
  EXPECT_EQ(bitmap(10, 0), nullptr);
  EXPECT_EQ(bitmap(10, 10, 39), nullptr);
  EXPECT_EQ(bitmap(1U << 20, 1U << 20), nullptr);
  EXPECT_EQ(bitmap(std::numeric_limits<size_t>::max(), 1), nullptr);
  EXPECT_EQ(bitmap(1, std::numeric_limits<size_t>::max()), nullptr);
  EXPECT_EQ(bitmap(std::numeric_limits<size_t>::max() / 4 + 2, 1), nullptr);
}

TEST(CGBitmapContext, ReportsItsFormat) {
  const auto context = bitmap(10, 20, 47);
  ASSERT_TRUE(context);
  EXPECT_EQ(context->width(), 10U);
  EXPECT_EQ(context->height(), 20U);
  EXPECT_EQ(context->bytesPerRow(), 47U);
  EXPECT_EQ(context->alphaInfo(), CGImageAlphaInfo::premultipliedFirst);
  EXPECT_EQ(context->colorSpace(), CGColorSpaceDeviceRGB());
  EXPECT_EQ(context->data(), nullptr);
  EXPECT_GE(bitmap(10, 20)->bytesPerRow(), 40U);
}

TEST(CGBitmapContext, ClearingAllForgetsEarlierDrawing) {
  const auto context = bitmap(10, 20);
  context->fillRect(CGRectMake(0, 0, 5, 5));
  context->clearRect(CGRectMake(0, 0, 10, 20));
  EXPECT_EQ(commandNames(*context), "");
  context->fillRect(CGRectMake(0, 0, 5, 5));
  context->clearRect(CGRectMake(0, 0, 9.5, 20));
  EXPECT_EQ(commandNames(*context), "fill clear");
}

TEST(CGBitmapContext, ClearingInsideAClipOrGroupForgetsNothing) {
  const auto clipped = bitmap(10, 20);
  clipped->fillRect(CGRectMake(0, 0, 5, 5));
  clipped->saveGState();
  clipped->clipToRect(CGRectMake(0, 0, 5, 5));
  clipped->clearRect(CGRectMake(0, 0, 10, 20));
  clipped->restoreGState();
  EXPECT_EQ(commandNames(*clipped), "fill save clip clear restore");
  clipped->clearRect(CGRectMake(0, 0, 10, 20));
  EXPECT_EQ(commandNames(*clipped), "");
  const auto grouped = bitmap(10, 20);
  grouped->fillRect(CGRectMake(0, 0, 5, 5));
  grouped->beginTransparencyLayer();
  grouped->clearRect(CGRectMake(0, 0, 10, 20));
  grouped->endTransparencyLayer();
  EXPECT_EQ(commandNames(*grouped), "fill begin save clear restore end");
}

TEST(CGBitmapContext, ForgettingKeepsTheTransformAndTheSavesInForce) {
  const auto context = bitmap(10, 20);
  context->translateCTM(1, 2);
  context->saveGState();
  context->scaleCTM(2, 2);
  context->fillRect(CGRectMake(0, 0, 5, 5));
  context->clearRect(CGRectMake(-1, -1, 5.5, 10));
  ASSERT_EQ(commandNames(*context), "concat save concat");
  const auto list = context->snapshot();
  EXPECT_EQ(commandAt<DisplayList::Concat>(*list, 0).transform, CGAffineTransformMakeTranslation(1, 2));
  EXPECT_EQ(commandAt<DisplayList::Concat>(*list, 2).transform, CGAffineTransformMakeScale(2, 2));
  context->restoreGState();
  EXPECT_EQ(context->ctm(), CGAffineTransformMakeTranslation(1, 2));
}

TEST(CGBitmapContext, ImageIsASnapshot) {
  const auto context = bitmap(10, 20);
  context->fillRect(CGRectMake(0, 0, 5, 5));
  const CGImageRef image = context->createImage();
  context->clearRect(CGRectMake(0, 0, 10, 20));
  EXPECT_EQ(image->width(), 10);
  EXPECT_EQ(image->height(), 20);
  EXPECT_EQ(image->size(), CGSizeMake(10, 20));
  EXPECT_EQ(commandNames(*image->recording()), "fill");
}

struct PlainSurface : Surface {
  int width, height;
  PlainSurface(int w, int h) : width(w), height(h) {}
  int pixelWidth() const override { return width; }
  int pixelHeight() const override { return height; }
};

// Every pixel reads as 1, 2, 3, 4 plus ten times its row.
class PlainDevice : public GraphicsDevice {
 public:
  int made = 0;
  bool full = false;
  PlainDevice() : earlier_(install(this)) {}
  ~PlainDevice() override { install(earlier_); }
  double screenScale() const override { return 1; }
  std::shared_ptr<Surface> makeSurface(int width, int height) override {
    if (full) return nullptr;
    ++made;
    return std::make_shared<PlainSurface>(width, height);
  }
  std::unique_ptr<CGContext> contextForSurface(const std::shared_ptr<Surface>&, double) override {
    return std::make_unique<RecordingContext>();
  }
  std::shared_ptr<Surface> decodePNG(const uint8_t*, size_t) override { return nullptr; }
  std::vector<uint8_t> readPixels(const Surface& surface) override {
    std::vector<uint8_t> bytes;
    for (int y = 0; y < surface.pixelHeight(); ++y)
      for (int x = 0; x < surface.pixelWidth(); ++x)
        for (const int byte : {1, 2, 3, 4}) bytes.push_back(static_cast<uint8_t>(byte + 10 * y));
    return bytes;
  }
  double advanceOfText(const FontFace&, std::string_view) override { return 0; }

 private:
  GraphicsDevice* earlier_;
};

TEST(CGBitmapContext, FlushWritesTheByteOrderAndRowBytesAskedFor) {
  PlainDevice device;
  std::vector<uint8_t> last(2 * 10, 99), first(2 * 10, 99);
  CGBitmapContext::create(last.data(), 2, 2, 10, CGColorSpaceDeviceRGB(), CGImageAlphaInfo::premultipliedLast)->flush();
  EXPECT_EQ(last, (std::vector<uint8_t>{1, 2, 3, 4, 1, 2, 3, 4, 99, 99, 11, 12, 13, 14, 11, 12, 13, 14, 99, 99}));
  CGBitmapContext::create(first.data(), 2, 2, 10, CGColorSpaceDeviceRGB(), CGImageAlphaInfo::premultipliedFirst)
      ->flush();
  EXPECT_EQ(first, (std::vector<uint8_t>{4, 1, 2, 3, 4, 1, 2, 3, 99, 99, 14, 11, 12, 13, 14, 11, 12, 13, 99, 99}));
}

TEST(CGBitmapContext, FlushWithoutDeviceOrDataLeavesTheDataAlone) {
  std::vector<uint8_t> data(4, 99);
  CGBitmapContext::create(data.data(), 1, 1, 0, CGColorSpaceDeviceRGB(), CGImageAlphaInfo::premultipliedLast)->flush();
  EXPECT_EQ(data, std::vector<uint8_t>(4, 99));
  PlainDevice device;
  bitmap(1, 1)->flush();
  EXPECT_EQ(device.made, 0);
}

TEST(CGImage, SurfaceRoundsPartsOfPixelsUpAndIsKeptForItsScale) {
  PlainDevice device;
  const CGImage image(std::make_shared<DisplayList>(), 100, 3);
  const auto surface = image.surface(1.1);
  EXPECT_EQ(surface->pixelWidth(), 110);
  EXPECT_EQ(surface->pixelHeight(), 4);
  EXPECT_EQ(image.surface(1.1), surface);
  EXPECT_EQ(device.made, 1);
  EXPECT_EQ(image.surface(2)->pixelWidth(), 200);
  EXPECT_EQ(image.surface(0.001)->pixelHeight(), 1);
  EXPECT_EQ(device.made, 3);
}

TEST(CGImage, HasNoSurfaceWhenTheDeviceCannotMakeOne) {
  const CGImage image(std::make_shared<DisplayList>(), 100, 3);
  EXPECT_EQ(image.surface(1), nullptr);
  PlainDevice device;
  EXPECT_EQ(image.surface(0), nullptr);
  EXPECT_EQ(image.surface(1e300), nullptr);
  device.full = true;
  EXPECT_EQ(image.surface(1), nullptr);
}

TEST(CGImage, DecodedPixelsAreTheSameAtEveryScale) {
  const auto pixels = std::make_shared<PlainSurface>(7, 5);
  const CGImage image(pixels);
  EXPECT_EQ(image.width(), 7);
  EXPECT_EQ(image.height(), 5);
  EXPECT_EQ(image.recording(), nullptr);
  EXPECT_EQ(image.surface(3), pixels);
}

}  // namespace
}  // namespace zelkon
