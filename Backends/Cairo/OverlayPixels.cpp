#include "Backends/Cairo/OverlayPixels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace zelkon {

namespace {

// The components of two pixels that the processor works on at once; both compilers know such types.
using Bytes = uint8_t __attribute__((vector_size(8)));
using Components = uint16_t __attribute__((vector_size(16)));
constexpr size_t pixelsAtOnce = 2;

Components componentsAt(const uint32_t* pixels) {
  Bytes bytes;
  std::memcpy(&bytes, pixels, sizeof bytes);
  return __builtin_convertvector(bytes, Components);
}

void store(const Components& components, uint32_t* pixels) {
  const Bytes bytes = __builtin_convertvector(components, Bytes);
  std::memcpy(pixels, &bytes, sizeof bytes);
}

// The alpha of each pixel for each of its components: it lies in the upper byte of the pixel's number.
Components alphasOf(const Components& c) {
  if constexpr (__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__)
    return __builtin_shufflevector(c, c, 3, 3, 3, 3, 7, 7, 7, 7);
  else
    return __builtin_shufflevector(c, c, 0, 0, 0, 0, 4, 4, 4, 4);
}

// The separable blend mode "overlay" of Compositing and Blending Level 1 (W3C), for premultiplied components of 255:
// what both alphas leave to each side alone, and where both are, the product doubled below the middle and the screen
// doubled above it. For alpha itself the same sum is the union of both.
Components overlaid(const Components& s, const Components& d) {
  const Components sa = alphasOf(s), da = alphasOf(d);
  const Components doubled = s * d * 2, screened = sa * da - (da - d) * (sa - s) * 2;
  const auto isDark = reinterpret_cast<Components>(d + d < da);
  const Components sum = (255 - sa) * d + (255 - da) * s + ((doubled & isDark) | (screened & ~isDark));
  // Divided by 255 and rounded.
  const Components half = sum + 128;
  return (half + (half >> 8)) >> 8;
}

}  // namespace

void overlayPixels(const uint32_t* source, uint32_t* beneath, size_t count) {
  size_t x = 0;
  for (; x + pixelsAtOnce <= count; x += pixelsAtOnce)
    if ((source[x] | source[x + 1]) != 0)
      store(overlaid(componentsAt(source + x), componentsAt(beneath + x)), beneath + x);
  if (x == count) return;
  const uint32_t lastSource[pixelsAtOnce] = {source[x], 0};
  uint32_t lastBeneath[pixelsAtOnce] = {beneath[x], 0};
  store(overlaid(componentsAt(lastSource), componentsAt(lastBeneath)), lastBeneath);
  beneath[x] = lastBeneath[0];
}

bool paintOverlay(cairo_t* cr, cairo_surface_t* image, double x, double y) {
  cairo_save(cr);
  cairo_identity_matrix(cr);
  const CairoRectanglesHandle clip(cairo_copy_clip_rectangle_list(cr));
  cairo_restore(cr);
  if (clip->status != CAIRO_STATUS_SUCCESS) return false;
  cairo_surface_t* target = cairo_get_target(cr);
  cairo_surface_flush(image);
  cairo_surface_flush(target);
  const uint8_t* sourceData = cairo_image_surface_get_data(image);
  uint8_t* targetData = cairo_image_surface_get_data(target);
  if (!sourceData || !targetData) return true;
  double offsetX, offsetY;
  cairo_surface_get_device_offset(target, &offsetX, &offsetY);
  const ptrdiff_t sourceStride = cairo_image_surface_get_stride(image);
  const ptrdiff_t targetStride = cairo_image_surface_get_stride(target);
  const double width = cairo_image_surface_get_width(image), height = cairo_image_surface_get_height(image);
  for (int i = 0; i < clip->num_rectangles; ++i) {
    const cairo_rectangle_t& part = clip->rectangles[i];
    const double x1 = std::max(part.x, x), x2 = std::min(part.x + part.width, x + width);
    const double y1 = std::max(part.y, y), y2 = std::min(part.y + part.height, y + height);
    if (!(x1 < x2)) continue;
    const auto count = static_cast<size_t>(x2 - x1);
    for (double row = y1; row < y2; ++row) {
      const uint8_t* source = sourceData + static_cast<ptrdiff_t>(row - y) * sourceStride;
      uint8_t* beneath = targetData + static_cast<ptrdiff_t>(row + offsetY) * targetStride;
      overlayPixels(reinterpret_cast<const uint32_t*>(source) + static_cast<ptrdiff_t>(x1 - x),
                    reinterpret_cast<uint32_t*>(beneath) + static_cast<ptrdiff_t>(x1 + offsetX), count);
    }
  }
  cairo_surface_mark_dirty(target);
  return true;
}

}  // namespace zelkon
