#include "CoreGraphics/CGImage.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "CoreGraphics/DisplayList.h"
#include "CoreGraphics/GraphicsDevice.h"

namespace zelkon {

namespace {

// Whole pixels that hold `units` at `scale`. The small allowance keeps rounding errors such as 110.00000000000001 from
// costing a row. 0 when there is no such number.
int pixelsFor(int units, double scale) {
  const double pixels = std::ceil(units * scale - 1e-6);
  if (!(pixels <= std::numeric_limits<int>::max())) return 0;
  return std::max(1, static_cast<int>(std::max(pixels, 1.0)));
}

}  // namespace

CGImage::CGImage(std::shared_ptr<Surface> pixels)
    : width_(pixels ? pixels->pixelWidth() : 0),
      height_(pixels ? pixels->pixelHeight() : 0),
      surface_(std::move(pixels)) {}

CGImage::CGImage(std::shared_ptr<const DisplayList> recording, int width, int height)
    : recording_(std::move(recording)), width_(width), height_(height) {}

CGImage::~CGImage() = default;

std::shared_ptr<Surface> CGImage::surface(double scale) const {
  if (!recording_ || hasPixels(scale)) return surface_;
  GraphicsDevice* device = GraphicsDevice::current();
  const int pixelWidth = pixelsFor(width_, scale), pixelHeight = pixelsFor(height_, scale);
  if (device == nullptr || !(scale > 0) || pixelWidth == 0 || pixelHeight == 0) return nullptr;
  std::shared_ptr<Surface> made = device->makeSurface(pixelWidth, pixelHeight);
  if (!made) return nullptr;
  const std::unique_ptr<CGContext> context = device->contextForSurface(made, scale);
  if (!context) return nullptr;
  context->drawDisplayList(*recording_);
  context->flush();
  surface_ = std::move(made);
  surfaceScale_ = scale;
  return surface_;
}

void CGImage::sharePixelsOf(const CGImage& equal) const {
  surface_ = equal.surface_;
  surfaceScale_ = equal.surfaceScale_;
}

}  // namespace zelkon
