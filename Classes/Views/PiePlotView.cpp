#include "Classes/Views/PiePlotView.h"

#include <algorithm>
#include <cmath>

#include "Classes/Views/ScriptElement.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSNotificationCenter.h"
#include "Foundation/NSRunLoop.h"

namespace zelkon {

namespace {

// Amounts are added as numbers; nothing else but a missing amount can be.
double amountOf(const Value& value) {
  if (value.isNull() || value.isNumber() || value.isBoolean()) return value.doubleValue();
  value.raiseUnrecognized("decimalValue");
}

// What a page's value becomes as a number parameter of a script call: JavaScript's own conversion.
double scriptNumber(const Value& value) {
  return value.isNull() || value.isNumber() || value.isBoolean() || value.isString() ? value.doubleValue() : 0;
}

}  // namespace

PiePlotView::PiePlotView(Value arguments) : CALayerPlotView(std::move(arguments)) {}

PiePlotView::~PiePlotView() {
  NSRunLoop::mainRunLoop().cancelPreviousPerformRequests(this);
  NSNotificationCenter::defaultCenter().removeObserver(this);
}

std::shared_ptr<const PiePlotData> PiePlotView::piePlotData() const {
  return std::static_pointer_cast<const PiePlotData>(plotData());
}

void PiePlotView::setPlotData(std::shared_ptr<const PlotData> data) {
  if (data == plotData()) return;
  const auto given = std::dynamic_pointer_cast<const PiePlotData>(data);
  CALayerPlotView::setPlotData(nullptr);
  if (!given) return;
  double sum = 0;
  for (const PiePlotEntryRef& entry : given->entries()) sum += amountOf(entry->value);
  std::vector<PiePlotEntryRef> entries;
  entries.reserve(given->count());
  for (const PiePlotEntryRef& entry : given->entries()) {
    auto copy = std::make_shared<PiePlotEntry>(*entry);
    copy->fraction = sum == 0 ? 1.0 / static_cast<double>(given->count()) : amountOf(entry->value) / sum;
    entries.push_back(std::move(copy));
  }
  CALayerPlotView::setPlotData(std::make_shared<const PiePlotData>(std::move(entries)));
}

double PiePlotView::pieRadius() const {
  const CGSize size = bounds().size;
  return std::min(size.width, size.height - 17) * 0.5 - 10;
}

NSColor PiePlotView::_sliceColorAtIndex(int64_t index, int64_t sliceCount) const {
  double step = 0;
  if (sliceCount == 2) step = 0.66f;
  if (sliceCount == 3) step = 0.33f;
  if (sliceCount == 4) step = 0.2f;
  if (sliceCount >= 5) step = 1.0 / static_cast<double>(sliceCount);
  const double hue = std::fmod(static_cast<double>(index) * step + 0.66f, 1.0);
  return NSColor::colorWithCalibratedHue(hue, 0.75, 0.82f, 1);
}

NSColor PiePlotView::_emptyPieColor() const { return NSColor::colorWithCalibratedWhite(0.55, 1); }

std::vector<std::string> PiePlotView::selectors() const {
  std::vector<std::string> all = CALayerPlotView::selectors();
  for (const char* selector : {"hover:entryAtIndex:",
                               "sliceColorAtIndex:sliceCount:components:",
                               "pieRadius",
                               "plotLayer",
                               "textLabelsLayer",
                               "plotHighlightLayer",
                               "slicesLayer",
                               "dropShadowLayer",
                               "mouseDown:",
                               "mouseEntered:",
                               "mouseMoved:",
                               "mouseExited:",
                               "viewDidMoveToSuperview",
                               "enclosingContentViewBoundsOrFrameDidChange:",
                               "webPlugInDestroy",
                               "_sliceColorAtIndex:sliceCount:",
                               "_emptyPieColor",
                               "_entryForPoint:",
                               "_hoverEntry:",
                               "_clearHoverStatesExceptingEntry:",
                               "_layoutSublayersOfSlicesLayer",
                               "_layoutSublayersOfHighlightLayer",
                               "_layoutSublayersOfDropShadowLayer",
                               "_textLayerWithLabel:"})
    all.push_back(selector);
  return all;
}

std::optional<std::string> PiePlotView::webScriptNameForSelector(const std::string& selector) const {
  if (selector == "hover:entryAtIndex:") return "HoverEntryAtIndex";
  if (selector == "sliceColorAtIndex:sliceCount:components:") return "SliceColorAtIndex";
  return CALayerPlotView::webScriptNameForSelector(selector);
}

bool PiePlotView::isSelectorExcludedFromWebScript(const std::string& selector) const {
  if (selector == "hover:entryAtIndex:" || selector == "sliceColorAtIndex:sliceCount:components:") return false;
  return CALayerPlotView::isSelectorExcludedFromWebScript(selector);
}

Value PiePlotView::invokeSelector(const std::string& selector, const ValueArray& values) {
  const std::shared_ptr<NSView> self = shared_from_this();
  if (selector == "hover:entryAtIndex:")
    guardedScriptCall(selector, [&] {
      hover(scriptNumber(argumentAtIndex(values, 0)) != 0,
            Value(scriptNumber(argumentAtIndex(values, 1))).integerValue());
    });
  else if (selector == "sliceColorAtIndex:sliceCount:components:")
    guardedScriptCall(selector, [&] {
      sliceColorAtIndex(argumentAtIndex(values, 0), argumentAtIndex(values, 1), argumentAtIndex(values, 2));
    });
  else
    return CALayerPlotView::invokeSelector(selector, values);
  return {};
}

void PiePlotView::js_setPlotData(const Value& data) {
  guardedScriptCall("js_setPlotData:", [&] {
    CALayerPlotView::js_setPlotData(data);
    std::vector<PiePlotEntryRef> entries;
    for (size_t i = 0;; ++i) {
      const Value element = ScriptElementAtIndex(data, i);
      if (element.isUndefined() || element.isNull()) break;
      PiePlotEntry entry;
      entry.key = ScriptElementValueForKey(element, "key");
      entry.value = ScriptElementValueForKey(element, "value");
      if (!entry.key.isNull() && !entry.value.isNull())
        entries.push_back(std::make_shared<PiePlotEntry>(std::move(entry)));
    }
    setPlotData(std::make_shared<const PiePlotData>(std::move(entries)));
    _layoutSublayersOfSlicesLayer();
  });
}

void PiePlotView::sliceColorAtIndex(const Value& index, const Value& sliceCount, const Value& components) {
  const NSColor color = _sliceColorAtIndex(index.integerValue(), sliceCount.integerValue());
  const NSColor::RGBAComponents rgba = color.getRedGreenBlueAlpha();
  if (components.isNull()) return;
  const WebScriptObjectRef object = WebScriptObjectOf(components);
  if (!object) components.raiseUnrecognized("setValue:forKey:");
  object->setValue(rgba.red, "red");
  object->setValue(rgba.green, "green");
  object->setValue(rgba.blue, "blue");
  object->setValue(rgba.alpha, "alpha");
}

void PiePlotView::hover(bool hover, int64_t index) {
  const std::shared_ptr<const PiePlotData> data = piePlotData();
  PiePlotEntryRef entry;
  if (hover && data && index >= 0 && static_cast<uint64_t>(index) < data->count())
    entry = data->entries()[static_cast<size_t>(index)];
  if (entry) _hoverEntry(entry);
  _clearHoverStatesExceptingEntry(entry);
}

}  // namespace zelkon
