#include "Foundation/Value.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "Foundation/DecimalDigits.h"
#include "Foundation/NSException.h"
#include "Foundation/NSScanner.h"

namespace zelkon {

namespace {

std::string numberDescription(double number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
  const DecimalDigits digits = DecimalDigits::shortest(number);
  const std::string sign = digits.negative ? "-" : "";
  if (digits.digits.empty()) return sign + "0";
  const int exponent = digits.exponent - 1;
  if (exponent >= -4 && exponent < 17) {
    const std::string fraction = digits.fractionalPart();
    return sign + digits.integralPart() + (fraction.empty() ? "" : "." + fraction);
  }
  const std::string rest = digits.digits.substr(1);
  const std::string power = std::to_string(std::abs(exponent));
  return sign + digits.digits[0] + (rest.empty() ? "" : "." + rest) + (exponent < 0 ? "e-" : "e+") +
         (power.size() < 2 ? "0" : "") + power;
}

std::string addressText(const void* address) {
  std::string digits;
  for (auto rest = reinterpret_cast<uintptr_t>(address); rest != 0; rest /= 16)
    digits.insert(digits.begin(), "0123456789abcdef"[rest % 16]);
  return "0x" + digits;
}

// The items of an array or dictionary, one indented line each.
std::string indented(const std::string& text) {
  std::string result = "    ";
  for (const char c : text) {
    result += c;
    if (c == '\n') result += "    ";
  }
  return result;
}

}  // namespace

Value Value::undefined() {
  Value value;
  value.content_ = Undefined{};
  return value;
}

Value::Value(bool boolean) : content_(boolean) {}
Value::Value(double number) : content_(number) {}
Value::Value(int integer) : content_(static_cast<int64_t>(integer)) {}
Value::Value(int64_t integer) : content_(integer) {}
Value::Value(std::string text) : content_(std::make_shared<const std::string>(std::move(text))) {}
Value::Value(std::string_view text) : Value(std::string(text)) {}
Value::Value(const char* text) {
  if (text != nullptr) *this = Value(std::string(text));
}
Value::Value(ValueArray array) : content_(std::make_shared<const ValueArray>(std::move(array))) {}
Value::Value(ValueDictionary dictionary) : content_(std::make_shared<const ValueDictionary>(std::move(dictionary))) {}
Value::Value(FromObject, std::shared_ptr<Object> object) {
  if (object) content_ = std::move(object);
}

bool Value::isNumber() const {
  return std::holds_alternative<double>(content_) || std::holds_alternative<int64_t>(content_);
}

double Value::doubleValue() const {
  if (const auto* number = std::get_if<double>(&content_)) return *number;
  if (const auto* integer = std::get_if<int64_t>(&content_)) return static_cast<double>(*integer);
  if (const auto* boolean = std::get_if<bool>(&content_)) return *boolean ? 1 : 0;
  if (isString()) return NSScanDouble(string()).value_or(0);
  if (isNull()) return 0;
  raiseUnrecognized("doubleValue");
}

int64_t Value::integerValue() const {
  if (const auto* integer = std::get_if<int64_t>(&content_)) return *integer;
  if (isUndefined() || isArray() || isDictionary() || isObject()) raiseUnrecognized("integerValue");
  const double number = doubleValue();
  if (std::isnan(number)) return 0;
  if (number >= 9223372036854775808.0) return std::numeric_limits<int64_t>::max();
  if (number < -9223372036854775808.0) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(number);
}

bool Value::boolValue() const {
  if (const auto* boolean = std::get_if<bool>(&content_)) return *boolean;
  if (isNumber()) return doubleValue() != 0;
  if (isNull()) return false;
  if (!isString()) raiseUnrecognized("boolValue");
  std::string_view text = string();
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  if (!text.empty() && (text[0] == '+' || text[0] == '-')) text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
  return !text.empty() && std::string_view("yYtT123456789").find(text[0]) != std::string_view::npos;
}

size_t Value::length() const {
  if (isNull()) return 0;
  if (!isString()) raiseUnrecognized("length");
  size_t units = 0;
  for (const char c : string()) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
  }
  return units;
}

const std::string& Value::string() const {
  assert(isString());
  return **std::get_if<SharedString>(&content_);
}

std::shared_ptr<const std::string> Value::sharedString() const {
  assert(isString());
  return *std::get_if<SharedString>(&content_);
}

const ValueArray& Value::array() const {
  assert(isArray());
  return **std::get_if<SharedArray>(&content_);
}

const ValueDictionary& Value::dictionary() const {
  assert(isDictionary());
  return **std::get_if<SharedDictionary>(&content_);
}

Value Value::valueForKey(std::string_view key) const {
  if (!isDictionary()) return {};
  const auto found = dictionary().find(key);
  return found == dictionary().end() ? Value() : found->second;
}

std::string Value::description() const {
  if (isNull()) return "(null)";
  if (isUndefined()) return "undefined";
  if (const auto* boolean = std::get_if<bool>(&content_)) return *boolean ? "1" : "0";
  if (const auto* integer = std::get_if<int64_t>(&content_)) return std::to_string(*integer);
  if (const auto* number = std::get_if<double>(&content_)) return numberDescription(*number);
  if (isString()) return string();
  if (isArray()) {
    std::string text = "(";
    for (const Value& item : array()) text += (text.size() > 1 ? ",\n" : "\n") + indented(item.description());
    return text + "\n)";
  }
  if (isDictionary()) {
    std::string text = "{";
    for (const auto& [key, item] : dictionary()) text += "\n" + indented(key + " = " + item.description() + ";");
    return text + "\n}";
  }
  return "<" + className() + ">";
}

std::string Value::className() const {
  if (isUndefined()) return "WebUndefined";
  if (isBoolean()) return "NSCFBoolean";
  if (isNumber()) return "NSCFNumber";
  if (isString()) return "NSCFString";
  if (isArray()) return "NSCFArray";
  if (isDictionary()) return "NSCFDictionary";
  if (const auto held = object()) return held->className();
  return "(null)";
}

bool operator==(const Value& a, const Value& b) {
  const bool scalarA = a.isNumber() || a.isBoolean();
  const bool scalarB = b.isNumber() || b.isBoolean();
  if (scalarA || scalarB) {
    if (!scalarA || !scalarB) return false;
    if (a.isInteger() && b.isInteger()) return std::get<int64_t>(a.content_) == std::get<int64_t>(b.content_);
    return a.doubleValue() == b.doubleValue();
  }
  if (a.content_.index() != b.content_.index()) return false;
  if (a.isString()) return a.string() == b.string();
  if (a.isArray()) return &a.array() == &b.array() || a.array() == b.array();
  if (a.isDictionary()) return &a.dictionary() == &b.dictionary() || a.dictionary() == b.dictionary();
  if (a.isObject()) return a.object() == b.object();
  return true;
}

const void* Value::address() const {
  const auto* held = std::get_if<std::shared_ptr<Object>>(&content_);
  return held ? static_cast<const void*>(held->get()) : this;
}

void Value::raiseUnrecognized(const char* selector) const {
  NSRaise(NSInvalidArgumentException,
          "-[" + className() + " " + selector + "]: unrecognized selector sent to instance " + addressText(address()));
}

void Value::raiseUndefinedKey(std::string_view key) const {
  NSRaise(NSUndefinedKeyException,
          "[<" + className() + " " + addressText(address()) +
              "> valueForUndefinedKey:]: this class is not key value coding-compliant for the key " + std::string(key) +
              ".");
}

}  // namespace zelkon
