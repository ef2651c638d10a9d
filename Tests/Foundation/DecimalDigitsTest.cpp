#include <gtest/gtest.h>

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

}  // namespace
}  // namespace zelkon
