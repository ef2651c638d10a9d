// A page's object or array as the plug-in sees it.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "Foundation/Value.h"
#include "WebKit/WebScriptTable.h"

namespace zelkon {

class WebScriptObject : public Object {
 public:
  std::string className() const override { return "WebScriptObject"; }
  // The element at the index; undefined past the end and in holes, null for a null element.
  virtual Value webScriptValueAtIndex(size_t index) = 0;
  // The property's value; null when it is null, missing or undefined.
  virtual Value valueForKey(std::string_view key) = 0;
  virtual void setValue(const Value& value, std::string_view key) = 0;
  // Calls a function of the object. Unknown functions are not called; script exceptions go to the page's console. The
  // result is null unless the function gave one.
  virtual Value callWebScriptMethod(std::string_view name, const ValueArray& arguments) = 0;
  // An array's elements as a table of those properties; null when it is to be read element by element.
  virtual std::shared_ptr<const WebScriptTable> webScriptTable(const std::vector<std::string_view>&) { return nullptr; }
};
using WebScriptObjectRef = std::shared_ptr<WebScriptObject>;

// The object a Value refers to, or null.
inline WebScriptObjectRef WebScriptObjectOf(const Value& value) { return value.object<WebScriptObject>(); }

}  // namespace zelkon
