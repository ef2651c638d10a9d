// Immutable pictures: decoded pixels, or a recording that is rasterised when pixels are needed.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "CoreGraphics/CGGeometry.h"

namespace zelkon {

class DisplayList;

// Pixels that a backend owns. Only the backend that made a surface may draw or read it.
class Surface {
 public:
  virtual ~Surface() = default;
  virtual int pixelWidth() const = 0;
  virtual int pixelHeight() const = 0;
};

class CGImage {
 public:
  // Decoded pixels; one pixel is one unit of its size.
  explicit CGImage(std::shared_ptr<Surface> pixels);
  // What was drawn into a bitmap context of `width` by `height` (whole units at scale 1).
  CGImage(std::shared_ptr<const DisplayList> recording, int width, int height);
  ~CGImage();

  int width() const { return width_; }  // in pixels at scale 1
  int height() const { return height_; }
  CGSize size() const { return {static_cast<double>(width_), static_cast<double>(height_)}; }
  // Null for decoded pixels.
  const std::shared_ptr<const DisplayList>& recording() const { return recording_; }
  // The pixels at `scale` pixels per unit, made by the current device and kept for that scale. Null when the device
  // cannot make them. Decoded images give their own pixels at any scale.
  std::shared_ptr<Surface> surface(double scale) const;
  // Whether surface(scale) has nothing to draw.
  bool hasPixels(double scale) const { return surface_ && (!recording_ || surfaceScale_ == scale); }
  // Takes over the pixels of an image that looks the same, of an equal recording and size.
  void sharePixelsOf(const CGImage& equal) const;
  // For backends that treat the first showing in their own way: notes it, and answers whether there was one before.
  bool noteShown() const { return std::exchange(isShown_, true); }

 private:
  std::shared_ptr<const DisplayList> recording_;
  int width_, height_;
  mutable std::shared_ptr<Surface> surface_;
  mutable double surfaceScale_ = 0;
  mutable bool isShown_ = false;
};
using CGImageRef = std::shared_ptr<const CGImage>;

}  // namespace zelkon
