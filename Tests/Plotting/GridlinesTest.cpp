// The marks of the value axis: every range, magnitude and fraction that the charts promise.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "Classes/Plotting/CashFlowPlot.h"
#include "Classes/Plotting/Gridlines.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSException.h"

namespace zelkon {
namespace {

using gridlines::compute;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void expectLines(const Gridlines& lines, const Gridlines& expected, double tolerance = 1e-9) {
  ASSERT_EQ(lines.size(), expected.size());
  for (size_t i = 0; i < lines.size(); ++i) EXPECT_NEAR(lines[i], expected[i], tolerance) << "line " << i;
}

struct Range {
  const char* name;
  double min, max;
  bool zeroRequired;
  unsigned total;
  Gridlines expected;
};

std::string nameOf(const testing::TestParamInfo<Range>& test) { return test.param.name; }

class RangeOfAmounts : public testing::TestWithParam<Range> {};

TEST_P(RangeOfAmounts, HasItsLines) {
  const Range& range = GetParam();
  expectLines(compute(range.min, range.max, range.zeroRequired, range.total), range.expected, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(
    SelfTest, RangeOfAmounts,
    testing::Values(
        Range{"MinusOneToOne", -1, 1, false, 3, {-1, 0, 1}}, Range{"MinusOneToOneWithZero", -1, 1, true, 3, {-1, 0, 1}},
        Range{"MinusTwoToOne", -2, 1, false, 3, {-2, 0, 2}}, Range{"MinusOneToTwo", -1, 2, false, 3, {-2, 0, 2}},
        Range{"MinusThreeToOne", -3, 1, false, 3, {-3, 0, 3}}, Range{"MinusOneToThree", -1, 3, false, 3, {-3, 0, 3}},
        Range{"MinusOneToZero", -1, 0, false, 3, {-1, -0.5, 0}}, Range{"ZeroToOne", 0, 1, false, 3, {0, 0.5, 1}},
        Range{"MinusTwoToZero", -2, 0, false, 3, {-2, -1, 0}}, Range{"ZeroToTwo", 0, 2, false, 3, {0, 1, 2}},
        Range{"MinusFifteenToMinusOneWithZero", -15, -1, true, 3, {-16, -8, 0}},
        Range{"MinusFifteenToMinusOne", -15, -1, false, 3, {-16, -8, 0}},
        Range{"MinusTwentyFiveToMinusElevenWithZero", -25, -11, true, 3, {-30, -15, 0}},
        Range{"MinusTwentyFiveToMinusEleven", -25, -11, false, 3, {-27, -18, -9}},
        Range{"OneToFifteenWithZero", 1, 15, true, 3, {0, 8, 16}}, Range{"OneToFifteen", 1, 15, false, 3, {0, 8, 16}},
        Range{"ElevenToTwentyFiveWithZero", 11, 25, true, 3, {0, 15, 30}},
        Range{"ElevenToTwentyFive", 11, 25, false, 3, {9, 18, 27}},
        Range{"EightThousandBothWays", -8000, 8000, false, 5, {-8000, -4000, 0, 4000, 8000}},
        Range{"OneToTwoAndAQuarter", 1, 2.25, false, 3, {0.8, 1.6, 2.4}}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Further, RangeOfAmounts,
    testing::Values(Range{"StepOfEightTenths", -0.5, 0.8, false, 3, {-0.8, 0, 0.8}},
                    Range{"ARangeAroundZeroIsNotPadded", -1, 2, false, 5, {-1, 0, 1, 2}},
                    Range{"OneToTwoInFive", 1, 2, false, 5, {1, 1.25, 1.5, 1.75, 2}},
                    Range{"ZeroToAHundredInFive", 0, 100, true, 5, {0, 25, 50, 75, 100}},
                    Range{"MinusThirtyToAHundredAndSeventy", -30, 170, false, 5, {-60, 0, 60, 120, 180}},
                    // 27 in four steps is 6.75: sixes are one line too many.
                    Range{"StepOfSevenTenths", 0, 27, true, 5, {0, 7, 14, 21, 28}},
                    Range{"NothingButZero", 0, 0, false, 5, {0}}, Range{"NothingButZeroWithZero", 0, 0, true, 3, {0}},
                    Range{"OneAmountAlone", 5, 5, false, 3, {5, 5.1, 5.2}},
                    Range{"OneAmountAloneWithZero", 3, 3, true, 3, {0, 1.5, 3}},
                    Range{"Thousandths", 0.001, 0.002, false, 3, {0.001, 0.0015, 0.002}}),
    nameOf);

TEST(Gridlines, TheSelfTestPasses) { EXPECT_NO_THROW(CashFlowPlot::_testGridlineGeneration()); }

TEST(Gridlines, TheSelfTestComparesLineByLineWithinAHundredthAndNoLengths) {
  EXPECT_TRUE(gridlines::areAsExpected({-1, 0.009, 1}, {-1, 0, 1}));
  EXPECT_FALSE(gridlines::areAsExpected({-1, 0, 1.011}, {-1, 0, 1}));
  EXPECT_TRUE(gridlines::areAsExpected({}, {-1, 0, 1}));
  EXPECT_TRUE(gridlines::areAsExpected({-1, 0}, {-1, 0, 1}));
  EXPECT_FALSE(gridlines::areAsExpected({-1, 0, 1, 2}, {-1, 0, 1}));
}

// Two lines cannot hold zero and an amount on each side of it.
TEST(Gridlines, ATotalOfTwoAroundZeroStillEnds) {
  EXPECT_EQ(compute(-1, 1, false, 2), (Gridlines{-1, 0, 1}));
  EXPECT_EQ(compute(-1, 1, true, 2), (Gridlines{-1, 0, 1}));
  EXPECT_EQ(compute(0, 3, true, 2), (Gridlines{0, 3}));
}

TEST(Gridlines, AOneSidedNegativeRangeIsAscendingWithExactlyTheTotal) {
  for (unsigned total = 2; total < 12; ++total) {
    const Gridlines lines = compute(-97, -13, false, total);
    ASSERT_EQ(lines.size(), total);
    for (size_t i = 1; i < lines.size(); ++i) EXPECT_LT(lines[i - 1], lines[i]);
    EXPECT_LE(lines.front(), -97);
    EXPECT_GE(lines.back(), -13);
  }
}

TEST(Gridlines, TheZeroLineOfARangeAroundZeroIsExact) {
  for (const double amount : {0.3, 7.7, 1234.5, 8e9}) {
    const Gridlines lines = compute(-amount, amount * 0.7, true, 5);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), 0.0), 1);
    EXPECT_LE(lines.size(), 5u);
  }
}

// Three times 0.15 added up is 0.44999999999999996, short of 0.45: the step holds with one more line.
TEST(Gridlines, StepsAreAddedUpSoThatAMaximumOf045HasALineAt06) {
  const Gridlines lines = compute(0, 0.45, true, 5);
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[3], 0.15 + 0.15 + 0.15);
  EXPECT_LT(lines[3], 0.45);
  EXPECT_EQ(lines[4], 0.15 + 0.15 + 0.15 + 0.15);
  expectLines(lines, {0, 0.15, 0.3, 0.45, 0.6});
}

TEST(Gridlines, ManyRangesAreCoveredByAtMostTheTotal) {
  for (double max = 1e-6; max < 1e12; max *= 3.7)
    for (const double below : {0.0, 0.01, 0.4, 1.0, 30.0}) {
      const Gridlines lines = compute(-max * below, max, true, 5);
      EXPECT_LE(lines.size(), 5u);
      EXPECT_GE(lines.size(), 2u);
      EXPECT_LE(lines.front(), -max * below * (1 - 1e-12));
      EXPECT_GE(lines.back(), max * (1 - 1e-12));
    }
}

// The text of the assertion that a call fails, nothing when it fails none.
std::optional<std::string> failureOf(double min, double max, bool zeroRequired, unsigned total) {
  std::optional<std::string> text;
  const auto earlier = NSAssertionHandler::setHandler([&](const AssertionFailure& failure) { text = failure.text; });
  EXPECT_THROW(compute(min, max, zeroRequired, total), NSException);
  NSAssertionHandler::setHandler(earlier);
  return text;
}

TEST(Gridlines, ARangeUpsideDownFailsItsAssertion) {
  EXPECT_EQ(failureOf(2, 1, false, 3), "Invalid parameter not satisfying: minAmount <= maxAmount");
}

TEST(Gridlines, AFailureNamesTheClassOperationAndItsFile) {
  std::optional<AssertionFailure> failure;
  const auto earlier = NSAssertionHandler::setHandler([&](const AssertionFailure& each) { failure = each; });
  try {
    compute(2, 1, false, 3);
    ADD_FAILURE() << "no exception";
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.name(), NSInternalInconsistencyException);
    EXPECT_EQ(exception.reason(), "Invalid parameter not satisfying: minAmount <= maxAmount");
  }
  NSAssertionHandler::setHandler(earlier);
  ASSERT_TRUE(failure.has_value());
  EXPECT_EQ(failure->operation,
            "+[CashFlowPlot computeGridlinesForMinAmount:maxAmount:zeroRequired:totalGridlineCount:]");
  EXPECT_EQ(failure->object, nullptr);
  EXPECT_EQ(failure->file, "Classes/Plotting/CashFlowPlot");
}

// A range that is upside down for no lines at all: the first check answers.
TEST(Gridlines, ChecksAreMadeInOrder) {
  EXPECT_EQ(failureOf(2, 1, true, 0), "Invalid parameter not satisfying: minAmount <= maxAmount");
  EXPECT_EQ(failureOf(1, 2, true, 0), "Invalid parameter not satisfying: totalDivisionCount >= requiredDivisionCount");
}

TEST(Gridlines, AnAmountThatIsNoFiniteNumberFailsTheFirstAssertion) {
  const char* text = "Invalid parameter not satisfying: minAmount <= maxAmount";
  EXPECT_EQ(failureOf(kNaN, 1, true, 5), text);
  EXPECT_EQ(failureOf(0, kNaN, true, 5), text);
  EXPECT_EQ(failureOf(0, kInfinity, true, 5), text);
  EXPECT_EQ(failureOf(-kInfinity, 0, true, 5), text);
}

TEST(Gridlines, NothingButZeroIsOneLineWhateverTheTotal) {
  for (unsigned total = 2; total < 20; ++total)
    for (const bool zeroRequired : {false, true}) EXPECT_EQ(compute(0, 0, zeroRequired, total), Gridlines{0}) << total;
}

TEST(Gridlines, ATotalBelowTwoFailsItsAssertion) {
  EXPECT_EQ(failureOf(0, 1, false, 1), "Invalid parameter not satisfying: totalDivisionCount >= 2");
  EXPECT_EQ(failureOf(0, 1, false, 0), "Invalid parameter not satisfying: totalDivisionCount >= 2");
}

TEST(Gridlines, NoLinesAtAllWithZeroRequiredFailsItsAssertion) {
  EXPECT_EQ(failureOf(0, 1, true, 0), "Invalid parameter not satisfying: totalDivisionCount >= requiredDivisionCount");
}

TEST(Gridlines, ExtremesOfTheNumberRangeEnd) {
  for (const double amount : {5e-324, 1.5e-323, 1e-310, 1e300, 1.7e308}) {
    EXPECT_FALSE(compute(0, amount, true, 5).empty()) << amount;
    EXPECT_FALSE(compute(-amount, 0, true, 5).empty()) << amount;
    EXPECT_FALSE(compute(-amount, amount, true, 5).empty()) << amount;
  }
  EXPECT_EQ(compute(1e15, 1e15 + 1, false, 5).size(), 5u);
}

TEST(Magnitude, OfPowersOfTenFromTenIsATenthOfThem) {
  EXPECT_EQ(gridlines::magnitude(10), 1);
  EXPECT_EQ(gridlines::magnitude(10.5), 10);
  EXPECT_EQ(gridlines::magnitude(100), 10);
  EXPECT_EQ(gridlines::magnitude(1), 1);
  EXPECT_EQ(gridlines::magnitude(0.5), 0.1);
  EXPECT_EQ(gridlines::magnitude(-1020), 1000);
}

TEST(Magnitude, OfZeroIsOneWhateverItsSign) {
  EXPECT_EQ(gridlines::magnitude(0.0), 1);
  EXPECT_EQ(gridlines::magnitude(-0.0), 1);
}

TEST(DisplayValue, SnapsDownFromLessThanATenthOfTheMagnitudeAbove) {
  EXPECT_EQ(gridlines::displayValue(1020), 1000);
  EXPECT_EQ(gridlines::displayValue(1100), 1100);  // just a tenth
  EXPECT_EQ(gridlines::displayValue(1150), 1150);
  EXPECT_EQ(gridlines::displayValue(-1020), -1020);
  EXPECT_EQ(gridlines::displayValue(3000), 3000);
  EXPECT_EQ(gridlines::displayValue(0), 0);
  EXPECT_EQ(gridlines::displayValue(1099), 1000);
  EXPECT_EQ(gridlines::displayValue(-1950), -2000);  // 50 above -2000
  EXPECT_EQ(gridlines::displayValue(10), 10);
}

TEST(Fraction, IsClampedToTheFirstAndLastLine) {
  const Gridlines lines{-10, 0, 30};
  EXPECT_EQ(gridlines::fraction(-11, lines), 0);
  EXPECT_EQ(gridlines::fraction(-10, lines), 0);
  EXPECT_EQ(gridlines::fraction(0, lines), 0.25);
  EXPECT_EQ(gridlines::fraction(10, lines), 0.5);
  EXPECT_EQ(gridlines::fraction(30, lines), 1);
  EXPECT_EQ(gridlines::fraction(31, lines), 1);
}

TEST(Fraction, OfOneLineIsZero) { EXPECT_EQ(gridlines::fraction(7, {0}), 0); }

TEST(Fraction, WithoutLinesRaises) {
  try {
    gridlines::fraction(7, {});
    FAIL() << "nothing was raised";
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.name(), "NSRangeException");
    EXPECT_EQ(exception.reason(), "*** -[NSCFArray objectAtIndex:]: index (0) beyond bounds (0)");
  }
}

}  // namespace
}  // namespace zelkon
