// A dynamic value: what page script, plot options, the argument dictionary and key-value storage hold. Strings, arrays
// and dictionaries are shared immutable handles, so copying a Value never copies their contents.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zelkon {

// Base of reference-counted platform objects that a Value can refer to (script objects, layers, containers).
class Object {
 public:
  virtual ~Object() = default;
  // The plain class name as log lines and exception reasons show it.
  virtual std::string className() const = 0;
};

class Value;
using ValueArray = std::vector<Value>;
using ValueDictionary = std::map<std::string, Value, std::less<>>;

class Value {
 public:
  Value() = default;             // null
  static Value undefined();      // the script engine's undefined
  Value(bool boolean);           // NOLINT(google-explicit-constructor): a Value is meant to be made from its content
  Value(double number);          // NOLINT
  Value(int integer);            // NOLINT
  Value(int64_t integer);        // NOLINT
  Value(std::string text);       // NOLINT
  Value(std::string_view text);  // NOLINT
  Value(const char* text);       // NOLINT
  Value(ValueArray array);       // NOLINT
  Value(ValueDictionary dictionary);  // NOLINT
  template <typename T>
  requires std::is_base_of_v<Object, T> Value(std::shared_ptr<T> object)
      : Value(FromObject{}, std::shared_ptr<Object>(std::move(object))) {}  // NOLINT

  bool isNull() const { return std::holds_alternative<std::monostate>(content_); }
  bool isUndefined() const { return std::holds_alternative<Undefined>(content_); }
  bool isBoolean() const { return std::holds_alternative<bool>(content_); }
  bool isNumber() const;  // double or integer, not boolean
  bool isInteger() const { return std::holds_alternative<int64_t>(content_); }
  bool isString() const { return std::holds_alternative<SharedString>(content_); }
  bool isArray() const { return std::holds_alternative<SharedArray>(content_); }
  bool isDictionary() const { return std::holds_alternative<SharedDictionary>(content_); }
  bool isObject() const { return std::holds_alternative<std::shared_ptr<Object>>(content_); }

  // Numbers and booleans give their value, strings the number their beginning scans to (0 when none), null 0. Anything
  // else raises NSInvalidArgumentException ("-[WebUndefined doubleValue]: unrecognized selector sent to instance").
  double doubleValue() const;
  // As doubleValue, truncated towards zero and clamped to the int64 range; NaN gives 0.
  int64_t integerValue() const;
  // Numbers: not zero. Strings: begin with y, Y, t, T or a digit 1-9 (after blanks and zeros). Null: false. Others
  // raise.
  bool boolValue() const;
  // Strings: number of UTF-16 units. Null: 0. Anything else raises NSInvalidArgumentException, "-[NSCFNumber length]:
  // unrecognized selector sent to instance".
  size_t length() const;

  // The string itself; precondition isString().
  const std::string& string() const;
  // A handle to the same string, shared; precondition isString().
  std::shared_ptr<const std::string> sharedString() const;
  const ValueArray& array() const;            // precondition isArray()
  const ValueDictionary& dictionary() const;  // precondition isDictionary()
  // The object, or null when this is no object or not of type T.
  template <typename T = Object>
  std::shared_ptr<T> object() const {
    const auto* held = std::get_if<std::shared_ptr<Object>>(&content_);
    return held ? std::dynamic_pointer_cast<T>(*held) : nullptr;
  }
  // Dictionary lookup; null when absent or when this is not a dictionary.
  Value valueForKey(std::string_view key) const;

  // The text that "%@" formats to: strings as they are, numbers in shortest form, null "(null)", objects "<Class>".
  std::string description() const;
  // Class name of the held thing as reasons print it: NSCFNumber, NSCFBoolean, NSCFString, NSCFArray, NSCFDictionary,
  // WebUndefined, or the object's own.
  std::string className() const;

  // What asking for an operation that the value does not have raises: NSInvalidArgumentException, "-[NSCFString
  // decimalValue]: unrecognized selector sent to instance 0x…" with the value's place in memory.
  [[noreturn]] void raiseUnrecognized(const char* selector) const;
  // What asking an object without keys for one raises: NSUndefinedKeyException, "[<NSCFNumber 0x…>
  // valueForUndefinedKey:]: this class is not key value coding-compliant for the key foo."
  [[noreturn]] void raiseUndefinedKey(std::string_view key) const;

  // By value for scalars (1 == 1.0 == true), deep for strings, arrays and dictionaries, by identity for objects.
  friend bool operator==(const Value& a, const Value& b);

 private:
  struct Undefined {};
  struct FromObject {};
  using SharedString = std::shared_ptr<const std::string>;
  using SharedArray = std::shared_ptr<const ValueArray>;
  using SharedDictionary = std::shared_ptr<const ValueDictionary>;
  Value(FromObject, std::shared_ptr<Object> object);
  const void* address() const;

  std::variant<std::monostate, Undefined, bool, double, int64_t, SharedString, SharedArray, SharedDictionary,
               std::shared_ptr<Object>>
      content_;
};

}  // namespace zelkon
