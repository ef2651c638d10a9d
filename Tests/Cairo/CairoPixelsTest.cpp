#include "Cairo/CairoFixture.h"

namespace zelkon {
namespace {

using CairoPixels = CairoFixture;

TEST_F(CairoPixels, AFreshSurfaceIsTransparent) {
  start(2, 2);
  EXPECT_EQ(pixel(1, 1), (Pixel{0, 0, 0, 0}));
}

TEST_F(CairoPixels, ColoursBecomeRoundedPremultipliedBytes) {
  start(2, 1);
  context->setFillColor({0.2, 0.4, 0.6, 1});
  context->fillRect(CGRectMake(0, 0, 1, 1));
  context->setFillColor({1, 0, 0, 0.5});
  context->fillRect(CGRectMake(1, 0, 1, 1));
  expectNear(pixel(0, 0), {51, 102, 153, 255}, 1);
  expectNear(pixel(1, 0), {128, 0, 0, 128}, 1);
}

TEST_F(CairoPixels, TheOriginIsAtTheBottomLeft) {
  start(3, 3);
  context->fillRect(CGRectMake(0, 0, 1, 1));
  EXPECT_EQ(pixel(0, 2).alpha, 255);
  EXPECT_EQ(pixel(0, 0).alpha, 0);
}

TEST_F(CairoPixels, AtScaleTwoAPointIsFourPixels) {
  start(3, 3, 2);
  context->fillRect(CGRectMake(1, 0, 1, 1));
  for (int column : {2, 3})
    for (int row : {4, 5}) EXPECT_EQ(pixel(column, row).alpha, 255);
  EXPECT_EQ(pixel(1, 5).alpha, 0);
  EXPECT_EQ(pixel(2, 3).alpha, 0);
}

TEST_F(CairoPixels, ALineOnAWholeCoordinateCoversTwoRowsHalf) {
  start(10, 10);
  fillWhite(10, 10);
  context->setStrokeColor({0.55, 0.55, 0.55, 1});
  context->moveToPoint(0, 5);
  context->addLineToPoint(10, 5);
  context->strokePath();
  EXPECT_NEAR(redAt(4, 4), 0.775, 1.0 / 255);
  EXPECT_NEAR(redAt(4, 5), 0.775, 1.0 / 255);
  EXPECT_NEAR(redAt(4, 3), 1, 1e-9);
  EXPECT_NEAR(redAt(4, 6), 1, 1e-9);
}

TEST_F(CairoPixels, ALineOnAHalfCoordinateCoversOneRowAndEndsWithoutCaps) {
  start(10, 10);
  context->moveToPoint(2, 5.5);
  context->addLineToPoint(8, 5.5);
  context->strokePath();
  EXPECT_EQ(pixel(2, 4).alpha, 255);
  EXPECT_EQ(pixel(1, 4).alpha, 0);
  EXPECT_EQ(pixel(8, 4).alpha, 0);
  EXPECT_EQ(pixel(4, 5).alpha, 0);
}

TEST_F(CairoPixels, NothingIsStrokedWithoutWidthOrLength) {
  start(4, 4);
  context->setLineWidth(0);
  context->moveToPoint(0, 2);
  context->addLineToPoint(4, 2);
  context->strokePath();
  context->setLineWidth(2);
  context->moveToPoint(2, 2);
  context->strokePath();
  context->moveToPoint(2, 2);
  context->addLineToPoint(2, 2);
  context->strokePath();
  for (int row = 0; row < 4; ++row) EXPECT_EQ(pixel(2, row).alpha, 0);
}

TEST_F(CairoPixels, ClipsIntersectAndEndWithTheState) {
  start(4, 4);
  context->saveGState();
  context->clipToRect(CGRectMake(0, 0, 2, 4));
  context->clipToRect(CGRectMake(0, 0, 4, 2));
  context->fillRect(CGRectMake(0, 0, 4, 4));
  EXPECT_EQ(pixel(1, 3).alpha, 255);
  EXPECT_EQ(pixel(2, 3).alpha, 0);
  EXPECT_EQ(pixel(1, 1).alpha, 0);
  context->restoreGState();
  context->fillRect(CGRectMake(3, 3, 1, 1));
  EXPECT_EQ(pixel(3, 0).alpha, 255);
}

TEST_F(CairoPixels, AnEmptyPathClipsEverythingAway) {
  start(2, 2);
  context->beginPath();
  context->clip();
  context->fillRect(CGRectMake(0, 0, 2, 2));
  EXPECT_EQ(pixel(0, 0).alpha, 0);
}

TEST_F(CairoPixels, EvenOddLeavesAHole) {
  start(6, 6);
  context->addRect(CGRectMake(0, 0, 6, 6));
  context->addRect(CGRectMake(2, 2, 2, 2));
  context->drawPath(CGPathDrawingMode::eoFill);
  EXPECT_EQ(pixel(3, 3).alpha, 0);
  EXPECT_EQ(pixel(0, 0).alpha, 255);
}

TEST_F(CairoPixels, ClearingMakesTransparentWithinTheClip) {
  start(4, 4);
  fillWhite(4, 4);
  context->clipToRect(CGRectMake(0, 0, 2, 4));
  context->clearRect(CGRectMake(0, 0, 4, 2));
  EXPECT_EQ(pixel(0, 3), (Pixel{0, 0, 0, 0}));
  EXPECT_EQ(pixel(2, 3).alpha, 255);
  EXPECT_EQ(pixel(0, 1).alpha, 255);
}

TEST_F(CairoPixels, ATransformOfNoExtentHidesWhatFollowsButNotWhatComesAfterTheState) {
  start(2, 2);
  context->saveGState();
  context->scaleCTM(0, 1);
  context->fillRect(CGRectMake(0, 0, 2, 2));
  context->restoreGState();
  EXPECT_EQ(pixel(0, 0).alpha, 0);
  context->fillRect(CGRectMake(0, 0, 2, 2));
  EXPECT_EQ(pixel(0, 0).alpha, 255);
}

TEST_F(CairoPixels, SurfacesOfImpossibleSizesAreRefused) {
  EXPECT_FALSE(device.makeSurface(0, 5));
  EXPECT_FALSE(device.makeSurface(5, -1));
  EXPECT_FALSE(device.makeSurface(32768, 1));
  EXPECT_FALSE(device.makeSurface(32767, 32767));
  EXPECT_TRUE(device.makeSurface(32767, 1));
}

TEST_F(CairoPixels, PNGBytesComeBackAsTheSamePixels) {
  start(3, 2);
  context->setFillColor({0.2, 0.4, 0.6, 1});
  context->fillRect(CGRectMake(0, 0, 1, 1));
  context->setFillColor({1, 0, 0, 1});
  context->fillRect(CGRectMake(2, 1, 1, 1));
  context->flush();
  const std::string png = device.encodePNG(*surface);
  ASSERT_EQ(png.substr(1, 3), "PNG");
  const auto decoded = device.decodePNG(reinterpret_cast<const uint8_t*>(png.data()), png.size());
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->pixelWidth(), 3);
  EXPECT_EQ(decoded->pixelHeight(), 2);
  EXPECT_EQ(device.readPixels(*decoded), device.readPixels(*surface));
}

TEST_F(CairoPixels, PNGBytesKeepTranslucentPixels) {
  start(256, 1);
  for (int alpha = 0; alpha < 256; ++alpha) {
    context->setFillColor({1, 0.5, 0.25, alpha / 255.0});
    context->fillRect(CGRectMake(alpha, 0, 1, 1));
  }
  context->flush();
  const std::string png = device.encodePNG(*surface);
  const auto decoded = device.decodePNG(reinterpret_cast<const uint8_t*>(png.data()), png.size());
  ASSERT_TRUE(decoded);
  const std::vector<uint8_t> before = device.readPixels(*surface), after = device.readPixels(*decoded);
  ASSERT_EQ(before.size(), after.size());
  for (size_t i = 0; i < before.size(); ++i) EXPECT_NEAR(before[i], after[i], 1) << i;
}

TEST_F(CairoPixels, RadialGradientsFollowTheDistanceInPixels) {
  start(60, 40, 2);
  const auto gradient = std::make_shared<const CGGradient>(std::vector<RGBA>{{1, 1, 1, 0}, {1, 1, 1, 1}});
  context->translateCTM(3, 2);
  context->drawRadialGradient(gradient, CGPointMake(20, 18), 25, kCGGradientDrawsAfterEndLocation);
  for (const auto& [column, row] : {std::pair{46, 40}, {60, 40}, {46, 10}, {80, 60}, {0, 0}, {119, 79}}) {
    const double distance = std::hypot((column + 0.5) / 2 - 23, (80 - row - 0.5) / 2 - 20);
    EXPECT_NEAR(pixel(column, row).alpha, 255 * std::min(1.0, distance / 25), 1.0) << column << "," << row;
  }
}

TEST_F(CairoPixels, TheSameBytesGiveTheSamePictureAndOthersAnother) {
  std::vector<std::string> files;
  std::vector<std::vector<uint8_t>> drawn;
  for (int shade = 0; shade < 40; ++shade) {
    start(3, 2);
    context->setFillColor({shade / 39.0, 0, 0, 1});
    context->fillRect(CGRectMake(0, 0, 3, 2));
    context->flush();
    files.push_back(device.encodePNG(*surface));
    drawn.push_back(device.readPixels(*surface));
  }
  for (int round = 0; round < 2; ++round) {
    for (size_t shade = 0; shade < files.size(); ++shade) {
      const std::string& file = files[shade];
      const auto decoded = device.decodePNG(reinterpret_cast<const uint8_t*>(file.data()), file.size());
      ASSERT_TRUE(decoded);
      EXPECT_EQ(device.readPixels(*decoded), drawn[shade]);
      EXPECT_EQ(device.decodePNG(reinterpret_cast<const uint8_t*>(file.data()), file.size()), decoded);
    }
  }
}

TEST_F(CairoPixels, BytesThatAreNoWholePNGGiveNothing) {
  const std::string text = "this is not a picture, not in the least";
  EXPECT_FALSE(device.decodePNG(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
  EXPECT_FALSE(device.decodePNG(nullptr, 0));
  start(20, 20);
  const std::string png = device.encodePNG(*surface);
  for (size_t length : {size_t{1}, size_t{8}, size_t{24}, size_t{40}, png.size() - 20})
    EXPECT_FALSE(device.decodePNG(reinterpret_cast<const uint8_t*>(png.data()), length)) << length;
}

TEST_F(CairoPixels, APNGThatClaimsAHugeSizeGivesNothing) {
  start(1, 1);
  std::string png = device.encodePNG(*surface);
  png[16] = png[20] = 0x7f;
  EXPECT_FALSE(device.decodePNG(reinterpret_cast<const uint8_t*>(png.data()), png.size()));
}

}  // namespace
}  // namespace zelkon
