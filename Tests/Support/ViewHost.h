// Drives a plot view as a host does and plays the page: factory, window, frame, start, script calls, mouse, turns.
#pragma once

#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "AppKit/NSBundle.h"
#include "AppKit/NSScrollView.h"
#include "AppKit/NSWindow.h"
#include "Classes/Views/PlotView.h"
#include "Foundation/NSLog.h"
#include "Foundation/NSRunLoop.h"
#include "Hosts/Common/Turn.h"
#include "QuartzCore/CATransaction.h"
#include "Support/PlainDevice.h"
#include "WebKit/MemoryScriptObject.h"

namespace zelkon {

struct PageCall {
  std::string function;
  ValueArray values;
  friend bool operator==(const PageCall& a, const PageCall& b) {
    return a.function == b.function && a.values == b.values;
  }
};

// The page's window object: remembers the calls it gets, and does what a test wants done meanwhile.
class RecordingPage : public WebScriptObject {
 public:
  std::vector<PageCall> calls;
  std::function<void()> onCall;
  Value webScriptValueAtIndex(size_t) override { return Value::undefined(); }
  Value valueForKey(std::string_view) override { return {}; }
  void setValue(const Value&, std::string_view) override {}
  Value callWebScriptMethod(std::string_view name, const ValueArray& values) override {
    calls.push_back({std::string(name), values});
    if (onCall) onCall();
    return {};
  }
};

class ViewHost {
 public:
  PlainDevice device;
  std::vector<std::string> log;
  std::shared_ptr<RecordingPage> page = std::make_shared<RecordingPage>();
  std::unique_ptr<NSWindow> window;
  std::shared_ptr<CALayerPlotView> view;

  explicit ViewHost(const std::string& plot = "pie", CGSize size = {300, 200}) {
    earlierSink_ = NSSetLogSink([this](std::string_view line) { log.emplace_back(line); });
    NSBundle::mainBundle().setLoader(resource);
    window = std::make_unique<NSWindow>(CGSizeMake(1000, 1000));
    view = PlotView::plugInViewWithArguments(argumentsFor(plot));
    window->contentView()->addSubview(view);
    if (size.width > 0) setFrame(CGRectMake(0, 0, size.width, size.height));
  }
  ~ViewHost() {
    NSRunLoop::mainRunLoop().cancelPreviousPerformRequests(view.get());
    view->webPlugInDestroy();
    view = nullptr;
    window = nullptr;
    CATransaction::flush();
    CATransaction::deliverEndedAnimations();
    NSSetLogSink(earlierSink_);
  }
  ViewHost(const ViewHost&) = delete;
  ViewHost& operator=(const ViewHost&) = delete;

  Value argumentsFor(const std::string& plot) const {
    const auto frame = std::make_shared<WebFrame>(page);
    return ValueDictionary{{WebPlugInAttributesKey, ValueDictionary{{"plot", plot}}},
                           {WebPlugInContainerKey, std::make_shared<WebPlugInContainer>(frame)}};
  }
  void setFrame(CGRect frame) {
    view->setFrame(frame);
    CATransaction::flush();
  }
  // A call of page script; false when script knows no such name.
  bool call(const std::string& name, const ValueArray& values) {
    const bool known = WebScriptInvoke(*view, name, values).has_value();
    CATransaction::flush();
    return known;
  }
  void move(double x, double y) {
    view->mouseMoved({NSEvent::Type::mouseMoved, {x, y}});
    CATransaction::flush();
  }
  void click(double x, double y) { view->mouseDown({NSEvent::Type::mouseDown, {x, y}}); }
  void exit() {
    view->mouseExited({NSEvent::Type::mouseExited, {}});
    CATransaction::flush();
  }
  // Lets `seconds` pass in one turn.
  void turn(double seconds = 0) {
    beginTurn({}, CACurrentMediaTime() + seconds, false);
    endTurn({});
  }
  // Starts the plug-in and lets its opening animations run out.
  void display() {
    view->webPlugInStart();
    turn();
    turn(0.5);
  }

  static std::optional<std::vector<uint8_t>> resource(const std::string& name) {
    std::ifstream file("Resources/" + name, std::ios::binary);
    if (!file) return std::nullopt;
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(file), {});
  }

 private:
  LogSink earlierSink_;
};

// A page array as script hands it over.
inline Value pageArray(ValueArray elements) { return std::make_shared<MemoryScriptObject>(Value(std::move(elements))); }
inline Value pageEntry(Value key, Value value) {
  return ValueDictionary{{"key", std::move(key)}, {"value", std::move(value)}};
}
// One entry for each amount, named A, B, C ...
inline Value pageAmounts(const std::vector<double>& amounts) {
  ValueArray elements;
  for (const double amount : amounts)
    elements.push_back(pageEntry(std::string(1, static_cast<char>('A' + elements.size())), amount));
  return pageArray(std::move(elements));
}

}  // namespace zelkon
