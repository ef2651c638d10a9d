#include "Backends/Cairo/CairoSurface.h"

#include <algorithm>
#include <cstring>

#include "Backends/Cairo/CairoHandles.h"
#include "Backends/Cairo/PNGEncoder.h"

namespace zelkon {

namespace {

constexpr int maximumSide = 32767;
constexpr uint64_t maximumBytes = uint64_t{1} << 30;

bool isPossibleSize(int64_t width, int64_t height) {
  return width >= 1 && height >= 1 && width <= maximumSide && height <= maximumSide &&
         static_cast<uint64_t>(width) * static_cast<uint64_t>(height) * 4 <= maximumBytes;
}

struct ByteReader {
  const uint8_t* next;
  size_t left;
};

cairo_status_t readBytes(void* closure, unsigned char* data, unsigned length) {
  auto* reader = static_cast<ByteReader*>(closure);
  if (length > reader->left) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(data, reader->next, length);
  reader->next += length;
  reader->left -= length;
  return CAIRO_STATUS_SUCCESS;
}

// The header chunk comes right after the signature; its sizes are checked before the decoder reserves memory for them.
bool hasPossibleHeader(const uint8_t* bytes, size_t count) {
  static constexpr uint8_t signature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
  if (!bytes || count < 24 || std::memcmp(bytes, signature, sizeof signature) != 0) return false;
  auto bigEndian = [bytes](size_t at) {
    return static_cast<int64_t>(bytes[at]) << 24 | bytes[at + 1] << 16 | bytes[at + 2] << 8 | bytes[at + 3];
  };
  return isPossibleSize(bigEndian(16), bigEndian(20));
}

}  // namespace

std::shared_ptr<CairoSurface> CairoSurface::create(int pixelWidth, int pixelHeight) {
  if (!isPossibleSize(pixelWidth, pixelHeight)) return nullptr;
  CairoSurfaceHandle handle(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixelWidth, pixelHeight));
  if (cairo_surface_status(handle.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  return std::shared_ptr<CairoSurface>(new CairoSurface(handle.release()));
}

std::shared_ptr<CairoSurface> CairoSurface::decodePNG(const uint8_t* bytes, size_t count) {
  if (!hasPossibleHeader(bytes, count)) return nullptr;
  ByteReader reader{bytes, count};
  CairoSurfaceHandle decoded(cairo_image_surface_create_from_png_stream(readBytes, &reader));
  if (cairo_surface_status(decoded.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  if (cairo_image_surface_get_format(decoded.get()) == CAIRO_FORMAT_ARGB32)
    return std::shared_ptr<CairoSurface>(new CairoSurface(decoded.release()));
  // Pictures without alpha are decoded to another format; everything here expects one format.
  auto surface = create(cairo_image_surface_get_width(decoded.get()), cairo_image_surface_get_height(decoded.get()));
  if (!surface) return nullptr;
  CairoHandle cr(cairo_create(surface->handle_));
  cairo_set_source_surface(cr.get(), decoded.get(), 0, 0);
  cairo_paint(cr.get());
  return surface;
}

CairoSurface::~CairoSurface() { cairo_surface_destroy(handle_); }

int CairoSurface::pixelWidth() const { return cairo_image_surface_get_width(handle_); }
int CairoSurface::pixelHeight() const { return cairo_image_surface_get_height(handle_); }

std::string CairoSurface::encodePNG() const { return encodedPNG(handle_); }

std::vector<uint8_t> CairoSurface::readPixels() const {
  cairo_surface_flush(handle_);
  const uint8_t* data = cairo_image_surface_get_data(handle_);
  if (!data) return {};
  const auto width = static_cast<size_t>(pixelWidth()), height = static_cast<size_t>(pixelHeight());
  const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(handle_));
  std::vector<uint8_t> pixels(width * height * 4);
  uint8_t* out = pixels.data();
  for (size_t y = 0; y < height; ++y) {
    for (size_t x = 0; x < width; ++x, out += 4) {
      uint32_t argb;
      std::memcpy(&argb, data + y * stride + x * 4, 4);
      out[0] = static_cast<uint8_t>(argb >> 16);
      out[1] = static_cast<uint8_t>(argb >> 8);
      out[2] = static_cast<uint8_t>(argb);
      out[3] = static_cast<uint8_t>(argb >> 24);
    }
  }
  return pixels;
}

}  // namespace zelkon
