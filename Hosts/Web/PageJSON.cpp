#include "Hosts/Web/PageJSON.h"

#include <cmath>

#include "Foundation/DecimalDigits.h"

namespace zelkon {
namespace {

void appendString(std::string& out, std::string_view text) {
  out += '"';
  for (char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      constexpr char hexDigits[] = "0123456789abcdef";
      out += "\\u00";
      out += hexDigits[c >> 4];
      out += hexDigits[c & 15];
    } else {
      out += c;
    }
  }
  out += '"';
}

void append(std::string& out, const Value& value) {
  if (value.isBoolean()) {
    out += value.boolValue() ? "true" : "false";
  } else if (value.isInteger()) {
    out += std::to_string(value.integerValue());
  } else if (value.isNumber() && std::isfinite(value.doubleValue())) {
    const DecimalDigits number = DecimalDigits::shortest(value.doubleValue());
    if (number.negative) out += '-';
    out += number.digits.empty() ? "0" : number.digits;
    const int power = number.exponent - static_cast<int>(number.digits.size());
    if (power != 0) out += 'e' + std::to_string(power);
  } else if (value.isString()) {
    appendString(out, value.string());
  } else if (value.isArray()) {
    out += '[';
    for (size_t i = 0; i < value.array().size(); ++i) {
      if (i > 0) out += ',';
      append(out, value.array()[i]);
    }
    out += ']';
  } else if (value.isDictionary()) {
    out += '{';
    bool first = true;
    for (const auto& [key, each] : value.dictionary()) {
      if (!first) out += ',';
      first = false;
      appendString(out, key);
      out += ':';
      append(out, each);
    }
    out += '}';
  } else {
    out += "null";
  }
}

}  // namespace

std::string PageJSON(const Value& value) {
  std::string out;
  append(out, value);
  return out;
}

}  // namespace zelkon
