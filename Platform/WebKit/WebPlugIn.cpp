#include "WebKit/WebPlugIn.h"

#include <algorithm>

namespace zelkon {

namespace {

// How script sees a selector that has no name of its own.
std::string mangledSelector(const std::string& selector) {
  std::string name;
  for (const char c : selector) {
    if (c == ':')
      name += '_';
    else if (c == '_' || c == '$')
      name += std::string("$") + c;
    else
      name += c;
  }
  return name;
}

std::string scriptName(const WebPlugIn& object, const std::string& selector) {
  return object.webScriptNameForSelector(selector).value_or(mangledSelector(selector));
}

}  // namespace

WebScriptObjectRef WebWindowObject(const Value& arguments) {
  const auto container = arguments.valueForKey(WebPlugInContainerKey).object<WebPlugInContainer>();
  if (!container || !container->webFrame()) return nullptr;
  return container->webFrame()->windowObject();
}

std::optional<Value> WebScriptInvoke(WebPlugIn& plugIn, const std::string& name, const ValueArray& arguments) {
  WebPlugIn* object = plugIn.objectForWebScript();
  if (object == nullptr) return std::nullopt;
  for (const std::string& selector : object->selectors()) {
    if (object->isSelectorExcludedFromWebScript(selector) || scriptName(*object, selector) != name) continue;
    ValueArray given = arguments;
    given.resize(static_cast<size_t>(std::count(selector.begin(), selector.end(), ':')), Value::undefined());
    return object->invokeSelector(selector, given);
  }
  return std::nullopt;
}

std::vector<std::string> WebScriptNames(WebPlugIn& plugIn) {
  std::vector<std::string> names;
  WebPlugIn* object = plugIn.objectForWebScript();
  if (object == nullptr) return names;
  for (const std::string& selector : object->selectors())
    if (!object->isSelectorExcludedFromWebScript(selector)) names.push_back(scriptName(*object, selector));
  return names;
}

}  // namespace zelkon
