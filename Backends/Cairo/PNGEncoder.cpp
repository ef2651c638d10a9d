#include "Backends/Cairo/PNGEncoder.h"

#include <isa-l.h>

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
// Of 0 to 3: the least one whose codes follow the picture.
constexpr uint32_t compressionLevel = 1;
constexpr size_t chunkBytes = 1 << 16;  // compressed at once, and made room for at once

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
  const auto* bytes = reinterpret_cast<const unsigned char*>(out.data() + start + 4);
  appendNumber(out, crc32_gzip_refl(0, bytes, out.size() - start - 4));
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

// With red in the lowest byte instead of blue.
uint32_t redFirst(uint32_t argb) { return (argb & 0xff00ff00) | (argb >> 16 & 255) | (argb & 255) << 16; }

// Byte by byte, without borrowing from the next.
uint32_t difference(uint32_t a, uint32_t b) {
  constexpr uint32_t tops = 0x80808080;
  return ((a | tops) - (b & ~tops)) ^ ((a ^ ~b) & tops);
}

// The differences of plain components between two rows of premultiplied pixels.
void subtractPixels(const uint32_t* row, const uint32_t* above, size_t count, uint32_t* out) {
  for (size_t x = 0; x < count; ++x)
    out[x] = row[x] == above[x] ? 0 : redFirst(difference(plain(row[x]), plain(above[x])));
}

// The same with quicker ways for pixels that are all as those above, or all opaque: such lie next to each other.
void subtractRows(const uint32_t* row, const uint32_t* above, size_t width, uint32_t* out) {
  constexpr size_t step = 16;
  size_t x = 0;
  for (; x + step <= width; x += step) {
    uint32_t all = ~uint32_t{0}, changes = 0;
    for (size_t i = x; i < x + step; ++i) {
      all &= row[i] & above[i];
      changes |= row[i] ^ above[i];
    }
    if (changes == 0)
      std::fill(out + x, out + x + step, 0);
    else if (all >> 24 == 255)
      for (size_t i = x; i < x + step; ++i) out[i] = redFirst(difference(row[i], above[i]));
    else
      subtractPixels(row + x, above + x, step, out + x);
  }
  subtractPixels(row + x, above + x, width - x, out + x);
}

constexpr size_t mostBytesReadBehind = 512;

// Appends what it is given to a string as one compressed stream.
class Deflater {
 public:
  explicit Deflater(std::string& out) : out_(out) {
    isal_deflate_init(stream_.get());
    stream_->level = compressionLevel;
    stream_->level_buf = levelBuffer_.get();
    stream_->level_buf_size = levelBufferBytes;
    stream_->gzip_flag = IGZIP_ZLIB;
  }
  void add(std::vector<uint8_t>& bytes, bool isEnd) {
    stream_->next_in = bytes.data();
    stream_->avail_in = static_cast<uint32_t>(bytes.size());
    stream_->end_of_stream = isEnd ? 1 : 0;
    do {
      stream_->next_out = compressed_.get();
      stream_->avail_out = chunkBytes;
      isal_deflate(stream_.get());
      out_.append(reinterpret_cast<const char*>(compressed_.get()), chunkBytes - stream_->avail_out);
    } while (stream_->avail_out == 0);
  }

 private:
  static constexpr uint32_t levelBufferBytes = ISAL_DEF_LVL1_DEFAULT;
  std::string& out_;
  std::unique_ptr<isal_zstream> stream_{new isal_zstream{}};
  // The library looks for matches in its tables before it has filled them: what memory held by chance would show in the
  // bytes, though never in the pixels.
  std::unique_ptr<uint8_t[]> levelBuffer_{new uint8_t[levelBufferBytes]{}}, compressed_{new uint8_t[chunkBytes]};
};

void appendRows(std::string& out, const uint8_t* pixels, size_t width, size_t height, size_t stride) {
  Deflater deflater(out);
  const std::vector<uint32_t> nothing(width);
  std::vector<uint32_t> differences(width);
  std::vector<uint8_t> chunk;
  const size_t rowBytes = width * sizeof(uint32_t);
  // The library also reads behind what it is given, which must not hold what memory held by chance.
  chunk.resize(chunkBytes + 1 + rowBytes + mostBytesReadBehind);
  chunk.clear();
  const uint32_t* above = nothing.data();
  for (size_t y = 0; y < height; ++y) {
    const auto* row = reinterpret_cast<const uint32_t*>(pixels + y * stride);
    subtractRows(row, above, width, differences.data());
    above = row;
    const auto* bytes = reinterpret_cast<const uint8_t*>(differences.data());
    chunk.push_back(differencesFromAbove);
    chunk.insert(chunk.end(), bytes, bytes + rowBytes);
    const bool isEnd = y + 1 == height;
    if (chunk.size() < chunkBytes && !isEnd) continue;
    deflater.add(chunk, isEnd);
    chunk.clear();
  }
}

std::string encoded(const uint8_t* pixels, size_t width, size_t height, size_t stride) {
  std::string out(signature, sizeof signature);
  appendChunk(out, "IHDR", [&] {
    appendNumber(out, width);
    appendNumber(out, height);
    for (const uint8_t value : {bitsPerComponent, redGreenBlueAlpha, uint8_t{0}, uint8_t{0}, uint8_t{0}})
      out.push_back(static_cast<char>(value));
  });
  appendChunk(out, "IDAT", [&] { appendRows(out, pixels, width, height, stride); });
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
