#include "CoreGraphics/CGBitmapContext.h"

#include <limits>

#include "CoreGraphics/GraphicsDevice.h"

namespace zelkon {

namespace {

constexpr size_t bytesPerPixel = 4;
constexpr size_t maximumBytes = std::numeric_limits<int32_t>::max();

}  // namespace

std::shared_ptr<CGBitmapContext> CGBitmapContext::create(uint8_t* data, size_t width, size_t height, size_t bytesPerRow,
                                                         CGColorSpaceRef space, CGImageAlphaInfo alphaInfo) {
  if (width == 0 || height == 0 || width > maximumBytes / bytesPerPixel) return nullptr;
  if (bytesPerRow == 0) bytesPerRow = bytesPerPixel * width;
  if (bytesPerRow < bytesPerPixel * width || height > maximumBytes / bytesPerRow) return nullptr;
  std::shared_ptr<CGBitmapContext> context(new CGBitmapContext);
  context->data_ = data;
  context->width_ = width;
  context->height_ = height;
  context->bytesPerRow_ = bytesPerRow;
  context->space_ = std::move(space);
  context->alphaInfo_ = alphaInfo;
  return context;
}

CGImageRef CGBitmapContext::createImage() const {
  return std::make_shared<const CGImage>(snapshot(), static_cast<int>(width_), static_cast<int>(height_));
}

void CGBitmapContext::flush() {
  GraphicsDevice* device = GraphicsDevice::current();
  if (data_ == nullptr || device == nullptr) return;
  const std::shared_ptr<Surface> surface = createImage()->surface(1);
  if (!surface) return;
  const std::vector<uint8_t> pixels = device->readPixels(*surface);
  if (pixels.size() != width_ * height_ * bytesPerPixel) return;
  // Where the red byte of a pixel stands; alpha takes the place before or after the colours.
  const size_t red = alphaInfo_ == CGImageAlphaInfo::premultipliedFirst ? 1 : 0;
  const size_t alpha = alphaInfo_ == CGImageAlphaInfo::premultipliedFirst ? 0 : 3;
  const uint8_t* source = pixels.data();
  for (size_t y = 0; y < height_; ++y) {
    uint8_t* pixel = data_ + y * bytesPerRow_;
    for (size_t x = 0; x < width_; ++x, pixel += bytesPerPixel, source += bytesPerPixel) {
      pixel[red] = source[0];
      pixel[red + 1] = source[1];
      pixel[red + 2] = source[2];
      pixel[alpha] = source[3];
    }
  }
}

void CGBitmapContext::doClear(CGRect rect) {
  const CGAffineTransform& t = ctm();
  const bool upright = (t.b == 0 && t.c == 0) || (t.a == 0 && t.d == 0);
  const CGRect cleared = CGRectApplyAffineTransform(rect, t);
  const bool whole = upright && CGRectGetMinX(cleared) <= 0 && CGRectGetMinY(cleared) <= 0 &&
                     CGRectGetMaxX(cleared) >= static_cast<double>(width_) &&
                     CGRectGetMaxY(cleared) >= static_cast<double>(height_);
  if (whole && !isClippedOrGrouped())
    forget();
  else
    RecordingContext::doClear(rect);
}

}  // namespace zelkon
