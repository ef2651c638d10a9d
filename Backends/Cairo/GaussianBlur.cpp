#include "Backends/Cairo/GaussianBlur.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

namespace zelkon {

namespace {

// Beyond this the kernel is so long that three running means are much faster, and as good as a gaussian to the eye.
constexpr double largestKernelSigma = 10;

using Line = std::vector<float>;

// Four values that the processor works on at once; both compilers know such types.
using Four = float __attribute__((vector_size(4 * sizeof(float))));

Four fourAt(const float* values) {
  Four four;
  std::memcpy(&four, values, sizeof four);
  return four;
}

// Weighted sums of a line and of those beside it, `step` values apart, all of which must be there.
void convolve(const float* values, size_t step, size_t count, const std::vector<float>& kernel, float* out) {
  size_t x = 0;
  for (; x + 8 <= count; x += 8) {
    const float* middle = values + x;
    Four first = fourAt(middle) * kernel[0], second = fourAt(middle + 4) * kernel[0];
    for (size_t k = 1; k < kernel.size(); ++k) {
      const float *before = middle - k * step, *after = middle + k * step;
      first += (fourAt(before) + fourAt(after)) * kernel[k];
      second += (fourAt(before + 4) + fourAt(after + 4)) * kernel[k];
    }
    std::memcpy(out + x, &first, sizeof first);
    std::memcpy(out + x + 4, &second, sizeof second);
  }
  for (; x < count; ++x) {
    const float* middle = values + x;
    out[x] = *middle * kernel[0];
    for (size_t k = 1; k < kernel.size(); ++k) out[x] += (*(middle - k * step) + *(middle + k * step)) * kernel[k];
  }
}

// Along the lines and then across them; around the picture there is nothing.
void convolveBothWays(std::vector<float>& values, size_t width, size_t height, const std::vector<float>& kernel) {
  const size_t reach = kernel.size() - 1;
  Line padded(width + 2 * reach);
  std::vector<float> along((height + 2 * reach) * width);
  for (size_t y = 0; y < height; ++y) {
    const float* line = &values[y * width];
    std::copy(line, line + width, padded.begin() + static_cast<ptrdiff_t>(reach));
    convolve(&padded[reach], 1, width, kernel, &along[(y + reach) * width]);
  }
  for (size_t y = 0; y < height; ++y) convolve(&along[(y + reach) * width], width, width, kernel, &values[y * width]);
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

std::vector<float> kernelFor(double sigma) {
  std::vector<float> kernel(static_cast<size_t>(gaussianReach(sigma)) + 1);
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

}  // namespace

int gaussianReach(double sigma) { return sigma > 0 ? static_cast<int>(std::ceil(3 * sigma)) + 1 : 0; }

void gaussianBlur(std::vector<float>& values, int width, int height, double sigma) {
  if (!(sigma > 0) || width <= 0 || height <= 0) return;
  if (sigma <= largestKernelSigma) {
    convolveBothWays(values, static_cast<size_t>(width), static_cast<size_t>(height), kernelFor(sigma));
    return;
  }
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
  for (int y = 0; y < height; ++y) blurLine(static_cast<size_t>(y) * static_cast<size_t>(width), 1, width);
  for (int x = 0; x < width; ++x) blurLine(static_cast<size_t>(x), static_cast<size_t>(width), height);
}

}  // namespace zelkon
