#include "Hosts/Web/PageJSON.h"

#include <cmath>
#include <cstdio>

namespace zelkon {
namespace {

void appendString(std::string& out, std::string_view text) {
  out += '"';
  for (char c : text) {
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (static_cast<unsigned char>(c) < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
      out += escape;
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
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.17g", value.doubleValue());
    out += digits;
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
