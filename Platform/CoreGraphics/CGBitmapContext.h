// An off-screen context of a size in points. It records; pixels are made from the recording when somebody needs them.
#pragma once

#include <cstdint>
#include <memory>

#include "CoreGraphics/DisplayList.h"

namespace zelkon {

enum class CGImageAlphaInfo { premultipliedLast = 1, premultipliedFirst = 2 };

class CGBitmapContext : public RecordingContext {
 public:
  // Null when width or height is 0, when bytesPerRow is not 0 and less than 4 * width, or when the pixels would not fit
  // in memory. `data` (may be null) is not owned and receives the pixels on flush().
  static std::shared_ptr<CGBitmapContext> create(uint8_t* data, size_t width, size_t height, size_t bytesPerRow,
                                                 CGColorSpaceRef space, CGImageAlphaInfo alphaInfo);
  size_t width() const { return width_; }
  size_t height() const { return height_; }
  size_t bytesPerRow() const { return bytesPerRow_; }
  const CGColorSpaceRef& colorSpace() const { return space_; }
  CGImageAlphaInfo alphaInfo() const { return alphaInfo_; }
  uint8_t* data() const { return data_; }
  // A snapshot; later drawing does not alter it.
  CGImageRef createImage() const;
  // Writes the pixels at scale 1 to the data given at creation, if any, first row at the top.
  void flush() override;

 protected:
  void doClear(CGRect rect) override;  // forgets everything when the whole bitmap is cleared without a clip

 private:
  CGBitmapContext() = default;
  uint8_t* data_ = nullptr;
  size_t width_ = 0, height_ = 0, bytesPerRow_ = 0;
  CGColorSpaceRef space_;
  CGImageAlphaInfo alphaInfo_ = CGImageAlphaInfo::premultipliedLast;
};

}  // namespace zelkon
