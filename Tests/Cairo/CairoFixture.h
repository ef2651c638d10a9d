// A device and a bitmap to draw on, with its pixels as plain colours.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "Backends/Cairo/CairoDevice.h"
#include "CoreGraphics/CGBitmapContext.h"

namespace zelkon {

class CairoFixture : public ::testing::Test {
 protected:
  void SetUp() override { earlier_ = GraphicsDevice::install(&device); }
  void TearDown() override {
    context.reset();
    surface.reset();
    GraphicsDevice::install(earlier_);
  }

  // A fresh transparent bitmap of a size in points.
  void start(int width, int height, double scale = 1) {
    surface =
        device.makeSurface(static_cast<int>(std::ceil(width * scale)), static_cast<int>(std::ceil(height * scale)));
    ASSERT_TRUE(surface);
    context = device.contextForSurface(surface, scale);
    ASSERT_TRUE(context);
  }

  void fillWhite(double width, double height) {
    context->setFillColor({1, 1, 1, 1});
    context->fillRect(CGRectMake(0, 0, width, height));
  }

  struct Pixel {
    int red, green, blue, alpha;  // premultiplied, 0...255
    friend bool operator==(const Pixel&, const Pixel&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Pixel& p) {
      return out << "(" << p.red << "," << p.green << "," << p.blue << "," << p.alpha << ")";
    }
  };
  // Column from the left, row from the top.
  Pixel pixel(int column, int row) {
    context->flush();
    const std::vector<uint8_t> bytes = device.readPixels(*surface);
    const size_t at =
        (static_cast<size_t>(row) * static_cast<size_t>(surface->pixelWidth()) + static_cast<size_t>(column)) * 4;
    if (at + 3 >= bytes.size()) return {-1, -1, -1, -1};
    return {bytes[at], bytes[at + 1], bytes[at + 2], bytes[at + 3]};
  }
  double alphaAt(int column, int row) { return pixel(column, row).alpha / 255.0; }
  double redAt(int column, int row) { return pixel(column, row).red / 255.0; }

  static void expectNear(Pixel actual, Pixel expected, int tolerance) {
    EXPECT_NEAR(actual.red, expected.red, tolerance);
    EXPECT_NEAR(actual.green, expected.green, tolerance);
    EXPECT_NEAR(actual.blue, expected.blue, tolerance);
    EXPECT_NEAR(actual.alpha, expected.alpha, tolerance);
  }

  CairoDevice device;
  std::shared_ptr<Surface> surface;
  std::unique_ptr<CGContext> context;

 private:
  GraphicsDevice* earlier_ = nullptr;
};

}  // namespace zelkon
