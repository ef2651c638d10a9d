#include "Backends/Cairo/GaussianBlur.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

namespace zelkon {

namespace {

// Beyond this the kernel is so long that three running means are much faster, and as good as a gaussian to the eye.
constexpr double largestKernelSigma = 10;
// Far beyond any picture, and still a number of pixels.
constexpr double farthestReach = 1 << 24;

using Line = std::vector<float>;

// Four values that the processor works on at once; both compilers know such types.
using Four = float __attribute__((vector_size(4 * sizeof(float))));

Four fourAt(const float* values) {
  Four four;
  std::memcpy(&four, values, sizeof four);
  return four;
}

// Columns that are blurred at once, or left alone at once.
constexpr size_t blockColumns = 8;

struct Block {
  Four first, second;
};

Block blockAt(const float* values) { return {fourAt(values), fourAt(values + 4)}; }

// Weighted sums of a block and of those beside it, which `before` and `after` give for each distance.
template <typename Before, typename After>
Block convolved(const Block& middle, const Line& kernel, Before before, After after) {
  Block sum{middle.first * kernel[0], middle.second * kernel[0]};
  for (size_t k = 1; k < kernel.size(); ++k) {
    const Block one = before(k), other = after(k);
    sum.first += (one.first + other.first) * kernel[k];
    sum.second += (one.second + other.second) * kernel[k];
  }
  return sum;
}

uint8_t rounded(float value) { return static_cast<uint8_t>(std::clamp(value + 0.5f, 0.0f, 255.0f)); }

bool areAll(const uint8_t* values, size_t count, uint8_t value) {
  // Eight at a time, the last eight perhaps twice.
  const uint64_t pattern = value * uint64_t{0x0101010101010101};
  const auto differs = [&](size_t at) {
    uint64_t eight;
    std::memcpy(&eight, values + at, sizeof eight);
    return eight ^ pattern;
  };
  uint64_t difference = differs(count - sizeof pattern);
  for (size_t i = 0; i + sizeof pattern < count; i += sizeof pattern) difference |= differs(i);
  return difference == 0;
}

// Blurs along the rows and then across them. Most of a shadow is nothing or full, as is all around it within reach:
// such blocks stay as they are. Only as many rows are held as one row needs.
class KernelBlur {
 public:
  KernelBlur(Line kernel, size_t width)
      : kernel_(std::move(kernel)),
        reach_(kernel_.size() - 1),
        blocks_((width + blockColumns - 1) / blockColumns),
        width_(width),
        bytes_(blocks_ * blockColumns + 2 * reach_),
        floats_(bytes_.size()),
        rows_((2 * reach_ + 1) * blocks_ * blockColumns),
        uniform_(blocks_) {}

  // Rows enter from the top; `row` null for one beyond the picture.
  void enter(const uint8_t* row) {
    Line::value_type* out = rowAt(entered_++);
    if (row == nullptr) {
      std::fill(out, out + blocks_ * blockColumns, 0.0f);
      for (Uniform& block : uniform_) block.enter(0);
      return;
    }
    std::copy(row, row + width_, bytes_.begin() + static_cast<ptrdiff_t>(reach_));
    std::copy(bytes_.begin(), bytes_.end(), floats_.begin());
    for (size_t b = 0; b < blocks_; ++b, out += blockColumns) {
      const uint8_t value = bytes_[b * blockColumns + reach_];
      if (areAll(&bytes_[b * blockColumns], blockColumns + 2 * reach_, value)) {
        std::fill(out, out + blockColumns, static_cast<float>(value));
        uniform_[b].enter(value);
        continue;
      }
      const float* middle = &floats_[b * blockColumns + reach_];
      const Block sum = convolved(
          blockAt(middle), kernel_, [&](size_t k) { return blockAt(middle - k); },
          [&](size_t k) { return blockAt(middle + k); });
      std::memcpy(out, &sum, sizeof sum);
      uniform_[b] = {};
    }
  }

  // The row `reach` above the one that entered last.
  void leave(uint8_t* row) const {
    const size_t y = entered_ - 1 - reach_;
    for (size_t b = 0; b < blocks_; ++b) {
      if (uniform_[b].rows > 2 * reach_) continue;
      const auto rowOfBlock = [&](size_t r) { return blockAt(rowAt(r) + b * blockColumns); };
      const Block sum = convolved(
          rowOfBlock(y), kernel_, [&](size_t k) { return rowOfBlock(y - k); },
          [&](size_t k) { return rowOfBlock(y + k); });
      float values[blockColumns];
      std::memcpy(values, &sum, sizeof sum);
      const size_t x = b * blockColumns, count = std::min(blockColumns, width_ - x);
      for (size_t i = 0; i < count; ++i) row[x + i] = rounded(values[i]);
    }
  }

 private:
  // How many rows up to the last one have the same value within reach of a block.
  struct Uniform {
    uint8_t value = 0;
    size_t rows = 0;
    void enter(uint8_t next) {
      rows = next == value ? rows + 1 : 1;
      value = next;
    }
  };
  float* rowAt(size_t r) { return &rows_[r % (2 * reach_ + 1) * blocks_ * blockColumns]; }
  const float* rowAt(size_t r) const { return &rows_[r % (2 * reach_ + 1) * blocks_ * blockColumns]; }

  Line kernel_;
  size_t reach_, blocks_, width_, entered_ = 0;
  std::vector<uint8_t> bytes_;  // the row that enters, with nothing on both sides
  Line floats_, rows_;
  std::vector<Uniform> uniform_;
};

void blurByKernel(uint8_t* values, size_t stride, size_t width, size_t height, Line kernel) {
  const size_t reach = kernel.size() - 1;
  KernelBlur blur(std::move(kernel), width);
  for (size_t i = 0; i < reach; ++i) blur.enter(nullptr);
  for (size_t y = 0; y < height + reach; ++y) {
    blur.enter(y < height ? values + y * stride : nullptr);
    if (y >= reach) blur.leave(values + (y - reach) * stride);
  }
}

void runningMean(const Line& in, Line& out, int length, int radius) {
  double sum = 0;
  const double share = 1.0 / (2 * radius + 1);
  for (int i = 0; i < std::min(radius, length); ++i) sum += in[static_cast<size_t>(i)];
  for (int i = 0; i < length; ++i) {
    if (i + radius < length) sum += in[static_cast<size_t>(i + radius)];
    out[static_cast<size_t>(i)] = static_cast<float>(sum * share);
    if (i - radius >= 0) sum -= in[static_cast<size_t>(i - radius)];
  }
}

Line kernelFor(double sigma) {
  Line kernel(static_cast<size_t>(gaussianReach(sigma)) + 1);
  double sum = 0;
  for (size_t k = 0; k < kernel.size(); ++k) {
    const double distance = static_cast<double>(k);
    const double weight = std::exp(-distance * distance / (2 * sigma * sigma));
    kernel[k] = static_cast<float>(weight);
    sum += k == 0 ? weight : 2 * weight;
  }
  for (float& weight : kernel) weight = static_cast<float>(weight / sum);
  return kernel;
}

void blurByMeans(uint8_t* bytes, size_t stride, int width, int height, double sigma) {
  const auto columns = static_cast<size_t>(width), rows = static_cast<size_t>(height);
  Line values(columns * rows);
  for (size_t y = 0; y < rows; ++y) std::copy_n(bytes + y * stride, columns, &values[y * columns]);
  // Three means of 2r + 1 pixels have the variance ((2r + 1)^2 - 1) / 4.
  const int radius = static_cast<int>(std::lround((std::sqrt(4 * sigma * sigma + 1) - 1) / 2));
  Line in(static_cast<size_t>(std::max(width, height))), out(in.size());
  auto blurLine = [&](size_t start, size_t step, int length) {
    bool anything = false;
    for (int i = 0; i < length; ++i) {
      in[static_cast<size_t>(i)] = values[start + static_cast<size_t>(i) * step];
      anything = anything || in[static_cast<size_t>(i)] != 0;
    }
    if (!anything) return;
    runningMean(in, out, length, radius);
    runningMean(out, in, length, radius);
    runningMean(in, out, length, radius);
    for (int i = 0; i < length; ++i) values[start + static_cast<size_t>(i) * step] = out[static_cast<size_t>(i)];
  };
  for (int y = 0; y < height; ++y) blurLine(static_cast<size_t>(y) * columns, 1, width);
  for (int x = 0; x < width; ++x) blurLine(static_cast<size_t>(x), columns, height);
  for (size_t y = 0; y < rows; ++y)
    for (size_t x = 0; x < columns; ++x) bytes[y * stride + x] = rounded(values[y * columns + x]);
}

}  // namespace

int gaussianReach(double sigma) {
  return sigma > 0 ? static_cast<int>(std::min(std::ceil(3 * sigma), farthestReach)) + 1 : 0;
}

void gaussianBlur(uint8_t* values, size_t stride, int width, int height, double sigma) {
  if (!(sigma > 0) || width <= 0 || height <= 0) return;
  if (sigma <= largestKernelSigma)
    blurByKernel(values, stride, static_cast<size_t>(width), static_cast<size_t>(height), kernelFor(sigma));
  else
    blurByMeans(values, stride, width, height, std::min(sigma, farthestReach));
}

}  // namespace zelkon
