#include "Backends/Cairo/GaussianBlur.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zelkon {

namespace {

// Beyond this the kernel is so long that three running means are much faster, and as good as a gaussian to the eye.
constexpr double largestKernelSigma = 10;

using Line = std::vector<float>;

void convolve(const Line& in, Line& out, int length, const std::vector<float>& kernel) {
  const int reach = static_cast<int>(kernel.size()) - 1;
  for (int i = 0; i < length; ++i) {
    float sum = in[static_cast<size_t>(i)] * kernel[0];
    for (int k = 1; k <= reach; ++k) {
      if (i - k >= 0) sum += in[static_cast<size_t>(i - k)] * kernel[static_cast<size_t>(k)];
      if (i + k < length) sum += in[static_cast<size_t>(i + k)] * kernel[static_cast<size_t>(k)];
    }
    out[static_cast<size_t>(i)] = sum;
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
  const bool exact = sigma <= largestKernelSigma;
  const std::vector<float> kernel = exact ? kernelFor(sigma) : std::vector<float>{};
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
    if (exact) {
      convolve(in, out, length, kernel);
    } else {
      runningMean(in, out, length, radius);
      runningMean(out, in, length, radius);
      runningMean(in, out, length, radius);
    }
    for (int i = 0; i < length; ++i) values[start + static_cast<size_t>(i) * step] = out[static_cast<size_t>(i)];
  };
  for (int y = 0; y < height; ++y) blurLine(static_cast<size_t>(y) * static_cast<size_t>(width), 1, width);
  for (int x = 0; x < width; ++x) blurLine(static_cast<size_t>(x), static_cast<size_t>(width), height);
}

}  // namespace zelkon
