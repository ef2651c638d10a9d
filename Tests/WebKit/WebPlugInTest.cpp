#include <gtest/gtest.h>

#include "WebKit/MemoryScriptObject.h"
#include "WebKit/WebPlugIn.h"

namespace zelkon {
namespace {

TEST(WebWindowObject, IsFoundThroughContainerAndFrame) {
  const auto window = std::make_shared<MemoryScriptObject>();
  const auto frame = std::make_shared<WebFrame>(window);
  ValueDictionary arguments{{WebPlugInContainerKey, std::make_shared<WebPlugInContainer>(frame)}};
  EXPECT_EQ(WebWindowObject(arguments), window);
}

TEST(WebWindowObject, IsNullWhenAnyStepIsMissing) {
  const auto behind = [](Value container) {
    return WebWindowObject(ValueDictionary{{WebPlugInContainerKey, std::move(container)}});
  };
  EXPECT_EQ(WebWindowObject(Value()), nullptr);
  EXPECT_EQ(WebWindowObject("text"), nullptr);
  EXPECT_EQ(WebWindowObject(ValueDictionary()), nullptr);
  EXPECT_EQ(behind(Value()), nullptr);
  EXPECT_EQ(behind("text"), nullptr);
  EXPECT_EQ(behind(std::make_shared<WebFrame>(nullptr)), nullptr);
  EXPECT_EQ(behind(std::make_shared<WebPlugInContainer>(nullptr)), nullptr);
  EXPECT_EQ(behind(std::make_shared<WebPlugInContainer>(std::make_shared<WebFrame>(nullptr))), nullptr);
}

class ScriptedPlugIn : public WebPlugIn {
 public:
  void webPlugInStart() override {}
  void webPlugInStop() override {}
  void webPlugInDestroy() override {}
  WebPlugIn* objectForWebScript() override { return scriptable ? this : nullptr; }
  std::vector<std::string> selectors() const override {
    return {"secret", "js_setData:", "js_move:to:", "plain_call:", "js_count"};
  }
  std::optional<std::string> webScriptNameForSelector(const std::string& selector) const override {
    if (selector == "js_setData:") return "SetData";
    if (selector == "js_move:to:") return "Move";
    if (selector == "js_count") return "Count";
    return std::nullopt;
  }
  bool isSelectorExcludedFromWebScript(const std::string& selector) const override { return selector == "secret"; }
  Value invokeSelector(const std::string& selector, const ValueArray& arguments) override {
    called = selector;
    given = arguments;
    return 7.0;
  }

  bool scriptable = true;
  std::string called;
  ValueArray given;
};

TEST(WebScriptInvoke, CallsByTheExportedName) {
  ScriptedPlugIn plugIn;
  EXPECT_EQ(WebScriptInvoke(plugIn, "SetData", {Value("x")}), Value(7.0));
  EXPECT_EQ(plugIn.called, "js_setData:");
  EXPECT_EQ(plugIn.given, (ValueArray{Value("x")}));
}

TEST(WebScriptInvoke, MissingArgumentsAreUndefinedAndSuperfluousOnesDropped) {
  ScriptedPlugIn plugIn;
  WebScriptInvoke(plugIn, "Move", {Value(1.0)});
  ASSERT_EQ(plugIn.given.size(), 2u);
  EXPECT_EQ(plugIn.given[0], Value(1.0));
  EXPECT_TRUE(plugIn.given[1].isUndefined());
  WebScriptInvoke(plugIn, "Count", {Value(1.0), Value(2.0)});
  EXPECT_TRUE(plugIn.given.empty());
}

TEST(WebScriptInvoke, CallsNothingForUnknownAndExcludedNames) {
  ScriptedPlugIn plugIn;
  for (const char* name : {"secret", "nothing", "", "js_setData:", "js$_setData_", "setdata"})
    EXPECT_FALSE(WebScriptInvoke(plugIn, name, {})) << name;
  EXPECT_EQ(plugIn.called, "");
  plugIn.scriptable = false;
  EXPECT_FALSE(WebScriptInvoke(plugIn, "SetData", {}));
}

TEST(WebScriptInvoke, SelectorsWithoutANameAreCalledByTheMangledOne) {
  ScriptedPlugIn plugIn;
  EXPECT_TRUE(WebScriptInvoke(plugIn, "plain$_call_", {}));
  EXPECT_EQ(plugIn.called, "plain_call:");
}

TEST(WebScriptNames, ListsWhatScriptMayCall) {
  ScriptedPlugIn plugIn;
  EXPECT_EQ(WebScriptNames(plugIn), (std::vector<std::string>{"SetData", "Move", "plain$_call_", "Count"}));
}

}  // namespace
}  // namespace zelkon
