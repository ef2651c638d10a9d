// A finite decimal number as its digits, the form in which numbers are read from and written to text. Reading and
// writing through digits keeps the process's locale, and its decimal separator, out of the result.
#pragma once

#include <string>

namespace zelkon {

// The value 0.DIGITS * 10^exponent, negated if `negative`. Zero has no digits.
struct DecimalDigits {
  bool negative = false;
  std::string digits;  // no leading and no trailing zeros
  int exponent = 0;

  // All digits of the number, up to 767 of them. Precondition: `value` is finite.
  static DecimalDigits exact(double value);
  // The fewest digits, of 15 or more, that read back as the same number. Precondition: `value` is finite.
  static DecimalDigits shortest(double value);
  // The nearest double; infinity when it is too large.
  double value() const;
  // Rounds half to even, leaving at most `count` digits after the decimal point.
  void roundToFractionDigits(int count);
  // The integral digits, "0" when there are none.
  std::string integralPart() const;
  // The digits after the decimal point, empty when there are none.
  std::string fractionalPart() const;
  // With exactly `count` digits after a point, at least one, rounded half to even.
  std::string fixed(int count) const;

 private:
  // Rounds half to even, leaving at most `kept` digits.
  void roundToDigits(int kept);
};

}  // namespace zelkon
