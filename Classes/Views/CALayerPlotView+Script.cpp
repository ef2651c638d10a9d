#include "Classes/Views/CALayerPlotView.h"
#include "Classes/Views/ScriptElement.h"
#include "Foundation/NSLog.h"

namespace zelkon {

std::vector<std::string> CALayerPlotView::selectors() const {
  return {"initWithArguments:",
          "setFrame:",
          "drawRect:",
          "createLayerHierarchy",
          "layerPointForWindowPoint:",
          "destroyLayerHierarchy:",
          "doDisplay",
          "doHide",
          "renderForPrintingInContext:",
          "registerStartupAnimationKey:",
          "numberOfPendingAnimations",
          "startupAnimationsDidCompleteJSFunction",
          "objectForWebScript",
          "js_setPlotOptions:",
          "js_setPlotData:",
          "animationDidStop:finished:",
          "webPlugInStart",
          "webPlugInStop",
          "arguments",
          "setArguments:",
          "plotOptions",
          "setPlotOptions:",
          "plotData",
          "setPlotData:"};
}

std::optional<std::string> CALayerPlotView::webScriptNameForSelector(const std::string& selector) const {
  if (selector == "js_setPlotOptions:") return "SetPlotOptions";
  if (selector == "js_setPlotData:") return "SetPlotData";
  return std::nullopt;
}

bool CALayerPlotView::isSelectorExcludedFromWebScript(const std::string& selector) const {
  return selector != "js_setPlotOptions:" && selector != "js_setPlotData:";
}

Value CALayerPlotView::invokeSelector(const std::string& selector, const ValueArray& values) {
  const std::shared_ptr<NSView> self = shared_from_this();
  if (selector == "js_setPlotOptions:")
    js_setPlotOptions(argumentAtIndex(values, 0));
  else if (selector == "js_setPlotData:")
    js_setPlotData(argumentAtIndex(values, 0));
  else
    NSRaise(NSInvalidArgumentException,
            "-[" + className() + " " + selector + "]: unrecognized selector sent to instance");
  return {};
}

Value CALayerPlotView::argumentAtIndex(const ValueArray& values, size_t index) {
  return index < values.size() ? values[index] : Value::undefined();
}

void CALayerPlotView::js_setPlotOptions(const Value& options) {
  guardedScriptCall("js_setPlotOptions:", [&] {
    ValueDictionary dictionary;
    if (!options.isNull()) {
      for (size_t i = 0;; ++i) {
        const Value element = ScriptElementAtIndex(options, i);
        if (element.isUndefined()) break;
        const Value key = ScriptElementValueForKey(element, "key");
        Value value = ScriptElementValueForKey(element, "value");
        if (!key.isNull() && !value.isNull()) dictionary[key.description()] = std::move(value);
      }
    }
    setPlotOptions(std::make_shared<const ValueDictionary>(std::move(dictionary)));
  });
}

void CALayerPlotView::js_setPlotData(const Value&) {
  guardedScriptCall("js_setPlotData:", [] {});
}

void CALayerPlotView::logScriptException(std::string_view selector, const NSException& exception) const {
  NSLog("Exception thrown while processing javascript bridge at [" + className() + " " + std::string(selector) + "].");
  NSLog(exception.description());
}

}  // namespace zelkon
