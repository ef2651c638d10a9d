#include "WebKit/MemoryScriptObject.h"

namespace zelkon {

Value MemoryScriptObject::valueFromPage(const Value& value) {
  if (value.isArray() || value.isDictionary()) return std::make_shared<MemoryScriptObject>(value);
  if (value.isInteger()) return value.doubleValue();
  return value;
}

Value MemoryScriptObject::webScriptValueAtIndex(size_t index) {
  if (!content_.isArray() || index >= content_.array().size()) return Value::undefined();
  return valueFromPage(content_.array()[index]);
}

Value MemoryScriptObject::valueForKey(std::string_view key) {
  const auto answer = [](const Value& value) { return value.isUndefined() ? Value() : valueFromPage(value); };
  if (additions_) {
    const auto found = additions_->properties.find(key);
    if (found != additions_->properties.end()) return answer(found->second);
  }
  if (content_.isArray()) return key == "length" ? Value(static_cast<double>(content_.array().size())) : Value();
  if (!content_.isDictionary()) return {};
  const auto found = content_.dictionary().find(key);
  return found == content_.dictionary().end() ? Value() : answer(found->second);
}

void MemoryScriptObject::setValue(const Value& value, std::string_view key) {
  additions().properties.insert_or_assign(std::string(key), value);
}

Value MemoryScriptObject::callWebScriptMethod(std::string_view name, const ValueArray& arguments) {
  if (!additions_ || !additions_->method) return {};
  // The handler may replace itself.
  const Method method = additions_->method;
  return method(name, arguments);
}

void MemoryScriptObject::setMethodHandler(Method handler) { additions().method = std::move(handler); }

ValueDictionary MemoryScriptObject::changedProperties() const {
  return additions_ ? additions_->properties : ValueDictionary();
}

MemoryScriptObject::Additions& MemoryScriptObject::additions() {
  if (!additions_) additions_ = std::make_unique<Additions>();
  return *additions_;
}

}  // namespace zelkon
