// Off-screen drawing for the charts: bitmap contexts in the screen's colour space, a reusable shared context, and the
// pictures of the plug-in's bundle. One instance serves the session.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "CoreGraphics/CGBitmapContext.h"
#include "CoreGraphics/CGColor.h"
#include "CoreGraphics/CGGeometry.h"
#include "CoreGraphics/CGImage.h"

namespace zelkon {

// What filters would be rendered through: a bitmap context and the colour spaces of input and output.
struct CIContext {
  std::shared_ptr<CGBitmapContext> target;
  CGColorSpaceRef outputColorSpace, workingColorSpace;
};

class PiePlotDrawingUtilities {
 public:
  using BackingBuffer = std::unique_ptr<uint8_t[]>;

  // The session's.
  static PiePlotDrawingUtilities& sharedUtilities();
  PiePlotDrawingUtilities() = default;
  PiePlotDrawingUtilities(const PiePlotDrawingUtilities&) = delete;
  PiePlotDrawingUtilities& operator=(const PiePlotDrawingUtilities&) = delete;

  // Made on first use; the same object from then on.
  const CGColorSpaceRef& getScreenColorspace();
  // Bytes of a row: a multiple of 16 that is no power of two.
  size_t optimalRowBytesForWidth(size_t width, size_t bytesPerPixel) const;
  // A transparent context of `size` points (fractions cut off), premultiplied alpha last. With a `createdBackingBuffer`
  // the pixels lie in memory that the caller takes over and must keep while the context is used. Null when the size is
  // empty or there is no memory; the buffer is null then, too.
  std::shared_ptr<CGBitmapContext> createBitmapContextOfSize(CGSize size,
                                                             BackingBuffer* createdBackingBuffer = nullptr);
  // Decodes a picture of the bundle, anew on every call. A missing or broken picture is an assertion failure.
  CGImageRef cgImageNamed(const std::string& name);

  // Makes sure that the shared contexts (premultiplied alpha first) are at least `size` points large. Failure asserts.
  void _createContextsForImageSize(CGSize size);
  void _killSharedBitmapCache();
  const std::shared_ptr<CGBitmapContext>& sharedBitmapContext() const { return sharedBitmapContext_; }
  const std::shared_ptr<CIContext>& sharedCIContext() const { return sharedCIContext_; }
  CGSize sharedSize() const { return sharedSize_; }  // (0, 0) when there are no shared contexts

 private:
  bool makeSharedContexts(CGSize size);

  CGColorSpaceRef screenColorspace_;
  CGSize sharedSize_;
  BackingBuffer sharedBitmapData_;
  std::shared_ptr<CGBitmapContext> sharedBitmapContext_;
  std::shared_ptr<CIContext> sharedCIContext_;
};

}  // namespace zelkon
