#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <numeric>

#include "Backends/Cairo/HuffmanCode.h"
#include "Backends/Cairo/PixelDeflater.h"

namespace zelkon {
namespace {

double shareOfSpace(const HuffmanCode& code) {
  double share = 0;
  for (const uint8_t length : code.lengths) share += length == 0 ? 0 : 1.0 / (1 << length);
  return share;
}

size_t bitsFor(const std::vector<uint32_t>& counts, const HuffmanCode& code) {
  size_t bits = 0;
  for (size_t symbol = 0; symbol < counts.size(); ++symbol) bits += counts[symbol] * code.lengths[symbol];
  return bits;
}

TEST(HuffmanCode, FrequentSymbolsGetShortCodes) {
  const HuffmanCode code = huffmanCode({10, 0, 40, 20, 5, 5}, 15);
  EXPECT_EQ(code.lengths, (std::vector<uint8_t>{3, 0, 1, 2, 4, 4}));
  // In the order of their symbols 110, 0, 10, 1110 and 1111, each from its end.
  EXPECT_EQ(code.bits, (std::vector<uint16_t>{0b011, 0, 0b0, 0b01, 0b0111, 0b1111}));
}

TEST(HuffmanCode, TwoSymbolsTakeABitEach) {
  const HuffmanCode code = huffmanCode({0, 1000000, 0, 1}, 7);
  EXPECT_EQ(code.lengths, (std::vector<uint8_t>{0, 1, 0, 1}));
}

TEST(HuffmanCode, NoCodeIsLongerThanAllowedAndNoneIsWasted) {
  std::vector<uint32_t> counts{1, 1};
  while (counts.size() < 30) counts.push_back(counts[counts.size() - 1] + counts[counts.size() - 2]);
  for (const int longest : {5, 7, 14, 15}) {
    const HuffmanCode code = huffmanCode(counts, longest);
    EXPECT_LE(*std::max_element(code.lengths.begin(), code.lengths.end()), longest);
    EXPECT_DOUBLE_EQ(shareOfSpace(code), 1) << longest;
    EXPECT_LE(bitsFor(counts, code), 5 * std::accumulate(counts.begin(), counts.end(), size_t{0}));
  }
}

// What zlib makes of rows of pixels that begin with a byte.
std::vector<uint8_t> inflated(const std::string& stream, size_t size) {
  std::vector<uint8_t> out(size + 1);
  uLongf length = out.size();
  EXPECT_EQ(uncompress(out.data(), &length, reinterpret_cast<const Bytef*>(stream.data()), stream.size()), Z_OK);
  out.resize(length);
  return out;
}

TEST(PixelDeflater, RowsComeBackWithTheirFirstBytes) {
  std::string stream = "before";
  std::vector<uint8_t> expected;
  PixelDeflater deflater(stream);
  for (size_t row = 0; row < 300; ++row) {
    std::vector<uint32_t> pixels;
    // Repetitions as long as the row's number, three times.
    for (size_t x = 0; x < 3 * row; ++x) pixels.push_back(static_cast<uint32_t>(0x01020304 * (x / (row + 1)) + row));
    deflater.addRow(static_cast<uint8_t>(row % 5), pixels.data(), pixels.size());
    expected.push_back(static_cast<uint8_t>(row % 5));
    for (const uint32_t pixel : pixels)
      for (int shift = 0; shift < 32; shift += 8) expected.push_back(static_cast<uint8_t>(pixel >> shift));
  }
  deflater.finish();
  ASSERT_EQ(stream.substr(0, 6), "before");
  EXPECT_EQ(inflated(stream.substr(6), expected.size()), expected);
}

TEST(PixelDeflater, NoRowsAreAnEmptyStream) {
  std::string stream;
  PixelDeflater(stream).finish();
  EXPECT_TRUE(inflated(stream, 0).empty());
}

TEST(PixelDeflater, ARowThatEndsABlockIsNotLost) {
  // Pixels that all differ fill a block with each row.
  std::vector<uint32_t> pixels(40000);
  std::iota(pixels.begin(), pixels.end(), 0xfffff000u);
  std::string stream;
  PixelDeflater deflater(stream);
  for (int row = 0; row < 3; ++row) deflater.addRow(2, pixels.data(), pixels.size());
  deflater.finish();
  const std::vector<uint8_t> bytes = inflated(stream, 3 * (1 + 4 * pixels.size()));
  ASSERT_EQ(bytes.size(), 3 * (1 + 4 * pixels.size()));
  EXPECT_EQ(bytes.back(), pixels.back() >> 24);
  EXPECT_EQ(bytes[1 + 4 * 4096], 0);
}

}  // namespace
}  // namespace zelkon
