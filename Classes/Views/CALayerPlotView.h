// The base of the chart views: keeps the host's arguments, the plot options and the plot data, rebuilds its layer tree
// on every frame change, maps window points to layer points, prints, hides itself on stop, and carries the script
// bridge with the bookkeeping that tells the page, once, that the opening animations have finished.
//
// Main thread only. A page function that the view calls may call back, replace data, or take the view out of its
// window; the view keeps itself alive meanwhile and walks nothing that such a call can change.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "AppKit/NSView.h"
#include "Classes/Views/PlotData.h"
#include "Classes/Views/ReachableEntry.h"
#include "Foundation/NSException.h"
#include "QuartzCore/CAAnimation.h"
#include "WebKit/WebPlugIn.h"

namespace zelkon {

class CGContext;

class CALayerPlotView : public NSView, public WebPlugIn, public CAAnimationDelegate {
 public:
  // Zero frame, no layer, no options, no data. Views are always held by a shared pointer.
  explicit CALayerPlotView(Value arguments);
  std::string className() const override { return "CALayerPlotView"; }

  // Applies the frame and then builds the layer tree anew, on every call.
  void setFrame(CGRect frame) override;
  // Renders into a context that is not the screen; on screen the layers draw themselves.
  void drawRect(CGRect dirty) override;

  // Builds, or lays out again, the layer tree for the present bounds. Called many times.
  virtual void createLayerHierarchy() {}
  // Removes every direct sublayer; the layer itself stays where it is.
  void destroyLayerHierarchy(const CALayerRef& layer);
  // Takes a point in window coordinates to the space that hit testing works in: view coordinates through the upper left
  // 2 by 2 block of the root layer's transform, (m11 x + m12 y, m21 x + m22 y). (0, 0) without a layer.
  CGPoint layerPointForWindowPoint(CGPoint windowPoint) const;
  // Starts a new set of pending opening animations.
  virtual void doDisplay();
  // Cancels delayed work, detaches and hides the layer, hides the view. Without a layer the view stays visible.
  virtual void doHide();
  // Draws the chart flat, for paper, in points from the view's lower left corner.
  virtual void renderForPrintingInContext(CGContext& context);

  // Opening animations. A key is dropped when no display has begun since the last completion.
  void registerStartupAnimationKey(const std::string& key);
  size_t numberOfPendingAnimations() const;
  // The page function to call when the last opening animation has stopped; empty for none.
  virtual std::string startupAnimationsDidCompleteJSFunction() const { return {}; }
  // Strikes the animation's key off, unless the animation is tagged as an earlier display's: the same keys may be
  // pending again. Cut-short animations count as done, so that the page hears of the end in every case.
  void animationDidStop(const CABasicAnimation& animation, bool finished) override;

  // Script bridge.
  WebPlugIn* objectForWebScript() override { return this; }
  std::vector<std::string> selectors() const override;
  std::optional<std::string> webScriptNameForSelector(const std::string& selector) const override;
  bool isSelectorExcludedFromWebScript(const std::string& selector) const override;
  // Raises NSInvalidArgumentException for a selector that script cannot call.
  Value invokeSelector(const std::string& selector, const ValueArray& arguments) override;
  // Takes a page array of objects with "key" and "value"; elements without either are skipped. Exceptions are logged.
  void js_setPlotOptions(const Value& options);
  // Accepts and ignores the data.
  virtual void js_setPlotData(const Value& data);

  void webPlugInStart() override {}
  void webPlugInStop() override { doHide(); }
  void webPlugInDestroy() override {}

  const Value& arguments() const { return arguments_; }
  void setArguments(Value arguments) { arguments_ = std::move(arguments); }
  // Null until the page has set options.
  const std::shared_ptr<const ValueDictionary>& plotOptions() const { return plotOptions_; }
  void setPlotOptions(std::shared_ptr<const ValueDictionary> options) { plotOptions_ = std::move(options); }
  // Null until data has been accepted.
  const std::shared_ptr<const PlotData>& plotData() const { return plotData_; }
  virtual void setPlotData(std::shared_ptr<const PlotData> data) { plotData_ = std::move(data); }

  // What a host needs to know of any chart.
  // Whether the chart is on show: its opening has begun, however far it has come.
  virtual bool isDisplayed() const { return false; }
  // Whether the chart stays as it is when the page hands over other options or data.
  virtual bool keepsFirstData() const { return false; }
  // The smallest size, in points, in which every chart of this kind has room for its parts.
  virtual CGSize minimumLayoutSize() const { return {}; }
  // What shows only for as long as the pointer stays, and belongs on no paper; null for none.
  virtual CALayerRef transientLayer() const { return nullptr; }
  // One for each entry that is shown or too small to show, in the order of the data.
  virtual std::vector<ReachableEntry> reachableEntries() const { return {}; }
  // The periods that the chart is made of, those included that are too many to be drawn; none for a chart without a
  // time axis. `index` is below the count; the point stays empty.
  virtual size_t numberOfPeriods() const { return 0; }
  virtual ReachableEntry periodAtIndex(size_t index) const;
  // What the plotter works with, by name, for looking inside a chart; nothing without one.
  using NamedValues = std::vector<std::pair<std::string, Value>>;
  virtual NamedValues plotterProperties() const { return {}; }

 protected:
  // Runs the body of a script-called operation. An NSException is logged and ends here; whatever the body stored before
  // stays stored. Other exceptions pass.
  template <typename Body>
  void guardedScriptCall(std::string_view selector, Body body) {
    try {
      body();
    } catch (const NSException& exception) {
      logScriptException(selector, exception);
    }
  }
  // Calls a function of the page's window; without a page nothing happens. The page may do anything meanwhile.
  void callPage(std::string_view function, const ValueArray& values);
  // Asks for `action` to run on the next turn; dropped when the view is hidden or gone by then.
  void performOnNextTurn(void (CALayerPlotView::*action)());
  // Tags an animation as one of the present display's, which reports to this view under the key.
  void tagStartupAnimation(CABasicAnimation& animation, const std::string& key);
  // The argument at the index; undefined when the page passed fewer.
  static Value argumentAtIndex(const ValueArray& values, size_t index);

 private:
  void logScriptException(std::string_view selector, const NSException& exception) const;

  Value arguments_;
  std::shared_ptr<const ValueDictionary> plotOptions_;
  std::shared_ptr<const PlotData> plotData_;
  std::optional<std::set<std::string>> pendingStartupAnimationKeys_;  // none when no startup is in progress
  int64_t displays_ = 0;                                              // how many have begun
};

}  // namespace zelkon
