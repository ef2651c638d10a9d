#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "Backends/Cairo/GaussianBlur.h"

namespace zelkon {
namespace {

struct Picture {
  Picture(int w, int h) : width(w), height(h), values(stride() * static_cast<size_t>(h)) {}
  // A few bytes more than a row has, which nobody may touch.
  size_t stride() const { return static_cast<size_t>(width) + 5; }
  uint8_t& at(int x, int y) { return values[static_cast<size_t>(y) * stride() + static_cast<size_t>(x)]; }
  double valueAt(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) return 0;
    return values[static_cast<size_t>(y) * stride() + static_cast<size_t>(x)];
  }
  int width, height;
  std::vector<uint8_t> values;
};

// The sum over all pixels within reach, each weighted by the bell curve of its distance, before rounding.
std::vector<double> blurred(const Picture& picture, double sigma) {
  const int reach = gaussianReach(sigma);
  std::vector<double> weights;
  double total = 0;
  for (int k = -reach; k <= reach; ++k) {
    weights.push_back(std::exp(-k * k / (2 * sigma * sigma)));
    total += weights.back();
  }
  std::vector<double> along, result;
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x) {
      double sum = 0;
      for (int k = -reach; k <= reach; ++k)
        sum += weights[static_cast<size_t>(k + reach)] * picture.valueAt(x + k, y) / total;
      along.push_back(sum);
    }
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x) {
      double sum = 0;
      for (int k = std::max(-reach, -y); k <= std::min(reach, picture.height - 1 - y); ++k)
        sum +=
            weights[static_cast<size_t>(k + reach)] * along[static_cast<size_t>((y + k) * picture.width + x)] / total;
      result.push_back(sum);
    }
  return result;
}

void expectBlurred(Picture picture, double sigma) {
  const std::vector<double> expected = blurred(picture, sigma);
  const Picture before = picture;
  gaussianBlur(picture.values.data(), picture.stride(), picture.width, picture.height, sigma);
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x)
      ASSERT_NEAR(picture.valueAt(x, y), expected[static_cast<size_t>(y * picture.width + x)], 0.501)
          << x << " " << y << " sigma " << sigma;
    for (size_t i = static_cast<size_t>(picture.width); i < picture.stride(); ++i) {
      const size_t at = static_cast<size_t>(y) * picture.stride() + i;
      ASSERT_EQ(picture.values[at], before.values[at]);
    }
  }
}

TEST(GaussianBlur, NoiseBecomesTheWeightedSum) {
  std::mt19937 random(3);
  for (const int width : {1, 7, 8, 9, 50}) {
    Picture picture(width, 37);
    for (uint8_t& value : picture.values) value = static_cast<uint8_t>(random());
    for (const double sigma : {0.3, 1.0, 2.5, 10.0}) expectBlurred(picture, sigma);
  }
}

TEST(GaussianBlur, FullAndEmptyAreasKeepTheirEdges) {
  // A ring wide enough to have full pixels whose neighbours are all full, and one value besides.
  Picture picture(150, 140);
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x) {
      const double distance = std::hypot(x - 70, y - 66);
      picture.at(x, y) = distance < 20 || distance > 60 ? 0 : x > 75 && y > 80 ? 130 : 255;
    }
  for (const double sigma : {1.0, 2.5, 4.0}) expectBlurred(picture, sigma);
}

TEST(GaussianBlur, AFullPictureFadesAtItsEdges) {
  Picture picture(90, 80);
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x) picture.at(x, y) = 255;
  expectBlurred(picture, 2.5);
}

TEST(GaussianBlur, AWideBlurIsCloseToTheWeightedSum) {
  Picture picture(160, 150);
  for (int y = 50; y < 100; ++y)
    for (int x = 40; x < 110; ++x) picture.at(x, y) = 255;
  const double sigma = std::sqrt(156);  // of three means of 25 pixels
  const std::vector<double> expected = blurred(picture, sigma);
  gaussianBlur(picture.values.data(), picture.stride(), picture.width, picture.height, sigma);
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x)
      ASSERT_NEAR(picture.valueAt(x, y), expected[static_cast<size_t>(y * picture.width + x)], 255 * 0.02);
}

TEST(GaussianBlur, WithoutSigmaNothingChanges) {
  Picture picture(3, 1);
  picture.at(1, 0) = 200;
  gaussianBlur(picture.values.data(), picture.stride(), 3, 1, 0);
  EXPECT_EQ(picture.valueAt(0, 0), 0);
  EXPECT_EQ(picture.valueAt(1, 0), 200);
}

TEST(GaussianBlur, ImmenseSigmasHaveAReachAndLeaveNothingToBeSeen) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double sigma : {1e9, 1e300, infinity}) {
    EXPECT_GT(gaussianReach(sigma), 1000000) << sigma;
    EXPECT_LT(gaussianReach(sigma), 1000000000) << sigma;
    Picture picture(20, 20);
    picture.at(10, 10) = 255;
    gaussianBlur(picture.values.data(), picture.stride(), 20, 20, sigma);
    EXPECT_EQ(picture.valueAt(10, 10), 0) << sigma;
  }
  EXPECT_EQ(gaussianReach(std::nan("")), 0);
}

}  // namespace
}  // namespace zelkon
