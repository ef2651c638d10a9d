// Pixels of the native backend: a Cairo image surface, 32 bits a pixel, premultiplied.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "CoreGraphics/CGImage.h"

typedef struct _cairo_surface cairo_surface_t;

namespace zelkon {

class CairoSurface : public Surface {
 public:
  // Transparent pixels. Null when a side is below 1 or above 32767, when the pixels take more than 1 GiB, or when
  // memory is short.
  static std::shared_ptr<CairoSurface> create(int pixelWidth, int pixelHeight);
  // Null when the bytes are not a whole PNG picture, or one larger than create() allows.
  static std::shared_ptr<CairoSurface> decodePNG(const uint8_t* bytes, size_t count);
  ~CairoSurface() override;
  CairoSurface(const CairoSurface&) = delete;
  CairoSurface& operator=(const CairoSurface&) = delete;

  int pixelWidth() const override;
  int pixelHeight() const override;
  // The picture as the bytes of a PNG file; empty when memory is short.
  std::string encodePNG() const;
  // 8-bit premultiplied R,G,B,A, first row at the top, rows of 4 * width bytes.
  std::vector<uint8_t> readPixels() const;
  // Owned by this object.
  cairo_surface_t* handle() const { return handle_; }

 private:
  explicit CairoSurface(cairo_surface_t* handle) : handle_(handle) {}
  cairo_surface_t* handle_;
};

}  // namespace zelkon
