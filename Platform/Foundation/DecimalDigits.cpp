#include "Foundation/DecimalDigits.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace zelkon {

namespace {

void trim(DecimalDigits& number) {
  while (!number.digits.empty() && number.digits.back() == '0') number.digits.pop_back();
  if (number.digits.empty()) number.exponent = 0;
}

// `value` with `precision` significant digits. Whatever character the C library puts between the digits is skipped.
DecimalDigits digitsOf(double value, int precision) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*e", precision - 1, value);
  DecimalDigits result;
  const char* p = text;
  if (*p == '-') {
    result.negative = true;
    ++p;
  }
  for (; *p != 0 && *p != 'e'; ++p)
    if (*p >= '0' && *p <= '9') result.digits += *p;
  result.exponent = (*p == 'e' ? std::atoi(p + 1) : 0) + 1;
  trim(result);
  return result;
}

}  // namespace

DecimalDigits DecimalDigits::shortest(double value) {
  if (value == 0) {
    DecimalDigits zero;
    zero.negative = std::signbit(value);
    return zero;
  }
  for (int precision = 15; precision < 17; ++precision) {
    DecimalDigits candidate = digitsOf(value, precision);
    if (candidate.value() == value) return candidate;
  }
  return digitsOf(value, 17);
}

double DecimalDigits::value() const {
  if (digits.empty()) return negative ? -0.0 : 0.0;
  // Written as an integer with an exponent there is no decimal separator for a locale to change.
  const std::string text = digits + "e" + std::to_string(exponent - static_cast<int>(digits.size()));
  const double magnitude = std::strtod(text.c_str(), nullptr);
  return negative ? -magnitude : magnitude;
}

void DecimalDigits::roundToFractionDigits(int count) {
  const int kept = exponent + std::max(count, 0);
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

}  // namespace zelkon
