#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "Foundation/NSScanner.h"

namespace zelkon {
namespace {

TEST(NSScanner, ReadsTheNumberAtTheBeginning) {
  EXPECT_EQ(NSScanDouble("12.5 EUR"), 12.5);
  EXPECT_EQ(NSScanDouble(" \n\t12"), 12);
  EXPECT_EQ(NSScanDouble("+5"), 5);
  EXPECT_EQ(NSScanDouble("-5"), -5);
  EXPECT_EQ(NSScanDouble(".5"), 0.5);
  EXPECT_EQ(NSScanDouble("5."), 5);
  EXPECT_EQ(NSScanDouble("1e3"), 1000);
  EXPECT_EQ(NSScanDouble("-.5E+2x"), -50);
  EXPECT_EQ(NSScanDouble("1,234"), 1);
  EXPECT_EQ(NSScanDouble("1.2.3"), 1.2);
}

TEST(NSScanner, StopsAtWhatDoesNotContinueANumber) {
  EXPECT_EQ(NSScanDouble("1e"), 1);
  EXPECT_EQ(NSScanDouble("1e+"), 1);
  EXPECT_EQ(NSScanDouble("0x10"), 0);
}

TEST(NSScanner, FindsNoNumber) {
  for (const char* text : {"--5", "-", ".", "e5", "", "$12", "abc", "inf", "nan", "\u22125", "-.", "+e1", "   "})
    EXPECT_EQ(NSScanDouble(text), std::nullopt) << text;
}

TEST(NSScanner, OverflowIsInfiniteAndUnderflowZero) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(NSScanDouble("1e400"), infinity);
  EXPECT_EQ(NSScanDouble("-1e400"), -infinity);
  EXPECT_EQ(NSScanDouble("1e99999999999999999999"), infinity);
  EXPECT_EQ(NSScanDouble("1e-400"), 0);
  EXPECT_EQ(NSScanDouble("0e400"), 0);
}

TEST(NSScanner, SkipsEveryKindOfWhiteSpace) {
  EXPECT_EQ(NSScanDouble("\u00A0\u2009\u202F\u3000\r\v\f\u2028\u00857"), 7);
  EXPECT_EQ(NSScanDouble("\xE2"), std::nullopt);
}

TEST(NSScanner, RoundsToTheNearestDouble) {
  EXPECT_EQ(NSScanDouble("0.1"), 0.1);
  EXPECT_EQ(NSScanDouble("9007199254740993"), 9007199254740992.0);
  EXPECT_EQ(NSScanDouble("9007199254740993.0000000000000000000000000001"), 9007199254740994.0);
  EXPECT_EQ(NSScanDouble("123456789012345e22"), 123456789012345e22);
  EXPECT_EQ(NSScanDouble("4.9e-324"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(NSScanDouble("1.7976931348623157e308"), std::numeric_limits<double>::max());
}

TEST(NSScanner, ReadsVeryLongNumbers) {
  EXPECT_EQ(NSScanDouble("1" + std::string(300, '0')), 1e300);
  EXPECT_EQ(NSScanDouble("0." + std::string(300, '0') + "1"), 1e-301);
  EXPECT_EQ(NSScanDouble(std::string(100000, '0') + "12"), 12);
  EXPECT_EQ(NSScanDouble("0." + std::string(1000, '0') + "1e1001"), 1);
  EXPECT_EQ(NSScanDouble("9007199254740993." + std::string(2000, '0') + "1"), 9007199254740994.0);
}

TEST(NSScanner, ReadsBackWhatThePrinterWrote) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> mantissa(-1, 1);
  std::uniform_int_distribution<int> exponent(-320, 308);
  for (int i = 0; i < 20000; ++i) {
    const double value = std::ldexp(mantissa(random), exponent(random) * 3);
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", value);
    if (!std::isfinite(value)) continue;
    EXPECT_EQ(NSScanDouble(text), value) << text;
  }
}

TEST(NSScanner, IgnoresTheLocaleOfTheProcess) {
  const std::string earlier = std::setlocale(LC_ALL, nullptr);
  const bool changed = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
  EXPECT_EQ(NSScanDouble("1.25"), 1.25);
  EXPECT_EQ(NSScanDouble("3.14159265358979323846"), 3.14159265358979323846);
  std::setlocale(LC_ALL, earlier.c_str());
  if (!changed) GTEST_SKIP() << "no locale with another decimal separator is installed";
}

}  // namespace
}  // namespace zelkon
