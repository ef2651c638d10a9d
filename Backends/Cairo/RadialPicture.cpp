#include "Backends/Cairo/RadialPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include "Backends/Cairo/ClippedRows.h"
#include "Backends/Cairo/PixelComponents.h"

namespace zelkon {

namespace {

// Fine enough that steps stay well below 1/255.
constexpr size_t shades = 2048;

uint32_t byte(double component) { return static_cast<uint32_t>(std::lround(std::clamp(component, 0.0, 1.0) * 255)); }

uint32_t premultiplied(const RGBA& color) {
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

// What `make` gives for the colour at each shade.
template <typename Make>
auto rampOf(const CGGradient& gradient, Make make) {
  std::array<decltype(make(RGBA())), shades + 1> ramp;
  for (size_t i = 0; i <= shades; ++i)
    ramp[i] = make(gradient.colorAt(static_cast<double>(i) / static_cast<double>(shades)));
  return ramp;
}

// The alpha of a colour for each component of a pixel, sixteen bits each.
uint64_t alphaForComponents(const RGBA& color) { return byte(color.alpha) * uint64_t{0x0001000100010001}; }

void multiply(uint32_t* pixels, uint64_t first, uint64_t second) {
  const uint64_t both[] = {first, second};
  Components alphas;
  std::memcpy(&alphas, both, sizeof alphas);
  storeComponents(dividedBy255(componentsAt(pixels) * alphas), pixels);
}

}  // namespace

CairoSurfaceHandle radialPicture(const CGGradient& gradient, CGPoint center, double radius, int width, int height) {
  CairoSurfaceHandle picture = unclearedImage(width, height);
  if (!picture) return nullptr;
  uint8_t* data = cairo_image_surface_get_data(picture.get());
  const auto ramp = rampOf(gradient, premultiplied);
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

bool multiplyByRadialAlpha(cairo_t* cr, const CGGradient& gradient, CGPoint center, double radius) {
  const auto ramp = rampOf(gradient, alphaForComponents);
  const auto toShade = static_cast<float>(static_cast<double>(shades) / radius);
  const double inf = std::numeric_limits<double>::infinity();
  std::vector<int32_t> found;
  return forEachClippedRow(cr, {-inf, -inf, inf, inf}, [&](double x, double y, uint32_t* pixels, size_t count) {
    found.resize(count);
    findShades(static_cast<float>(x + 0.5 - center.x), static_cast<float>(y + 0.5 - center.y), toShade, count,
               found.data());
    const auto alphaAt = [&](size_t i) { return ramp[static_cast<size_t>(found[i])]; };
    size_t i = 0;
    for (; i + pixelsAtOnce <= count; i += pixelsAtOnce)
      if ((pixels[i] | pixels[i + 1]) != 0) multiply(pixels + i, alphaAt(i), alphaAt(i + 1));
    if (i == count) return;
    uint32_t last[pixelsAtOnce] = {pixels[i], 0};
    multiply(last, alphaAt(i), 0);
    pixels[i] = last[0];
  });
}

}  // namespace zelkon
