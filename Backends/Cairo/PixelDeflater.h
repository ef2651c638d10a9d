// Rows of pixels as a compressed stream (ZLIB, RFC 1950 and 1951), made for charts: besides a code by how often bytes
// occur it knows only one repetition, that of the pixel before. Searching for others takes several times as long.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zelkon {

class PixelDeflater {
 public:
  // Appends to `out`, which must outlive this object and which nobody else may change until finish().
  explicit PixelDeflater(std::string& out);
  // One byte in front of the row's pixels, then four bytes of each, the lowest first. At most 65535 pixels.
  void addRow(uint8_t first, const uint32_t* pixels, size_t count);
  void finish();

 private:
  // Some pixels of a row as they are, the last of which is then repeated.
  struct Step {
    uint16_t plain, repeats;
  };
  struct Row {
    uint8_t first;
    size_t steps;
  };
  void addToChecksum(uint8_t first, const uint32_t* pixels, const Step* steps, size_t count);
  void writeBlock(bool isLast);

  std::string& out_;
  std::vector<Row> rows_;        // of the block to come
  std::vector<Step> steps_;      // of these rows
  std::vector<uint32_t> plain_;  // the pixels that are written as they are
  uint64_t waiting_ = 0;         // bits that do not make a byte yet, the first the lowest
  unsigned waitingCount_ = 0;
  uint64_t sum_ = 1, sumOfSums_ = 0;
};

}  // namespace zelkon
