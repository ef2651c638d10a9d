#include "Classes/Utilities/PiePlotDrawingUtilities.h"

#include <limits>
#include <new>

#include "AppKit/NSBundle.h"
#include "CoreGraphics/GraphicsDevice.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/PlatformSession.h"

namespace zelkon {

namespace {

constexpr const char* sourceFile = "Classes/Utilities/PiePlotDrawingUtilities";
constexpr size_t bytesPerPixel = 4;

// A length in whole pixels. What no bitmap can have (negative, not a number, too large) is 0.
size_t wholePixels(double length) {
  return length >= 1 && length <= std::numeric_limits<int32_t>::max() ? static_cast<size_t>(length) : 0;
}

PiePlotDrawingUtilities::BackingBuffer allocatePixels(size_t rowBytes, size_t height) {
  if (height > static_cast<size_t>(std::numeric_limits<int32_t>::max()) / rowBytes) return nullptr;
  return PiePlotDrawingUtilities::BackingBuffer(new (std::nothrow) uint8_t[rowBytes * height]());
}

}  // namespace

PiePlotDrawingUtilities& PiePlotDrawingUtilities::sharedUtilities() {
  auto& sSingletonInstance =
      PlatformSession::part<std::unique_ptr<PiePlotDrawingUtilities>>(PlatformSession::Key::drawingUtilities);
  if (sSingletonInstance == nullptr) sSingletonInstance.reset(new (std::nothrow) PiePlotDrawingUtilities);
  NSParameterAssert(sSingletonInstance != nullptr, "sSingletonInstance != nil",
                    "+[PiePlotDrawingUtilities sharedUtilities]", nullptr, sourceFile, 29);
  return *sSingletonInstance;
}

const CGColorSpaceRef& PiePlotDrawingUtilities::getScreenColorspace() {
  if (!screenColorspace_)
    screenColorspace_ = std::make_shared<const CGColorSpace>(CGColorSpace{CGColorSpace::Model::rgb, "Screen"});
  return screenColorspace_;
}

size_t PiePlotDrawingUtilities::optimalRowBytesForWidth(size_t width, size_t pixelBytes) const {
  size_t rowBytes = (width * pixelBytes + 15) / 16 * 16;
  // Rows a power of two apart fight for the same lines of the processor's cache.
  while ((rowBytes & (rowBytes - 1)) == 0) rowBytes += 16;
  return rowBytes;
}

std::shared_ptr<CGBitmapContext> PiePlotDrawingUtilities::createBitmapContextOfSize(
    CGSize size, BackingBuffer* createdBackingBuffer) {
  const size_t width = wholePixels(size.width), height = wholePixels(size.height);
  const size_t rowBytes = optimalRowBytesForWidth(width, bytesPerPixel);
  if (createdBackingBuffer != nullptr) {
    *createdBackingBuffer = allocatePixels(rowBytes, height);
    if (!*createdBackingBuffer) return nullptr;
  }
  uint8_t* pixels = createdBackingBuffer != nullptr ? createdBackingBuffer->get() : nullptr;
  std::shared_ptr<CGBitmapContext> context = CGBitmapContext::create(
      pixels, width, height, rowBytes, getScreenColorspace(), CGImageAlphaInfo::premultipliedLast);
  if (!context && createdBackingBuffer != nullptr) createdBackingBuffer->reset();
  return context;
}

void PiePlotDrawingUtilities::_createContextsForImageSize(CGSize size) {
  if (size.width > sharedSize_.width || size.height > sharedSize_.height) _killSharedBitmapCache();
  bool success = true;
  if (!sharedBitmapData_) success = makeSharedContexts(size);
  if (!success) _killSharedBitmapCache();
  NSParameterAssert(success, "success == YES", "-[PiePlotDrawingUtilities _createContextsForImageSize:]", this,
                    sourceFile, 123);
}

bool PiePlotDrawingUtilities::makeSharedContexts(CGSize size) {
  const size_t width = wholePixels(size.width), height = wholePixels(size.height);
  const size_t rowBytes = optimalRowBytesForWidth(width, bytesPerPixel);
  sharedBitmapData_ = allocatePixels(rowBytes, height);
  if (!sharedBitmapData_) return false;
  sharedBitmapContext_ = CGBitmapContext::create(sharedBitmapData_.get(), width, height, rowBytes,
                                                 getScreenColorspace(), CGImageAlphaInfo::premultipliedFirst);
  if (!sharedBitmapContext_) return false;
  sharedCIContext_ =
      std::make_shared<CIContext>(CIContext{sharedBitmapContext_, getScreenColorspace(), getScreenColorspace()});
  sharedSize_ = size;
  return true;
}

void PiePlotDrawingUtilities::_killSharedBitmapCache() {
  sharedCIContext_.reset();
  sharedBitmapContext_.reset();
  sharedBitmapData_.reset();
  sharedSize_ = {};
}

CGImageRef PiePlotDrawingUtilities::cgImageNamed(const std::string& name) {
  constexpr const char* operation = "-[PiePlotDrawingUtilities cgImageNamed:]";
  const std::optional<std::vector<uint8_t>> bytes = NSBundle::mainBundle().dataForImageResource(name);
  NSParameterAssert(bytes.has_value(), "nil != path", operation, this, sourceFile, 165);
  GraphicsDevice* device = GraphicsDevice::current();
  const std::shared_ptr<Surface> pixels = device != nullptr ? device->decodePNG(bytes->data(), bytes->size()) : nullptr;
  NSParameterAssert(pixels != nullptr, "NULL != image", operation, this, sourceFile, 175);
  return std::make_shared<const CGImage>(pixels);
}

}  // namespace zelkon
