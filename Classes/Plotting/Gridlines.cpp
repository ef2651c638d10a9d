#include "Classes/Plotting/Gridlines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "Foundation/DecimalDigits.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSException.h"
#include "Foundation/NSScanner.h"

namespace zelkon::gridlines {
namespace {

constexpr const char* kFile = "Classes/Plotting/CashFlowPlot";
constexpr const char* kCompute =
    "+[CashFlowPlot computeGridlinesForMinAmount:maxAmount:zeroRequired:totalGridlineCount:]";

// A step of 1 is reached as 0.1 of the next magnitude.
constexpr std::array<double, 11> kSteps{0.1, 0.15, 0.2, 0.25, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9};

// How many steps reach `extent`, one more for each that falls short; counting stops beyond `limit`, where nobody cares.
unsigned stepsToReach(double extent, double step, unsigned limit) {
  unsigned count = 1;
  for (double d = step; d < extent && count <= limit; d += step) ++count;
  return count;
}

// The largest multiple of the step that is not above `value`, by repeated addition: marks must fall on the very sums
// that the lines are built from. A value too many steps away for that is reached by division.
double multipleBelow(double value, double step) {
  constexpr double kManySteps = 1e6;
  if (value / step > kManySteps) return std::floor(value / step) * step;
  double start = 0;
  for (double d = step; d <= value; d += step) {
    if (d == value) return value;
    start = d;
  }
  return start;
}

struct Range {
  double min, max;
  bool oneSided;
  double bigAbs() const { return std::max(std::abs(min), std::abs(max)); }
  double smallAbs() const { return std::min(std::abs(min), std::abs(max)); }
};

unsigned linesNeeded(const Range& range, double step, unsigned limit) {
  if (range.oneSided) return 1 + stepsToReach(range.bigAbs() - multipleBelow(range.smallAbs(), step), step, limit);
  const unsigned below = range.min == 0 ? 1 : 1 + stepsToReach(-range.min, step, limit);
  return range.max == 0 ? below : below + stepsToReach(range.max, step, limit);
}

// Power of ten that brings the step into [0.1, 1].
double stepMagnitude(double step) {
  double magnitude = 1;
  if (step == 0) return magnitude;
  while (step < static_cast<double>(0.1f)) {
    magnitude /= 10;
    step *= 10;
  }
  while (step > 1) {
    step /= 10;
    magnitude *= 10;
  }
  return magnitude;
}

double smallestFittingStep(const Range& range, unsigned total) {
  const double gaps = total - 1;
  // However great the step, a range on both sides of zero has a line below, one at and one above it: with less allowed
  // the search would never end.
  const unsigned allowed = !range.oneSided && range.min < 0 && range.max > 0 ? std::max(total, 3u) : total;
  // Halves first: the difference of two huge amounts need not be finite.
  const double width = range.max - range.min;
  const double step = std::isfinite(width) ? std::abs(width) / gaps : range.max / gaps - range.min / gaps;
  for (double magnitude = stepMagnitude(step);; magnitude *= 10) {
    for (const double candidate : kSteps)
      if (linesNeeded(range, candidate * magnitude, allowed) <= allowed) return candidate * magnitude;
  }
}

Gridlines oneSidedLines(const Range& range, double step, unsigned total) {
  const bool negative = range.max <= 0;
  double value = multipleBelow(range.smallAbs(), step);
  if (negative) {
    value = -value;
    step = -step;
  }
  Gridlines lines;
  lines.reserve(total);
  for (unsigned i = 0; i < total; ++i, value += step) lines.push_back(value);
  if (negative) std::reverse(lines.begin(), lines.end());
  return lines;
}

Gridlines linesThroughZero(const Range& range, double step, unsigned total) {
  const unsigned below = range.min == 0 ? 0 : stepsToReach(-range.min, step, total);
  const unsigned above = range.max == 0 ? 0 : stepsToReach(range.max, step, total);
  Gridlines lines;
  lines.reserve(below + 1 + above);
  double value = below * step;
  if (range.min < 0) value = -value;
  for (unsigned i = 0; i < below; ++i, value += step) lines.push_back(value);
  lines.push_back(0);
  value = step;
  for (unsigned i = 0; i < above; ++i, value += step) lines.push_back(value);
  return lines;
}

}  // namespace

Gridlines compute(double minAmount, double maxAmount, bool zeroRequired, unsigned total) {
  const bool ordered = minAmount <= maxAmount && std::isfinite(minAmount) && std::isfinite(maxAmount);
  NSParameterAssert(ordered, "minAmount <= maxAmount", kCompute, nullptr, kFile, __LINE__);
  NSParameterAssert(total >= (zeroRequired ? 1u : 0u), "totalDivisionCount >= requiredDivisionCount", kCompute, nullptr,
                    kFile, __LINE__);
  NSParameterAssert(total >= 2, "totalDivisionCount >= 2", kCompute, nullptr, kFile, __LINE__);
  if (zeroRequired) {
    if (minAmount > 0)
      minAmount = 0;
    else if (maxAmount < 0)
      maxAmount = 0;
  }
  const Range range{minAmount, maxAmount, !zeroRequired && (minAmount > 0 || maxAmount < 0)};
  const double step = smallestFittingStep(range, total);
  return range.oneSided ? oneSidedLines(range, step, total) : linesThroughZero(range, step, total);
}

double magnitude(double value) {
  if (value == 0 || !std::isfinite(value)) return 1;
  double v = std::abs(value);
  int power = 0;
  for (; v < 1; v *= 10) --power;
  for (; v > 10; v /= 10) ++power;
  return NSScanDouble("1e" + std::to_string(power)).value_or(1);
}

double displayValue(double value) {
  const double m = magnitude(value);
  const double below = std::floor(value / m) * m;
  if (below == value) return value;
  return std::abs((value - below) / m) < 0.1 ? below : value;
}

double fraction(double value, const Gridlines& lines) {
  if (lines.empty()) NSRaise(NSRangeException, "*** -[NSCFArray objectAtIndex:]: index (0) beyond bounds (0)");
  const double first = lines.front(), last = lines.back();
  if (last - first == 0) return 0;
  if (value <= first) return 0;
  if (value >= last) return 1;
  return (value - first) / (last - first);
}

bool areAsExpected(const Gridlines& lines, const Gridlines& expected) {
  constexpr double kTolerance = 0.01;
  for (size_t i = 0; i < lines.size(); ++i)
    if (i >= expected.size() || std::abs(lines[i] - expected[i]) > kTolerance) return false;
  return true;
}

void selfTest() {
  struct Case {
    double min, max;
    bool zeroRequired;
    unsigned total;
    Gridlines expected;
  };
  static const Case cases[] = {
      {-1, 1, false, 3, {-1, 0, 1}},
      {-1, 1, true, 3, {-1, 0, 1}},
      {-2, 1, false, 3, {-2, 0, 2}},
      {-1, 2, false, 3, {-2, 0, 2}},
      {-3, 1, false, 3, {-3, 0, 3}},
      {-1, 3, false, 3, {-3, 0, 3}},
      {-1, 0, false, 3, {-1, -0.5, 0}},
      {0, 1, false, 3, {0, 0.5, 1}},
      {-2, 0, false, 3, {-2, -1, 0}},
      {0, 2, false, 3, {0, 1, 2}},
      {-15, -1, true, 3, {-16, -8, 0}},
      {-15, -1, false, 3, {-16, -8, 0}},
      {-25, -11, true, 3, {-30, -15, 0}},
      {-25, -11, false, 3, {-27, -18, -9}},
      {1, 15, true, 3, {0, 8, 16}},
      {1, 15, false, 3, {0, 8, 16}},
      {11, 25, true, 3, {0, 15, 30}},
      {11, 25, false, 3, {9, 18, 27}},
      {-8000, 8000, false, 5, {-8000, -4000, 0, 4000, 8000}},
      {1, 2.25, false, 3, {0.8, 1.6, 2.4}},
  };
  for (const Case& test : cases) {
    const Gridlines lines = compute(test.min, test.max, test.zeroRequired, test.total);
    std::string text = "TestGridlineArray(points";
    for (const double value : test.expected) {
      text += ", " + DecimalDigits::exact(value).fixed(1) + "f";
    }
    NSParameterAssert(areAsExpected(lines, test.expected), text + ")", "+[CashFlowPlot _testGridlineGeneration]",
                      nullptr, kFile, __LINE__);
  }
}

}  // namespace zelkon::gridlines
