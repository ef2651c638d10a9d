// What the web engine and a plug-in agree on: the container a plug-in reaches its page through, its lifecycle, and
// which of its operations page script may call.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "WebKit/WebScriptObject.h"

namespace zelkon {

inline constexpr const char* WebPlugInAttributesKey = "WebPlugInAttributesKey";
inline constexpr const char* WebPlugInContainerKey = "WebPlugInContainerKey";

// A frame of the page; gives its window object.
class WebFrame : public Object {
 public:
  explicit WebFrame(WebScriptObjectRef window) : window_(std::move(window)) {}
  std::string className() const override { return "WebFrame"; }
  const WebScriptObjectRef& windowObject() const { return window_; }

 private:
  WebScriptObjectRef window_;
};

// Held by the argument dictionary under WebPlugInContainerKey.
class WebPlugInContainer : public Object {
 public:
  explicit WebPlugInContainer(std::shared_ptr<WebFrame> frame) : frame_(std::move(frame)) {}
  std::string className() const override { return "WebPlugInContainer"; }
  const std::shared_ptr<WebFrame>& webFrame() const { return frame_; }

 private:
  std::shared_ptr<WebFrame> frame_;
};

// The window object of the page behind an argument dictionary; null when any step is missing.
WebScriptObjectRef WebWindowObject(const Value& arguments);

class WebPlugIn {
 public:
  virtual ~WebPlugIn() = default;
  virtual void webPlugInStart() = 0;
  virtual void webPlugInStop() = 0;
  virtual void webPlugInDestroy() = 0;
  // The object whose operations page script sees.
  virtual WebPlugIn* objectForWebScript() = 0;

  // Every selector of the scripting object that could be asked for, exported or not.
  virtual std::vector<std::string> selectors() const = 0;
  // Name under which script sees the selector; nothing for none of its own: script then sees "_" for each ":" and "$_"
  // for each "_".
  virtual std::optional<std::string> webScriptNameForSelector(const std::string& selector) const = 0;
  virtual bool isSelectorExcludedFromWebScript(const std::string& selector) const = 0;
  // Carries the operation out with as many arguments as the selector has colons; missing ones arrive as undefined.
  virtual Value invokeSelector(const std::string& selector, const ValueArray& arguments) = 0;
};

// Calls the operation that page script knows by `name`; nothing (and no call) when there is none or it is excluded.
std::optional<Value> WebScriptInvoke(WebPlugIn& plugIn, const std::string& name, const ValueArray& arguments);
// The names that page script can call.
std::vector<std::string> WebScriptNames(WebPlugIn& plugIn);

}  // namespace zelkon
