#include <gtest/gtest.h>

#include "Hosts/Headless/Scenario.h"

namespace zelkon {
namespace {

std::string errorOf(const std::string& text) {
  try {
    Scenario::parse(text, "pie.json");
  } catch (const ScenarioError& error) {
    return error.what();
  }
  return "no error";
}

TEST(Scenario, HasDefaultsForSizeScaleAndLocale) {
  const Scenario scenario = Scenario::parse(R"({"plot": "pie", "data": []})", "pie.json");
  EXPECT_EQ(scenario.plot, "pie");
  EXPECT_EQ(scenario.size, (CGSize{600, 400}));
  EXPECT_EQ(scenario.scale, 1);
  EXPECT_EQ(scenario.locale, "en_US");
  EXPECT_FALSE(scenario.steps.has_value());
}

TEST(Scenario, ValuesNestedWithoutEndAreRefused) {
  const auto nested = [](size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); };
  const auto data = [&](size_t depth) { return R"({"plot": "pie", "data": )" + nested(depth) + "}"; };
  EXPECT_EQ(errorOf(data(60)), "no error");
  EXPECT_EQ(errorOf(data(66)), "pie.json: /data: values nested more than 64 deep");
  EXPECT_EQ(errorOf(data(1000000)), "pie.json: /data: values nested more than 64 deep");
  EXPECT_EQ(errorOf(R"({"plot": "pie", "data": [], "options": )" + nested(100000) + "}"),
            "pie.json: /options: values nested more than 64 deep");
  EXPECT_EQ(errorOf(R"({"plot": "pie", "steps": [{"call": "SetPlotData", "arguments": )" + nested(100000) + "}]}"),
            "pie.json: /steps/0/arguments: values nested more than 64 deep");
}

TEST(Scenario, ReadsEveryKindOfStepInOrder) {
  const Scenario scenario = Scenario::parse(R"({"plot": "pie", "steps": [
    {"call": "SetPlotData", "arguments": [[{"key": "Rent", "value": 1200}]]},
    {"wait": 0.5}, {"mouse": "moved", "at": [300, 180]}, {"snapshot": "a.png"}, {"layers": "a.json"},
    {"print": "a.pdf"}, {"frame": [400, 300]}, {"resize": [200, 100]}, {"scroll": [0, 120]}, {"mouse": "exited"},
    {"lifecycle": "stop"}, {"lifecycle": "destroy"}]})",
                                            "pie.json");
  ASSERT_EQ(scenario.steps->size(), 12u);
  const auto& call = std::get<CallStep>((*scenario.steps)[0]);
  EXPECT_EQ(call.name, "SetPlotData");
  EXPECT_EQ(call.arguments[0].array()[0].valueForKey("value").doubleValue(), 1200);
  EXPECT_EQ(std::get<WaitStep>((*scenario.steps)[1]).seconds, 0.5);
  EXPECT_EQ(std::get<MouseStep>((*scenario.steps)[2]).at, (CGPoint{300, 180}));
  EXPECT_EQ(std::get<FrameStep>((*scenario.steps)[6]).size, (CGSize{400, 300}));
  EXPECT_EQ(std::get<ScrollStep>((*scenario.steps)[8]).offset, (CGPoint{0, 120}));
  EXPECT_EQ(std::get<MouseStep>((*scenario.steps)[9]).kind, MouseStep::Kind::exited);
  EXPECT_EQ(std::get<LifecycleStep>((*scenario.steps)[11]).kind, LifecycleStep::Kind::destroy);
}

TEST(Scenario, MalformedJSONIsReportedWithLineAndColumn) {
  EXPECT_EQ(errorOf("{\n  \"plot\": pie\n}"), "pie.json: line 2, column 11: this is not JSON");
}

TEST(Scenario, MissingKeysAreNamed) {
  EXPECT_EQ(errorOf(R"({"data": []})"), "pie.json: /: \"plot\" is missing");
  EXPECT_EQ(errorOf(R"({"plot": "pie"})"), "pie.json: /: \"data\" is missing");
  EXPECT_EQ(errorOf(R"({"plot": "pie", "steps": [{"mouse": "moved"}]})"), "pie.json: /steps/0: \"at\" is missing");
}

TEST(Scenario, WrongTypesAreReportedWithTheirPlace) {
  EXPECT_EQ(errorOf("[]"), "pie.json: /: an object is expected");
  EXPECT_EQ(errorOf(R"({"plot": 3})"), "pie.json: /plot: a string is expected");
  EXPECT_EQ(errorOf(R"({"plot": "pie", "size": [600, -1], "data": []})"),
            "pie.json: /size: width and height from 0 to 32000 are expected");
  EXPECT_EQ(errorOf(R"({"plot": "pie", "scale": 0, "data": []})"),
            "pie.json: /scale: a scale above 0 and up to 16 is expected");
  EXPECT_EQ(errorOf(R"({"plot": "pie", "data": {}})"), "pie.json: /data: an array is expected");
  EXPECT_EQ(errorOf(R"({"plot": "pie", "steps": [{"wait": -1}]})"),
            "pie.json: /steps/0/wait: seconds from 0 to 3600 are expected");
  EXPECT_EQ(errorOf(R"({"plot": "pie", "steps": [{"jump": 1}]})").substr(0, 34), "pie.json: /steps/0: no known step ");
}

}  // namespace
}  // namespace zelkon
