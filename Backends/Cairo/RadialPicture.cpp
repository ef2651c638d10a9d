#include "Backends/Cairo/RadialPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

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

}  // namespace

CairoSurfaceHandle radialPicture(const CGGradient& gradient, CGPoint center, double radius, int width, int height) {
  CairoSurfaceHandle picture(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  uint8_t* data = cairo_image_surface_get_data(picture.get());
  if (!data) return nullptr;
  std::array<uint32_t, shades + 1> ramp;
  for (size_t i = 0; i <= shades; ++i)
    ramp[i] = premultiplied(gradient.colorAt(static_cast<double>(i) / static_cast<double>(shades)));
  const int stride = cairo_image_surface_get_stride(picture.get());
  const float toShade = static_cast<float>(static_cast<double>(shades) / radius);
  for (int y = 0; y < height; ++y) {
    auto* row = reinterpret_cast<uint32_t*>(data + static_cast<ptrdiff_t>(y) * stride);
    const auto dy = static_cast<float>(y + 0.5 - center.y);
    for (int x = 0; x < width; ++x) {
      const float dx = static_cast<float>(x) + static_cast<float>(0.5 - center.x);
      const float shade = std::sqrt(dx * dx + dy * dy) * toShade + 0.5f;
      row[x] = ramp[static_cast<size_t>(std::min(shade, static_cast<float>(shades)))];
    }
  }
  cairo_surface_mark_dirty(picture.get());
  return picture;
}

}  // namespace zelkon
