#include <gtest/gtest.h>
#include <png.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "Backends/Cairo/CairoHandles.h"
#include "Backends/Cairo/PNGEncoder.h"

namespace zelkon {
namespace {

using Pixels = std::vector<uint32_t>;

// Premultiplied ARGB, rows of `width`.
CairoSurfaceHandle surfaceOf(const Pixels& pixels, int width) {
  const int height = static_cast<int>(pixels.size()) / width;
  CairoSurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  uint8_t* data = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  for (int y = 0; y < height; ++y)
    std::memcpy(data + static_cast<ptrdiff_t>(y) * stride, &pixels[static_cast<size_t>(y) * static_cast<size_t>(width)],
                static_cast<size_t>(width) * 4);
  cairo_surface_mark_dirty(surface.get());
  return surface;
}

// Red, green, blue, alpha of each pixel as libpng reads them; empty where it finds a fault.
std::vector<uint8_t> decoded(const std::string& bytes, int width) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_memory(&image, bytes.data(), bytes.size())) return {};
  EXPECT_EQ(image.width, static_cast<png_uint_32>(width));
  image.format = PNG_FORMAT_RGBA;
  std::vector<uint8_t> out(PNG_IMAGE_SIZE(image));
  if (!png_image_finish_read(&image, nullptr, out.data(), 0, nullptr)) out.clear();
  EXPECT_EQ(image.warning_or_error, 0u) << image.message;
  return out;
}

std::vector<uint8_t> plain(const Pixels& pixels) {
  std::vector<uint8_t> out;
  for (const uint32_t argb : pixels) {
    const uint32_t alpha = argb >> 24;
    for (const int shift : {16, 8, 0})
      out.push_back(alpha == 0 ? 0 : static_cast<uint8_t>(((argb >> shift & 255) * 255 + alpha / 2) / alpha));
    out.push_back(static_cast<uint8_t>(alpha));
  }
  return out;
}

std::string encoded(const Pixels& pixels, int width) { return encodedPNG(surfaceOf(pixels, width).get()); }

Pixels picture(int width, int height, const std::function<uint32_t(int x, int y)>& color) {
  Pixels pixels;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) pixels.push_back(color(x, y));
  return pixels;
}

TEST(PNGEncoder, EveryColourOfEveryAlphaComesBackPlain) {
  // Each component at each alpha that it can have, the others along with it.
  const Pixels pixels = picture(256, 256, [](int x, int y) {
    const auto alpha = static_cast<uint32_t>(y), red = std::min(alpha, static_cast<uint32_t>(x));
    return alpha << 24 | red << 16 | (alpha - red) << 8 | red / 2;
  });
  EXPECT_EQ(decoded(encoded(pixels, 256), 256), plain(pixels));
}

TEST(PNGEncoder, OpaqueAndTransparentAndNoisyPixelsComeBack) {
  std::mt19937 random(7);
  for (const int width : {1, 2, 15, 16, 17, 33, 100}) {
    const Pixels pixels = picture(width, 40, [&](int x, int y) -> uint32_t {
      const uint32_t noise = static_cast<uint32_t>(random());
      switch ((x / 16 + y / 3) % 4) {
        case 0:
          return 0;
        case 1:
          return noise | 0xff000000;
        case 2:
          return noise & 1 ? 0xff102030 : 0x80000000 | (noise & 0x7f7f7f);
        default:
          return 0xff804020;
      }
    });
    EXPECT_EQ(decoded(encoded(pixels, width), width), plain(pixels)) << width;
  }
}

TEST(PNGEncoder, NoiseComesBackHardlyLonger) {
  std::mt19937 random(11);
  const Pixels pixels = picture(500, 401, [&](int, int) { return static_cast<uint32_t>(random()) | 0xff000000; });
  const std::string bytes = encoded(pixels, 500);
  EXPECT_EQ(decoded(bytes, 500), plain(pixels));
  EXPECT_LT(bytes.size(), pixels.size() * 4 + 4000);
}

TEST(PNGEncoder, AWidePictureComesBack) {
  const Pixels pixels =
      picture(32767, 2, [](int x, int y) -> uint32_t { return y == 1 && x > 30000 ? 0xffabcdef : 0xff000000; });
  EXPECT_EQ(decoded(encoded(pixels, 32767), 32767), plain(pixels));
}

TEST(PNGEncoder, FlatAreasAndSoftShadesTakeLittleSpace) {
  const Pixels flat = picture(600, 400, [](int x, int) -> uint32_t { return x < 300 ? 0xff204060 : 0; });
  EXPECT_LT(encoded(flat, 600).size(), 6000u);
  const Pixels shade =
      picture(600, 400, [](int, int y) { return 0xff000000 | static_cast<uint32_t>(y / 2) * 0x10101; });
  EXPECT_LT(encoded(shade, 600).size(), 6000u);
}

}  // namespace
}  // namespace zelkon
