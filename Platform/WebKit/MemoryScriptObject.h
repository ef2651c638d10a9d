// A page's object that lives in memory: for pages that a host or a test plays. Backed by a Value as a scenario gives
// it.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "WebKit/WebScriptObject.h"

namespace zelkon {

class MemoryScriptObject : public WebScriptObject {
 public:
  using Method = std::function<Value(std::string_view name, const ValueArray& arguments)>;
  MemoryScriptObject() = default;  // an empty object
  // An array or a dictionary, shared with the Value; anything else is an object without elements and properties.
  explicit MemoryScriptObject(Value content) : content_(std::move(content)) {}
  // The value as a page would hand it over: arrays and dictionaries as script objects, numbers as doubles, everything
  // else as it is.
  static Value valueFromPage(const Value& value);

  // Elements and properties that are arrays or dictionaries come as MemoryScriptObjects, made anew by each reading, so
  // setting a property of one does not alter its parent.
  Value webScriptValueAtIndex(size_t index) override;
  // An array also has "length".
  Value valueForKey(std::string_view key) override;
  void setValue(const Value& value, std::string_view key) override;
  // Null without a handler.
  Value callWebScriptMethod(std::string_view name, const ValueArray& arguments) override;
  void setMethodHandler(Method handler);

  // The Value given at creation.
  const Value& content() const { return content_; }
  // The properties set since then.
  ValueDictionary changedProperties() const;

 private:
  // What few objects have; elements of long arrays stay small.
  struct Additions {
    ValueDictionary properties;
    Method method;
  };
  Additions& additions();
  Value content_;
  std::unique_ptr<Additions> additions_;
};

}  // namespace zelkon
