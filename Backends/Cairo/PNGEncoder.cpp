#include "Backends/Cairo/PNGEncoder.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

namespace zelkon {

namespace {

constexpr char signature[] = {'\x89', 'P', 'N', 'G', '\r', '\n', '\x1a', '\n'};
constexpr uint8_t bitsPerComponent = 8, redGreenBlueAlpha = 6;
// Each byte is written as its difference from the one above: charts are areas of one colour and soft shades, where most
// of these are 0 or close to it.
constexpr uint8_t differencesFromAbove = 2;
// Of 1 to 12. For charts the higher levels take much longer and save little.
constexpr int compressionLevel = 2;

void appendNumber(std::string& out, size_t number) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<char>(number >> shift));
}

// A part of the file: how many bytes it holds, its name, the bytes that `write` appends, and a checksum of these.
template <typename Write>
void appendChunk(std::string& out, const char* name, Write write) {
  const size_t start = out.size();
  appendNumber(out, 0);
  out.append(name, 4);
  write();
  std::string length;
  appendNumber(length, out.size() - start - 8);
  out.replace(start, length.size(), length);
  appendNumber(out, libdeflate_crc32(0, out.data() + start + 4, out.size() - start - 4));
}

// Multiplying by these and taking the upper half of the product divides numbers below 65536 by 1 to 255.
constexpr std::array<uint64_t, 256> divisors = [] {
  std::array<uint64_t, 256> table{};
  for (uint64_t alpha = 1; alpha < table.size(); ++alpha) table[alpha] = ((uint64_t{1} << 32) + alpha - 1) / alpha;
  return table;
}();

// The components before they were multiplied by alpha, which stays at the top.
uint32_t plain(uint32_t argb) {
  const uint32_t alpha = argb >> 24;
  if (alpha == 0) return 0;
  if (alpha == 255) return argb;
  const auto component = [&](int shift) {
    const uint64_t value = ((argb >> shift & 255) * 255 + alpha / 2) * divisors[alpha] >> 32;
    return static_cast<uint32_t>(value & 255) << shift;
  };
  return alpha << 24 | component(16) | component(8) | component(0);
}

// Byte by byte, without borrowing from the next.
uint32_t difference(uint32_t a, uint32_t b) {
  constexpr uint32_t tops = 0x80808080;
  return ((a | tops) - (b & ~tops)) ^ ((a ^ ~b) & tops);
}

// With red in the lowest byte instead of blue.
uint32_t redFirst(uint32_t argb) { return (argb & 0xff00ff00) | (argb >> 16 & 255) | (argb & 255) << 16; }

// The differences of plain components between two rows of premultiplied pixels.
void subtractPixels(const uint32_t* row, const uint32_t* above, size_t count, uint32_t* out) {
  for (size_t x = 0; x < count; ++x)
    out[x] = row[x] == above[x] ? 0 : redFirst(difference(plain(row[x]), plain(above[x])));
}

// The same with the quicker ways for many pixels without a colour, or all opaque: such lie next to each other.
void subtractRows(const uint32_t* row, const uint32_t* above, size_t width, uint32_t* out) {
  constexpr size_t step = 16;
  size_t x = 0;
  for (; x + step <= width; x += step) {
    uint32_t all = ~uint32_t{0}, any = 0;
    for (size_t i = x; i < x + step; ++i) {
      all &= row[i] & above[i];
      any |= row[i] | above[i];
    }
    if (any == 0)
      std::fill(out + x, out + x + step, 0);
    else if (all >> 24 == 255)
      for (size_t i = x; i < x + step; ++i) out[i] = redFirst(difference(row[i], above[i]));
    else
      subtractPixels(row + x, above + x, step, out + x);
  }
  subtractPixels(row + x, above + x, width - x, out + x);
}

// All rows as the file has them before compression, each behind the number of its filter.
std::vector<uint8_t> filteredRows(const uint8_t* pixels, size_t width, size_t height, size_t stride) {
  std::vector<uint8_t> rows(height * (1 + width * sizeof(uint32_t)));
  std::vector<uint32_t> nothing(width), differences(width);
  const uint32_t* above = nothing.data();
  uint8_t* out = rows.data();
  for (size_t y = 0; y < height; ++y) {
    const auto* row = reinterpret_cast<const uint32_t*>(pixels + y * stride);
    subtractRows(row, above, width, differences.data());
    *out++ = differencesFromAbove;
    std::memcpy(out, differences.data(), width * sizeof(uint32_t));
    out += width * sizeof(uint32_t);
    above = row;
  }
  return rows;
}

using Compressor = std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)>;

void appendDeflated(std::string& out, const std::vector<uint8_t>& bytes) {
  const Compressor compressor(libdeflate_alloc_compressor(compressionLevel), libdeflate_free_compressor);
  if (!compressor) throw std::bad_alloc();
  const size_t start = out.size();
  out.resize(start + libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
  out.resize(start + libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), out.data() + start,
                                              out.size() - start));
}

std::string encoded(const uint8_t* pixels, size_t width, size_t height, size_t stride) {
  std::string out(signature, sizeof signature);
  appendChunk(out, "IHDR", [&] {
    appendNumber(out, width);
    appendNumber(out, height);
    for (const uint8_t value : {bitsPerComponent, redGreenBlueAlpha, uint8_t{0}, uint8_t{0}, uint8_t{0}})
      out.push_back(static_cast<char>(value));
  });
  appendChunk(out, "IDAT", [&] { appendDeflated(out, filteredRows(pixels, width, height, stride)); });
  appendChunk(out, "IEND", [] {});
  return out;
}

}  // namespace

std::string encodedPNG(cairo_surface_t* image) {
  cairo_surface_flush(image);
  const uint8_t* pixels = cairo_image_surface_get_data(image);
  if (!pixels) return {};
  try {
    return encoded(pixels, static_cast<size_t>(cairo_image_surface_get_width(image)),
                   static_cast<size_t>(cairo_image_surface_get_height(image)),
                   static_cast<size_t>(cairo_image_surface_get_stride(image)));
  } catch (const std::bad_alloc&) {
    return {};
  }
}

}  // namespace zelkon
