#include "Classes/Views/ScriptElement.h"

#include "Foundation/NSException.h"
#include "WebKit/WebScriptObject.h"

namespace zelkon {

Value ScriptElementAtIndex(const Value& array, size_t index) {
  if (array.isNull()) return {};
  if (const WebScriptObjectRef object = WebScriptObjectOf(array)) return object->webScriptValueAtIndex(index);
  NSRaise(NSInvalidArgumentException,
          "-[" + array.className() + " webScriptValueAtIndex:]: unrecognized selector sent to instance");
}

Value ScriptElementValueForKey(const Value& element, std::string_view key) {
  if (element.isNull() || element.isDictionary()) return element.valueForKey(key);
  if (const WebScriptObjectRef object = WebScriptObjectOf(element)) return object->valueForKey(key);
  NSRaise(NSUndefinedKeyException,
          "[<" + element.className() +
              "> valueForUndefinedKey:]: this class is not key value coding-compliant for the key " + std::string(key) +
              ".");
}

}  // namespace zelkon
