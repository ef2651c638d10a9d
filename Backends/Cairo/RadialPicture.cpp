#include "Backends/Cairo/RadialPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace zelkon {

namespace {

// Fine enough that steps stay well below 1/255.
constexpr size_t shades = 2048;

uint32_t premultiplied(const RGBA& color) {
  const auto byte = [](double component) {
    return static_cast<uint32_t>(std::lround(std::clamp(component, 0.0, 1.0) * 255));
  };
  const double alpha = std::clamp(color.alpha, 0.0, 1.0);
  return byte(alpha) << 24 | byte(color.red * alpha) << 16 | byte(color.green * alpha) << 8 | byte(color.blue * alpha);
}

// Its pixels are what the memory happens to hold. Null when there is not memory enough.
CairoSurfaceHandle unclearedImage(int width, int height) {
  static const cairo_user_data_key_t ownData{};
  const int stride = cairo_format_stride_for_width(CAIRO_FORMAT_ARGB32, width);
  if (stride < 0) return nullptr;
  void* data = std::malloc(static_cast<size_t>(stride) * static_cast<size_t>(height));
  if (!data) return nullptr;
  CairoSurfaceHandle image(
      cairo_image_surface_create_for_data(static_cast<uint8_t*>(data), CAIRO_FORMAT_ARGB32, width, height, stride));
  if (cairo_surface_set_user_data(image.get(), &ownData, data, std::free) == CAIRO_STATUS_SUCCESS) return image;
  std::free(data);
  return nullptr;
}

// The shades of pixels next to each other, from `dx` on; in a loop of its own, where the processor takes several at
// once.
void findShades(float dx, float dy, float toShade, size_t count, int32_t* out) {
  for (size_t i = 0; i < count; ++i) {
    const float x = dx + static_cast<float>(static_cast<int32_t>(i));
    const float shade = std::sqrt(x * x + dy * dy) * toShade + 0.5f;
    out[i] = static_cast<int32_t>(std::min(shade, static_cast<float>(shades)));
  }
}

}  // namespace

CairoSurfaceHandle radialPicture(const CGGradient& gradient, CGPoint center, double radius, int width, int height) {
  CairoSurfaceHandle picture = unclearedImage(width, height);
  if (!picture) return nullptr;
  uint8_t* data = cairo_image_surface_get_data(picture.get());
  std::array<uint32_t, shades + 1> ramp;
  for (size_t i = 0; i <= shades; ++i)
    ramp[i] = premultiplied(gradient.colorAt(static_cast<double>(i) / static_cast<double>(shades)));
  const int stride = cairo_image_surface_get_stride(picture.get());
  const float toShade = static_cast<float>(static_cast<double>(shades) / radius);
  std::vector<int32_t> found(static_cast<size_t>(width));
  for (int y = 0; y < height; ++y) {
    auto* row = reinterpret_cast<uint32_t*>(data + static_cast<ptrdiff_t>(y) * stride);
    findShades(static_cast<float>(0.5 - center.x), static_cast<float>(y + 0.5 - center.y), toShade, found.size(),
               found.data());
    for (size_t x = 0; x < found.size(); ++x) row[x] = ramp[static_cast<size_t>(found[x])];
  }
  cairo_surface_mark_dirty(picture.get());
  return picture;
}

}  // namespace zelkon
