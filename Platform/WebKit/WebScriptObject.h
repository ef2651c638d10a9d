// A page's object or array as the plug-in sees it.
#pragma once

#include <memory>
#include <string_view>

#include "Foundation/Value.h"

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
};
using WebScriptObjectRef = std::shared_ptr<WebScriptObject>;

// The object a Value refers to, or null.
inline WebScriptObjectRef WebScriptObjectOf(const Value& value) { return value.object<WebScriptObject>(); }

}  // namespace zelkon
