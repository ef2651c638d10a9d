#include "Foundation/NSScanner.h"

#include <algorithm>
#include <cstdint>

#include "Foundation/DecimalDigits.h"

namespace zelkon {

namespace {

// The number of bytes of the white space or newline character at the start of the UTF-8 text, 0 if there is none.
size_t whitespaceLength(std::string_view text) {
  if (text.empty()) return 0;
  const auto byte = [&](size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  const unsigned first = byte(0);
  if (first == ' ' || (first >= 0x09 && first <= 0x0D)) return 1;
  if (first == 0xC2 && (byte(1) == 0x85 || byte(1) == 0xA0)) return 2;  // next line, no-break space
  const unsigned code = first << 16 | byte(1) << 8 | byte(2);
  if (code == 0xE19A80) return 3;                      // ogham space
  if (code >= 0xE28080 && code <= 0xE2808A) return 3;  // typographic spaces
  if (code == 0xE280A8 || code == 0xE280A9) return 3;  // line and paragraph separator
  if (code == 0xE280AF || code == 0xE2819F || code == 0xE38080) return 3;
  return 0;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// More digits than any double needs to be told from its neighbours; those beyond only matter by not being zero.
constexpr size_t maximumDigits = 800;
constexpr int maximumExponent = 100000;

struct Prefix {
  bool negative = false;
  std::string_view integral, fraction;
  int exponent = 0;
};

std::optional<Prefix> longestPrefix(std::string_view text) {
  size_t at = 0;
  const auto digits = [&] {
    const size_t begin = at;
    while (at < text.size() && isDigit(text[at])) ++at;
    return text.substr(begin, at - begin);
  };
  Prefix prefix;
  if (at < text.size() && (text[at] == '+' || text[at] == '-')) prefix.negative = text[at++] == '-';
  prefix.integral = digits();
  if (at < text.size() && text[at] == '.') {
    ++at;
    prefix.fraction = digits();
  }
  if (prefix.integral.empty() && prefix.fraction.empty()) return std::nullopt;
  if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
    ++at;
    bool negativeExponent = false;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) negativeExponent = text[at++] == '-';
    for (const char c : digits()) prefix.exponent = std::min(prefix.exponent * 10 + (c - '0'), maximumExponent);
    if (negativeExponent) prefix.exponent = -prefix.exponent;
  }
  return prefix;
}

double nearestValue(const Prefix& prefix) {
  DecimalDigits number;
  number.negative = prefix.negative;
  bool more = false;
  int64_t point = 0;  // place of the decimal point relative to the first significant digit
  const auto add = [&](std::string_view digits, bool integral) {
    for (const char c : digits) {
      if (c == '0' && number.digits.empty()) {
        if (!integral) --point;
        continue;
      }
      if (integral) ++point;
      if (number.digits.size() < maximumDigits)
        number.digits += c;
      else
        more = more || c != '0';
    }
  };
  add(prefix.integral, true);
  add(prefix.fraction, false);
  if (more) number.digits += '1';
  number.exponent = static_cast<int>(std::clamp<int64_t>(point + prefix.exponent, -maximumExponent, maximumExponent));
  return number.value();
}

}  // namespace

std::optional<double> NSScanDouble(std::string_view text) {
  while (const size_t length = whitespaceLength(text)) text.remove_prefix(length);
  const std::optional<Prefix> prefix = longestPrefix(text);
  if (!prefix) return std::nullopt;
  return nearestValue(*prefix);
}

}  // namespace zelkon
