#include "Backends/Cairo/PixelDeflater.h"

#include <algorithm>
#include <array>

#include "Backends/Cairo/HuffmanCode.h"

namespace zelkon {

namespace {

constexpr size_t bytesPerPixel = 4;

// What a block holds at least before it ends: enough to be worth its table of codes, and few enough that the codes
// follow the picture and the memory stays small.
constexpr size_t pixelsOfBlock = 1 << 15, stepsOfBlock = 1 << 15;

// Symbols of a block: bytes, its end, lengths of repetitions.
constexpr size_t endOfBlock = 256, firstLength = 257, symbols = 286;
constexpr size_t shortest = 3, longest = 258;
// The distance of one pixel is the fourth symbol of the other alphabet, which needs no further bits.
constexpr size_t distances = 4;
constexpr unsigned distanceBits = 1;
// Four bytes and what waits fit into 64 bits.
constexpr int longestCode = 14;
constexpr int longestCodeOfLengths = 7;
constexpr unsigned codesOfItsOwn = 2;
// Of a table of codes and what belongs to a block besides its symbols, in bytes; of a length, in bits.
constexpr size_t mostBytesOfCodes = 1024, mostExtraBits = 5;

constexpr uint64_t checksumModulus = 65521;

// The stream's first two bytes: DEFLATE with a window of 32 KiB, and that it was compressed fast.
constexpr char streamHeader[] = {0x78, 0x01};

uint8_t byteOf(uint32_t pixel, int index) { return static_cast<uint8_t>(pixel >> (8 * index)); }

struct Length {
  size_t symbol;
  unsigned extraBits, extra;
};

// Lengths up to 10 have a symbol each; beyond, each doubling has four; the longest has its own.
Length lengthOf(size_t bytes) {
  if (bytes == longest) return {symbols - 1, 0, 0};
  const auto steps = static_cast<unsigned>(bytes - shortest);
  unsigned extraBits = 0;
  while (steps >> extraBits >= 8) ++extraBits;
  return {firstLength + 4 * extraBits + (steps >> extraBits), extraBits, steps & ((1u << extraBits) - 1)};
}

// Calls with each length into which a repetition of some pixels is cut.
template <typename Use>
void forEachLength(size_t pixels, Use use) {
  size_t bytes = pixels * bytesPerPixel;
  for (; bytes >= longest + shortest; bytes -= longest) use(longest);
  if (bytes > longest) {
    use(longest - shortest);
    bytes -= longest - shortest;
  }
  if (bytes > 0) use(bytes);
}

struct LengthCode {
  uint32_t bits;
  unsigned count;
};

// The bits of each length of a repetition, its distance with it.
std::array<LengthCode, longest + 1> lengthCodes(const HuffmanCode& code) {
  std::array<LengthCode, longest + 1> codes{};
  for (size_t bytes = shortest; bytes <= longest; ++bytes) {
    const Length length = lengthOf(bytes);
    const unsigned codeBits = code.lengths[length.symbol];
    codes[bytes] = {code.bits[length.symbol] | length.extra << codeBits, codeBits + length.extraBits + distanceBits};
  }
  return codes;
}

// Puts bits behind each other. By value in a function, the compiler keeps it in registers.
class BitWriter {
 public:
  BitWriter(char* next, uint64_t waiting, unsigned count) : next_(next), waiting_(waiting), count_(count) {}
  // With flush() after each 57 bits at most.
  void write(uint64_t bits, unsigned count) {
    waiting_ |= bits << count_;
    count_ += count;
  }
  // Writes eight bytes, of which those count that are complete.
  void flush() {
    for (int i = 0; i < 8; ++i) next_[i] = static_cast<char>(waiting_ >> (8 * i));
    next_ += count_ / 8;
    waiting_ >>= count_ & ~7u;
    count_ &= 7;
  }
  char* next() const { return next_; }
  uint64_t waiting() const { return waiting_; }
  unsigned waitingCount() const { return count_; }

 private:
  char* next_;
  uint64_t waiting_;
  unsigned count_;
};

// The lengths of all codes, themselves compressed.
BitWriter writeCodes(BitWriter writer, const std::vector<uint8_t>& lengths) {
  constexpr uint8_t zeros = 17, manyZeros = 18;
  constexpr size_t leastZeros = 3, leastManyZeros = 11, mostZeros = 138, alphabet = 19;
  constexpr std::array<uint8_t, alphabet> order{16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
  struct Item {
    uint8_t symbol;
    size_t extra;
  };
  std::vector<Item> items;
  std::vector<uint32_t> counts(alphabet);
  for (size_t i = 0; i < lengths.size();) {
    size_t end = i;
    while (end < lengths.size() && lengths[end] == 0 && end - i < mostZeros) ++end;
    if (end - i >= leastManyZeros)
      items.push_back({manyZeros, end - i - leastManyZeros});
    else if (end - i >= leastZeros)
      items.push_back({zeros, end - i - leastZeros});
    else
      items.push_back({lengths[end = i], 0}), ++end;
    ++counts[items.back().symbol];
    i = end;
  }
  const HuffmanCode code = huffmanCode(counts, longestCodeOfLengths);
  size_t used = alphabet;
  while (code.lengths[order[used - 1]] == 0) --used;
  writer.write(symbols - firstLength, 5);
  writer.write(distances - 1, 5);
  writer.write(used - 4, 4);
  writer.flush();
  for (size_t i = 0; i < used; ++i) {
    writer.write(code.lengths[order[i]], 3);
    writer.flush();
  }
  for (const Item& item : items) {
    writer.write(code.bits[item.symbol], code.lengths[item.symbol]);
    if (item.symbol == zeros) writer.write(item.extra, 3);
    if (item.symbol == manyZeros) writer.write(item.extra, 7);
    writer.flush();
  }
  return writer;
}

}  // namespace

PixelDeflater::PixelDeflater(std::string& out) : out_(out) { out_.append(streamHeader, sizeof streamHeader); }

void PixelDeflater::addRow(uint8_t first, const uint32_t* pixels, size_t count) {
  const size_t earlierSteps = steps_.size(), earlierPlain = plain_.size();
  steps_.resize(earlierSteps + count);
  plain_.resize(earlierPlain + count);
  Step *firstStep = steps_.data() + earlierSteps, *step = firstStep;
  uint32_t *firstPlain = plain_.data() + earlierPlain, *plain = firstPlain;
  for (size_t x = 0; x < count; ++step) {
    const size_t begin = x;
    do *plain++ = pixels[x++];
    while (x < count && pixels[x] != pixels[x - 1]);
    const size_t repeated = x;
    while (x < count && pixels[x] == pixels[x - 1]) ++x;
    *step = {static_cast<uint16_t>(repeated - begin), static_cast<uint16_t>(x - repeated)};
  }
  const auto steps = static_cast<size_t>(step - firstStep);
  addToChecksum(first, firstPlain, firstStep, steps);
  rows_.push_back({first, steps});
  steps_.resize(earlierSteps + steps);
  plain_.resize(earlierPlain + static_cast<size_t>(plain - firstPlain));
  if (plain_.size() >= pixelsOfBlock || steps_.size() >= stepsOfBlock) writeBlock(false);
}

void PixelDeflater::addToChecksum(uint8_t first, const uint32_t* pixels, const Step* steps, size_t count) {
  sum_ += first;
  sumOfSums_ += sum_;
  for (const Step* step = steps; step != steps + count; ++step) {
    uint64_t bytes = 0, weighted = 0;
    for (const uint32_t* end = pixels + step->plain; pixels != end; ++pixels) {
      const uint64_t a = *pixels & 255, b = *pixels >> 8 & 255, c = *pixels >> 16 & 255, d = *pixels >> 24;
      bytes = a + b + c + d;
      weighted = 4 * a + 3 * b + 2 * c + d;
      sumOfSums_ += bytesPerPixel * sum_ + weighted;
      sum_ += bytes;
    }
    const uint64_t n = step->repeats;
    sumOfSums_ += n * (bytesPerPixel * sum_ + weighted) + bytesPerPixel * bytes * (n * (n + 1) / 2 - n);
    sum_ += n * bytes;
  }
  sum_ %= checksumModulus;
  sumOfSums_ %= checksumModulus;
}

void PixelDeflater::writeBlock(bool isLast) {
  std::array<std::array<uint32_t, 256>, bytesPerPixel> byteCounts{};
  for (const uint32_t pixel : plain_)
    for (int i = 0; i < 4; ++i) ++byteCounts[static_cast<size_t>(i)][byteOf(pixel, i)];
  std::vector<uint32_t> counts(symbols);
  for (const auto& ofByte : byteCounts)
    for (size_t byte = 0; byte < ofByte.size(); ++byte) counts[byte] += ofByte[byte];
  for (const Row& row : rows_) ++counts[row.first];
  for (const Step& step : steps_) forEachLength(step.repeats, [&](size_t bytes) { ++counts[lengthOf(bytes).symbol]; });
  counts[endOfBlock] = 1;
  counts[0] = std::max(counts[0], 1u);  // a code has at least two symbols
  const HuffmanCode code = huffmanCode(counts, longestCode);
  const std::array<LengthCode, longest + 1> lengths = lengthCodes(code);

  size_t bits = 8 * mostBytesOfCodes;
  for (size_t symbol = 0; symbol < symbols; ++symbol)
    bits += counts[symbol] * (code.lengths[symbol] + (symbol < firstLength ? 0u : mostExtraBits + distanceBits));
  const size_t size = out_.size();
  out_.resize(size + bits / 8);
  BitWriter writer(&out_[size], waiting_, waitingCount_);
  writer.write(isLast ? 1 : 0, 1);
  writer.write(codesOfItsOwn, 2);
  std::vector<uint8_t> all = code.lengths;
  all.insert(all.end(), {0, 0, 0, distanceBits});
  writer = writeCodes(writer, all);
  const Step* step = steps_.data();
  const uint32_t* pixel = plain_.data();
  for (const Row& row : rows_) {
    writer.write(code.bits[row.first], code.lengths[row.first]);
    writer.flush();
    for (const Step* end = step + row.steps; step != end; ++step) {
      for (const uint32_t* endOfPlain = pixel + step->plain; pixel != endOfPlain; ++pixel) {
        for (int i = 0; i < 4; ++i) writer.write(code.bits[byteOf(*pixel, i)], code.lengths[byteOf(*pixel, i)]);
        writer.flush();
      }
      forEachLength(step->repeats, [&](size_t bytes) {
        writer.write(lengths[bytes].bits, lengths[bytes].count);
        writer.flush();
      });
    }
  }
  writer.write(code.bits[endOfBlock], code.lengths[endOfBlock]);
  writer.flush();
  out_.resize(static_cast<size_t>(writer.next() - out_.data()));
  waiting_ = writer.waiting();
  waitingCount_ = writer.waitingCount();
  rows_.clear();
  steps_.clear();
  plain_.clear();
}

void PixelDeflater::finish() {
  writeBlock(true);
  if (waitingCount_ > 0) out_.push_back(static_cast<char>(waiting_));
  waiting_ = waitingCount_ = 0;
  const uint64_t checksum = sumOfSums_ << 16 | sum_;
  for (int shift = 24; shift >= 0; shift -= 8) out_.push_back(static_cast<char>(checksum >> shift));
}

}  // namespace zelkon
