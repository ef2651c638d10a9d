#include "Backends/Cairo/CairoShadow.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace zelkon {

namespace {

constexpr double largestMaskSide = 8192;  // a larger shadow is left out rather than eating the memory

PixelBox extentOf(cairo_surface_t* drawing) {
  double x, y, width, height;
  if (cairo_surface_get_type(drawing) == CAIRO_SURFACE_TYPE_RECORDING) {
    cairo_recording_surface_ink_extents(drawing, &x, &y, &width, &height);
  } else {
    cairo_surface_get_device_offset(drawing, &x, &y);
    x = -x;
    y = -y;
    width = cairo_image_surface_get_width(drawing);
    height = cairo_image_surface_get_height(drawing);
  }
  return {x, y, x + width, y + height};
}

}  // namespace

ShadowMask shadowMask(cairo_surface_t* drawing, PixelBox visible, double sigma, double resolution) {
  const int reach = gaussianReach(sigma * resolution);
  const double margin = reach / resolution;
  PixelBox box = extentOf(drawing);
  // The blur needs what lies up to its reach outside of the visible part.
  box = {std::floor(std::max(box.x1, visible.x1 - margin) - margin),
         std::floor(std::max(box.y1, visible.y1 - margin) - margin),
         std::ceil(std::min(box.x2, visible.x2 + margin) + margin),
         std::ceil(std::min(box.y2, visible.y2 + margin) + margin)};
  const double pixelWidth = std::ceil((box.x2 - box.x1) * resolution);
  const double pixelHeight = std::ceil((box.y2 - box.y1) * resolution);
  if (!(pixelWidth > 0 && pixelHeight > 0) || pixelWidth > largestMaskSide || pixelHeight > largestMaskSide) return {};
  const int width = static_cast<int>(pixelWidth), height = static_cast<int>(pixelHeight);

  ShadowMask mask;
  mask.x = box.x1;
  mask.y = box.y1;
  mask.alpha.reset(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height));
  CairoHandle cr(cairo_create(mask.alpha.get()));
  cairo_scale(cr.get(), resolution, resolution);
  cairo_set_source_surface(cr.get(), drawing, -box.x1, -box.y1);
  cairo_paint(cr.get());
  cr.reset();
  cairo_surface_flush(mask.alpha.get());
  uint8_t* data = cairo_image_surface_get_data(mask.alpha.get());
  if (!data) return {};
  const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(mask.alpha.get()));
  gaussianBlur(data, stride, width, height, sigma * resolution);
  cairo_surface_mark_dirty(mask.alpha.get());
  return mask;
}

void brightenPixels(cairo_surface_t* image, double factor) {
  cairo_surface_flush(image);
  uint8_t* data = cairo_image_surface_get_data(image);
  if (!data) return;
  const int width = cairo_image_surface_get_width(image), height = cairo_image_surface_get_height(image);
  const int stride = cairo_image_surface_get_stride(image);
  for (int y = 0; y < height; ++y) {
    uint8_t* row = data + static_cast<ptrdiff_t>(y) * stride;
    for (int x = 0; x < width; ++x, row += 4) {
      uint32_t argb;
      std::memcpy(&argb, row, 4);
      const uint32_t alpha = argb >> 24;
      // The limit 1 of a plain component is the alpha of a premultiplied one.
      auto scaled = [&](int shift) {
        const double component = ((argb >> shift) & 255) * factor + 0.5;
        return std::min(static_cast<uint32_t>(std::clamp(component, 0.0, 255.0)), alpha) << shift;
      };
      argb = alpha << 24 | scaled(16) | scaled(8) | scaled(0);
      std::memcpy(row, &argb, 4);
    }
  }
  cairo_surface_mark_dirty(image);
}

CairoSurfaceHandle brightenedCopy(cairo_surface_t* image, double factor) {
  CairoSurfaceHandle copy(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(image),
                                                     cairo_image_surface_get_height(image)));
  CairoHandle cr(cairo_create(copy.get()));
  cairo_set_source_surface(cr.get(), image, 0, 0);
  cairo_paint(cr.get());
  cr.reset();
  brightenPixels(copy.get(), factor);
  return copy;
}

}  // namespace zelkon
