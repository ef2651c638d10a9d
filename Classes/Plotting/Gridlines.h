// The marks of the value axis: multiples of a simple step (1, 1.5, 2, 2.5, 3, 4, 5, 6, 7, 8 or 9 times a power of ten).
#pragma once

#include <vector>

namespace zelkon {

// Ascending values.
using Gridlines = std::vector<double>;

namespace gridlines {

// The smallest step that covers the range with at most `total` lines. A range on one side of zero gets exactly `total`
// lines, the extra ones at the end far from zero; one that holds zero gets a line at zero and no padding, and three
// lines at least where it reaches to both sides. Fails a parameter assertion when the range is upside down or not
// finite, or the count too small.
Gridlines compute(double minAmount, double maxAmount, bool zeroRequired, unsigned total);
// Power of ten of a value: v / magnitude lies in [1, 10], both ends included, so 10 has magnitude 1. Zero has 1.
double magnitude(double value);
// Snaps a value down to the multiple of its magnitude that it lies less than a tenth of the magnitude above.
double displayValue(double value);
// Height of the value between the first and the last line, clamped to 0...1; 0 when they coincide. Raises
// NSRangeException without lines.
double fraction(double value, const Gridlines& lines);
// Whether each line lies within 0.01 of the expected value in its place. Expected values beyond the lines are not asked
// for, so that no lines are as expected.
bool areAsExpected(const Gridlines& lines, const Gridlines& expected);
// Checks the twenty ranges that the steps were chosen for; raises through the assertion handler at the first that
// fails.
void selfTest();

}  // namespace gridlines
}  // namespace zelkon
