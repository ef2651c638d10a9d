// The pixels of a target for those who work on them by themselves. For the backend's own sources.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "Backends/Cairo/CairoHandles.h"

namespace zelkon {

struct PixelBox {
  double x1, y1, x2, y2;
};

// Calls use(x, y, pixels, count) with each row of the whole-numbered `box` that the clip lets through: `pixels` is the
// one at (x, y), all in the device space of `cr`, whose target must be an image of premultiplied ARGB. False, and no
// call, where the clip cuts through pixels.
template <typename Use>
bool forEachClippedRow(cairo_t* cr, PixelBox box, Use use) {
  cairo_save(cr);
  cairo_identity_matrix(cr);
  const CairoRectanglesHandle clip(cairo_copy_clip_rectangle_list(cr));
  cairo_restore(cr);
  if (clip->status != CAIRO_STATUS_SUCCESS) return false;
  cairo_surface_t* target = cairo_get_target(cr);
  cairo_surface_flush(target);
  uint8_t* data = cairo_image_surface_get_data(target);
  if (!data) return true;
  const ptrdiff_t stride = cairo_image_surface_get_stride(target);
  double offsetX, offsetY;
  cairo_surface_get_device_offset(target, &offsetX, &offsetY);
  for (int i = 0; i < clip->num_rectangles; ++i) {
    const cairo_rectangle_t& part = clip->rectangles[i];
    const double x1 = std::max(part.x, box.x1), x2 = std::min(part.x + part.width, box.x2);
    const double y1 = std::max(part.y, box.y1), y2 = std::min(part.y + part.height, box.y2);
    if (!(x1 < x2)) continue;
    for (double y = y1; y < y2; ++y) {
      uint8_t* row = data + static_cast<ptrdiff_t>(y + offsetY) * stride;
      use(x1, y, reinterpret_cast<uint32_t*>(row) + static_cast<ptrdiff_t>(x1 + offsetX), static_cast<size_t>(x2 - x1));
    }
  }
  cairo_surface_mark_dirty(target);
  return true;
}

}  // namespace zelkon
