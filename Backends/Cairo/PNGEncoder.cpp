#include "Backends/Cairo/PNGEncoder.h"

#include <png.h>
#include <zlib.h>

#include <csetjmp>
#include <cstdint>
#include <cstring>
#include <vector>

namespace zelkon {

namespace {

// Charts are flat areas and soft shades: repeated pixels compress better as they are than as differences, and finding
// longer repetitions takes several times as long for a fifth of the bytes.
constexpr int filter = PNG_FILTER_NONE;
constexpr int effort = 3;
constexpr int bitsPerComponent = 8;
constexpr size_t bytesPerPixel = 4;

struct Writer {
  png_structp png = nullptr;
  png_infop info = nullptr;
  ~Writer() { png_destroy_write_struct(&png, &info); }
};

void append(png_structp png, png_bytep data, size_t length) {
  static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<const char*>(data), length);
}

void flushNothing(png_structp) {}

// The component before it was multiplied by alpha.
uint8_t plain(uint32_t component, uint32_t alpha) {
  return static_cast<uint8_t>((component * 255 + alpha / 2) / alpha);
}

void plainRow(const uint8_t* source, size_t width, uint8_t* out) {
  for (size_t x = 0; x < width; ++x, out += bytesPerPixel) {
    uint32_t argb;
    std::memcpy(&argb, source + x * bytesPerPixel, bytesPerPixel);
    const uint32_t alpha = argb >> 24;
    if (alpha == 0) {
      std::memset(out, 0, bytesPerPixel);
      continue;
    }
    const uint32_t red = argb >> 16 & 255, green = argb >> 8 & 255, blue = argb & 255;
    const bool isOpaque = alpha == 255;
    out[0] = isOpaque ? static_cast<uint8_t>(red) : plain(red, alpha);
    out[1] = isOpaque ? static_cast<uint8_t>(green) : plain(green, alpha);
    out[2] = isOpaque ? static_cast<uint8_t>(blue) : plain(blue, alpha);
    out[3] = static_cast<uint8_t>(alpha);
  }
}

}  // namespace

std::string encodedPNG(cairo_surface_t* image) {
  cairo_surface_flush(image);
  const uint8_t* pixels = cairo_image_surface_get_data(image);
  if (!pixels) return {};
  const auto width = static_cast<size_t>(cairo_image_surface_get_width(image));
  const auto height = static_cast<size_t>(cairo_image_surface_get_height(image));
  const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(image));
  // What the jump after an error skips must live outside of it.
  std::string bytes;
  std::vector<uint8_t> row(width * bytesPerPixel);
  Writer writer;
  writer.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  if (writer.png) writer.info = png_create_info_struct(writer.png);
  if (!writer.info) return {};
  if (setjmp(png_jmpbuf(writer.png))) return {};
  png_set_write_fn(writer.png, &bytes, append, flushNothing);
  png_set_user_limits(writer.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
  png_set_IHDR(writer.png, writer.info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height),
               bitsPerComponent, PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  png_set_filter(writer.png, PNG_FILTER_TYPE_BASE, filter);
  png_set_compression_level(writer.png, effort);
  png_set_compression_strategy(writer.png, Z_DEFAULT_STRATEGY);
  png_write_info(writer.png, writer.info);
  for (size_t y = 0; y < height; ++y) {
    plainRow(pixels + y * stride, width, row.data());
    png_write_row(writer.png, row.data());
  }
  png_write_end(writer.png, writer.info);
  return bytes;
}

}  // namespace zelkon
