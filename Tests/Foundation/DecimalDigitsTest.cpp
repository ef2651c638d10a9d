#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "Foundation/DecimalDigits.h"

namespace zelkon {
namespace {

std::string rounded(double value, int digits) {
  DecimalDigits number = DecimalDigits::shortest(value);
  number.roundToFractionDigits(digits);
  const std::string fraction = number.fractionalPart();
  return (number.negative ? "-" : "") + number.integralPart() + (fraction.empty() ? "" : "." + fraction);
}

TEST(DecimalDigits, ShortestFormReadsBack) {
  EXPECT_EQ(DecimalDigits::shortest(0.1).digits, "1");
  EXPECT_EQ(DecimalDigits::shortest(0.1).exponent, 0);
  EXPECT_EQ(DecimalDigits::shortest(1.0 / 3).digits, "3333333333333333");
  EXPECT_EQ(DecimalDigits::shortest(0.1 + 0.2).digits, "30000000000000004");
  EXPECT_EQ(DecimalDigits::shortest(-1500).value(), -1500);
  EXPECT_EQ(DecimalDigits::shortest(5e-324).value(), 5e-324);
  EXPECT_EQ(DecimalDigits::shortest(0).digits, "");
}

TEST(DecimalDigits, RoundsHalfToEven) {
  EXPECT_EQ(rounded(0.5, 0), "0");
  EXPECT_EQ(rounded(1.5, 0), "2");
  EXPECT_EQ(rounded(2.5, 0), "2");
  EXPECT_EQ(rounded(-2.5, 0), "-2");
  EXPECT_EQ(rounded(2.500001, 0), "3");
  EXPECT_EQ(rounded(0.125, 2), "0.12");
  EXPECT_EQ(rounded(0.375, 2), "0.38");
}

TEST(DecimalDigits, CarriesThroughNines) {
  EXPECT_EQ(rounded(99.5, 0), "100");
  EXPECT_EQ(rounded(0.999, 2), "1");
  EXPECT_EQ(rounded(0.96, 1), "1");
  EXPECT_EQ(rounded(9.5, 0), "10");
}

TEST(DecimalDigits, PartsOfSmallAndLargeNumbers) {
  EXPECT_EQ(rounded(0.001, 5), "0.001");
  EXPECT_EQ(rounded(0.0004, 3), "0");
  EXPECT_EQ(rounded(0.0006, 3), "0.001");
  EXPECT_EQ(rounded(0.00001, 3), "0");
  EXPECT_EQ(rounded(1e21, 0), "1000000000000000000000");
}

// Doubles of every magnitude, many of them with few bits or near a power of two.
template <typename Body>
void forManyDoubles(Body body) {
  using Limits = std::numeric_limits<double>;
  for (const double value : {0.0, -0.0, 1.0, 0.1, 1e22, 1e23, 9007199254740993.0, 2251799813685248.25, Limits::min(),
                             Limits::max(), Limits::denorm_min(), Limits::min() - Limits::denorm_min()})
    body(value);
  std::mt19937_64 random(20240229);
  for (int i = 0; i < 600; ++i) {
    uint64_t bits = random();
    if (i % 3 == 1) bits &= ~uint64_t{0} << random() % 52;
    double value;
    std::memcpy(&value, &bits, sizeof value);
    if (std::isfinite(value)) body(value);
    body(static_cast<double>(static_cast<int64_t>(bits) >> random() % 60) / 100);
  }
}

// Expected is what the C library, whose conversions are exact, writes and reads.
TEST(DecimalDigits, WritesEveryDoubleAsTheCLibrary) {
  forManyDoubles([](double value) {
    char expected[400];
    std::snprintf(expected, sizeof expected, "%.6f", value);
    EXPECT_EQ(DecimalDigits::exact(value).fixed(6), expected);
    if (value == 0) return;
    for (int precision = 15; precision <= 17; ++precision) {
      std::snprintf(expected, sizeof expected, "%.*e", precision - 1, value);
      if (std::strtod(expected, nullptr) == value) break;
    }
    const DecimalDigits number = DecimalDigits::shortest(value);
    const std::string digits = std::string(expected).substr(0, std::strcspn(expected, "e"));
    std::string text = (number.negative ? "-" : "") + number.digits.substr(0, 1) + "." + number.digits.substr(1);
    text.resize(digits.size(), '0');
    EXPECT_EQ(text, digits);
    EXPECT_EQ(number.exponent - 1, std::atoi(std::strchr(expected, 'e') + 1)) << expected;
  });
}

TEST(DecimalDigits, ReadsTheNearestDouble) {
  // Reads DIGITSeEXPONENT, where a point follows the first digit.
  const auto expectSame = [](std::string text) {
    DecimalDigits number;
    const size_t e = text.find('e');
    for (const char c : text.substr(0, e))
      if (std::isdigit(c)) number.digits += c;
    number.exponent = std::atoi(text.c_str() + e + 1) + 1;
    EXPECT_EQ(number.value(), std::strtod(text.c_str(), nullptr)) << text;
  };
  forManyDoubles([&](double value) {
    value = std::abs(value);
    if (value == 0) return;
    // The number itself; exactly between it and the next, where the format of the C library can say so; and the least
    // bit beside that.
    char text[1200];
    std::snprintf(text, sizeof text, "%.16e", value);
    expectSame(text);
    const long double next = std::nextafter(value, std::numeric_limits<double>::infinity());
    if (std::isinf(next)) return;
    std::snprintf(text, sizeof text, "%.1100Le", (static_cast<long double>(value) + next) / 2);
    expectSame(text);
    std::string beside = text;
    expectSame(beside.insert(beside.find('e'), "1"));
  });
  for (const char* text : {"1.797693134862315807e308", "1.797693134862315808e308", "1.7976931348623159e308",
                           "2.4703282292062327e-324", "2.4703282292062328e-324", "4.9406564584124654e-324",
                           "2.2250738585072011e-308", "1e309", "1e400", "1e-324", "1e-400"})
    expectSame(text);
}

}  // namespace
}  // namespace zelkon
