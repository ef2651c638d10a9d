#include "Backends/Cairo/OverlayPixels.h"

#include "Backends/Cairo/ClippedRows.h"
#include "Backends/Cairo/PixelComponents.h"

namespace zelkon {

namespace {

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
  return dividedBy255(sum);
}

}  // namespace

void overlayPixels(const uint32_t* source, uint32_t* beneath, size_t count) {
  size_t x = 0;
  for (; x + pixelsAtOnce <= count; x += pixelsAtOnce)
    if ((source[x] | source[x + 1]) != 0)
      storeComponents(overlaid(componentsAt(source + x), componentsAt(beneath + x)), beneath + x);
  if (x == count) return;
  const uint32_t lastSource[pixelsAtOnce] = {source[x], 0};
  uint32_t lastBeneath[pixelsAtOnce] = {beneath[x], 0};
  storeComponents(overlaid(componentsAt(lastSource), componentsAt(lastBeneath)), lastBeneath);
  beneath[x] = lastBeneath[0];
}

bool paintOverlay(cairo_t* cr, cairo_surface_t* image, double x, double y) {
  cairo_surface_flush(image);
  const uint8_t* data = cairo_image_surface_get_data(image);
  const ptrdiff_t stride = cairo_image_surface_get_stride(image);
  const PixelBox box{x, y, x + cairo_image_surface_get_width(image), y + cairo_image_surface_get_height(image)};
  return forEachClippedRow(cr, box, [&](double x1, double y1, uint32_t* beneath, size_t count) {
    const auto* row = reinterpret_cast<const uint32_t*>(data + static_cast<ptrdiff_t>(y1 - y) * stride);
    overlayPixels(row + static_cast<ptrdiff_t>(x1 - x), beneath, count);
  });
}

}  // namespace zelkon
