#include "Foundation/DecimalDigits.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "Foundation/NaturalNumber.h"

namespace zelkon {

namespace {

using Limits = std::numeric_limits<double>;

constexpr double powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

void trim(DecimalDigits& number) {
  while (!number.digits.empty() && number.digits.back() == '0') number.digits.pop_back();
  if (number.digits.empty()) number.exponent = 0;
}

// The nearest double to numerator / denominator, half to even, found bit by bit.
double quotient(NaturalNumber numerator, NaturalNumber denominator) {
  // Brought by a power of two to at least 1 and less than 2.
  int exponent = numerator.bitCount() - denominator.bitCount();
  (exponent > 0 ? denominator : numerator).multiplyByPower(2, std::abs(exponent));
  if (numerator.compare(denominator) < 0) {
    numerator.multiplyAdd(2, 0);
    --exponent;
  }
  // The smallest numbers have fewer bits.
  const int bits = Limits::digits - std::max(Limits::min_exponent - 1 - exponent, 0);
  if (bits < 0) return 0;
  uint64_t mantissa = 0;
  for (int i = 0; i < bits; ++i) {
    mantissa *= 2;
    if (numerator.compare(denominator) >= 0) {
      numerator.subtract(denominator);
      ++mantissa;
    }
    numerator.multiplyAdd(2, 0);
  }
  const int rest = numerator.compare(denominator);  // against half a unit
  if (rest > 0 || (rest == 0 && mantissa % 2 == 1)) ++mantissa;
  return std::ldexp(static_cast<double>(mantissa), exponent - bits + 1);
}

// 0.DIGITS * 10^exponent
double magnitude(const std::string& digits, int exponent) {
  if (exponent > Limits::max_exponent10 + 1) return Limits::infinity();
  if (exponent < Limits::min_exponent10 - Limits::digits10 - 1) return 0;
  const int power = exponent - static_cast<int>(digits.size());
  // Up to 15 digits and a power of ten up to 22 are exact doubles, so one operation rounds correctly.
  if (digits.size() <= 15 && std::abs(power) <= 22) {
    int64_t integer = 0;
    for (const char c : digits) integer = integer * 10 + (c - '0');
    const auto exact = static_cast<double>(integer);
    return power < 0 ? exact / powersOfTen[-power] : exact * powersOfTen[power];
  }
  NaturalNumber numerator, denominator(1);
  for (const char c : digits) numerator.multiplyAdd(10, static_cast<uint32_t>(c - '0'));
  (power > 0 ? numerator : denominator).multiplyByPower(10, std::abs(power));
  return quotient(std::move(numerator), std::move(denominator));
}

}  // namespace

DecimalDigits DecimalDigits::exact(double value) {
  DecimalDigits result;
  result.negative = std::signbit(value);
  int exponent = 0;
  const double mantissa = std::frexp(std::abs(value), &exponent);
  exponent -= Limits::digits;
  NaturalNumber integer(static_cast<uint64_t>(std::ldexp(mantissa, Limits::digits)));
  // A power of two below one is as many powers of five with the decimal point moved.
  integer.multiplyByPower(exponent < 0 ? 5 : 2, std::abs(exponent));
  while (!integer.isZero()) result.digits += static_cast<char>('0' + integer.divide(10));
  std::reverse(result.digits.begin(), result.digits.end());
  result.exponent = static_cast<int>(result.digits.size()) + std::min(exponent, 0);
  trim(result);
  return result;
}

DecimalDigits DecimalDigits::shortest(double value) {
  const DecimalDigits all = exact(value);
  DecimalDigits candidate;
  for (int precision = Limits::digits10; precision <= Limits::max_digits10; ++precision) {
    candidate = all;
    candidate.roundToDigits(precision);
    if (candidate.value() == value) break;
  }
  return candidate;
}

double DecimalDigits::value() const {
  const double size = digits.empty() ? 0 : magnitude(digits, exponent);
  return negative ? -size : size;
}

void DecimalDigits::roundToFractionDigits(int count) { roundToDigits(exponent + std::max(count, 0)); }

void DecimalDigits::roundToDigits(int kept) {
  const int size = static_cast<int>(digits.size());
  if (kept >= size) return;
  if (kept < 0) {
    digits.clear();
    exponent = 0;
    return;
  }
  const char next = digits[kept];
  const bool exactHalf = next == '5' && kept + 1 == size;
  const bool odd = kept > 0 && (digits[kept - 1] - '0') % 2 == 1;
  const bool up = exactHalf ? odd : next >= '5';
  digits.resize(kept);
  if (up) {
    int i = kept - 1;
    while (i >= 0 && digits[i] == '9') digits[i--] = '0';
    if (i >= 0) {
      ++digits[i];
    } else {
      digits.insert(digits.begin(), '1');
      ++exponent;
    }
  }
  trim(*this);
}

std::string DecimalDigits::integralPart() const {
  if (digits.empty() || exponent <= 0) return "0";
  std::string part = digits.substr(0, exponent);
  part.append(exponent - part.size(), '0');
  return part;
}

std::string DecimalDigits::fractionalPart() const {
  if (digits.empty() || exponent >= static_cast<int>(digits.size())) return {};
  if (exponent >= 0) return digits.substr(exponent);
  return std::string(-exponent, '0') + digits;
}

std::string DecimalDigits::fixed(int count) const {
  DecimalDigits rounded = *this;
  rounded.roundToFractionDigits(count);
  std::string fraction = rounded.fractionalPart();
  fraction.resize(static_cast<size_t>(count), '0');
  return (negative ? "-" : "") + rounded.integralPart() + "." + fraction;
}

}  // namespace zelkon
