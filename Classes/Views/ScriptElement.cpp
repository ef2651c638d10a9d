#include "Classes/Views/ScriptElement.h"

#include "WebKit/WebScriptObject.h"

namespace zelkon {

Value ScriptElementAtIndex(const Value& array, size_t index) {
  if (array.isNull()) return {};
  if (const WebScriptObjectRef object = WebScriptObjectOf(array)) return object->webScriptValueAtIndex(index);
  array.raiseUnrecognized("webScriptValueAtIndex:");
}

Value ScriptElementValueForKey(const Value& element, std::string_view key) {
  if (element.isNull() || element.isDictionary()) return element.valueForKey(key);
  if (const WebScriptObjectRef object = WebScriptObjectOf(element)) return object->valueForKey(key);
  element.raiseUndefinedKey(key);
}

}  // namespace zelkon
