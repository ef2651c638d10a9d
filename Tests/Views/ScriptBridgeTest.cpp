// What page script can call, how options come in, and what is logged when it goes wrong.
#include <gtest/gtest.h>

#include <algorithm>

#include "Classes/Views/PiePlotView.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

std::vector<std::string> sortedNames(WebPlugIn& plugIn) {
  std::vector<std::string> names = WebScriptNames(plugIn);
  std::sort(names.begin(), names.end());
  return names;
}

TEST(ScriptBridge, TheBaseViewExportsTwoNames) {
  const auto view = std::make_shared<CALayerPlotView>(ValueDictionary{});
  EXPECT_EQ(sortedNames(*view), (std::vector<std::string>{"SetPlotData", "SetPlotOptions"}));
  EXPECT_EQ(view->webScriptNameForSelector("js_setPlotOptions:"), "SetPlotOptions");
  EXPECT_EQ(view->webScriptNameForSelector("js_setPlotData:"), "SetPlotData");
  EXPECT_EQ(view->webScriptNameForSelector("hover:entryAtIndex:"), std::nullopt);
}

TEST(ScriptBridge, ThePieExportsFourNamesAndNothingElse) {
  ViewHost host;
  EXPECT_EQ(host.view->objectForWebScript(), static_cast<WebPlugIn*>(host.view.get()));
  EXPECT_EQ(sortedNames(*host.view),
            (std::vector<std::string>{"HoverEntryAtIndex", "SetPlotData", "SetPlotOptions", "SliceColorAtIndex"}));
  EXPECT_EQ(host.view->webScriptNameForSelector("sliceColorAtIndex:sliceCount:components:"), "SliceColorAtIndex");
  EXPECT_EQ(host.view->webScriptNameForSelector("js_setPlotData:"), "SetPlotData");
}

TEST(ScriptBridge, OtherSelectorsAreExcludedThoughTheViewHasThem) {
  ViewHost host;
  const std::vector<std::string> selectors = host.view->selectors();
  for (const char* selector : {"doHide", "setPlotData:", "webPlugInStop", "mouseDown:", "_hoverEntry:", "pieRadius"}) {
    EXPECT_NE(std::find(selectors.begin(), selectors.end(), selector), selectors.end()) << selector;
    EXPECT_TRUE(host.view->isSelectorExcludedFromWebScript(selector)) << selector;
    EXPECT_EQ(host.view->webScriptNameForSelector(selector), std::nullopt) << selector;
  }
  EXPECT_TRUE(host.view->isSelectorExcludedFromWebScript("noSuchOperation"));
  EXPECT_FALSE(host.call("doHide", {}));
  EXPECT_FALSE(host.call("js_setPlotData_", {pageAmounts({1})}));
  EXPECT_EQ(host.view->plotData(), nullptr);
  EXPECT_THROW(host.view->invokeSelector("doHide", {}), NSException);
}

TEST(ScriptBridge, AnEmptyArrayStoresEmptyOptions) {
  ViewHost host;
  ASSERT_TRUE(host.call("SetPlotOptions", {pageArray({})}));
  ASSERT_NE(host.view->plotOptions(), nullptr);
  EXPECT_TRUE(host.view->plotOptions()->empty());
}

TEST(ScriptBridge, OfTwoOptionsWithOneKeyTheLaterWins) {
  ViewHost host;
  host.call("SetPlotOptions", {pageArray({pageEntry("a", 1), pageEntry("b", "x"), pageEntry("a", 2)})});
  EXPECT_EQ(*host.view->plotOptions(), (ValueDictionary{{"a", 2}, {"b", "x"}}));
}

TEST(ScriptBridge, OptionsWithoutKeyOrValueAreSkipped) {
  ViewHost host;
  host.call("SetPlotOptions", {pageArray({pageEntry("a", {}), ValueDictionary{{"key", "b"}}, pageEntry({}, 1),
                                          ValueDictionary{{"value", 1}}, Value(), pageEntry("c", false)})});
  EXPECT_EQ(*host.view->plotOptions(), (ValueDictionary{{"c", false}}));
  EXPECT_TRUE(host.log.empty());
}

TEST(ScriptBridge, OptionsAreReplacedAsAWholeAndEndAtTheFirstUndefined) {
  ViewHost host;
  host.call("SetPlotOptions", {pageArray({pageEntry("a", 1)})});
  host.call("SetPlotOptions", {pageArray({pageEntry("b", 2), Value::undefined(), pageEntry("c", 3)})});
  EXPECT_EQ(*host.view->plotOptions(), (ValueDictionary{{"b", 2}}));
}

TEST(ScriptBridge, AnExceptionIsLoggedInTwoLinesAndSwallowed) {
  ViewHost host;
  host.call("SetPlotOptions", {pageArray({pageEntry("a", 1)})});
  ASSERT_TRUE(host.call("SetPlotOptions", {pageArray({5})}));
  ASSERT_EQ(host.log.size(), 2u);
  EXPECT_EQ(host.log[0], "Exception thrown while processing javascript bridge at [PiePlotView js_setPlotOptions:].");
  EXPECT_NE(host.log[1].find("not key value coding-compliant for the key key"), std::string::npos) << host.log[1];
  EXPECT_EQ(*host.view->plotOptions(), (ValueDictionary{{"a", 1}})) << "what was stored before stays";
}

TEST(ScriptBridge, AMissingArgumentIsAnExceptionInsideTheGuard) {
  ViewHost host;
  EXPECT_TRUE(host.call("SetPlotOptions", {}));
  EXPECT_TRUE(host.call("SetPlotData", {}));
  ASSERT_EQ(host.log.size(), 4u);
  EXPECT_EQ(host.log[2], "Exception thrown while processing javascript bridge at [PiePlotView js_setPlotData:].");
  EXPECT_EQ(host.view->plotOptions(), nullptr);
  EXPECT_EQ(host.view->plotData(), nullptr);
}

class ThrowingElement : public WebScriptObject {
 public:
  Value webScriptValueAtIndex(size_t) override { throw std::runtime_error("not the platform's"); }
  Value valueForKey(std::string_view) override { return {}; }
  void setValue(const Value&, std::string_view) override {}
  Value callWebScriptMethod(std::string_view, const ValueArray&) override { return {}; }
};

TEST(ScriptBridge, ExceptionsOfAnotherKindPass) {
  ViewHost host;
  const Value array = std::make_shared<ThrowingElement>();
  EXPECT_THROW(host.view->js_setPlotOptions(array), std::runtime_error);
  EXPECT_THROW(host.view->js_setPlotData(array), std::runtime_error);
  EXPECT_TRUE(host.log.empty());
}

TEST(ScriptBridge, TheBaseViewAcceptsAndIgnoresData) {
  const auto view = std::make_shared<CALayerPlotView>(ValueDictionary{});
  view->js_setPlotData(pageAmounts({1, 2}));
  EXPECT_EQ(view->plotData(), nullptr);
}

}  // namespace
}  // namespace zelkon
