#include "Hosts/Headless/Scenario.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "Backends/Cairo/IcuLocaleServices.h"
#include "Hosts/Headless/JsonReader.h"
#include "Hosts/Headless/NearestName.h"
#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/PictureFormat.h"
#include "Hosts/Headless/PrintableText.h"

namespace zelkon {
namespace {

using Names = std::vector<std::string_view>;

constexpr double kLargestSide = 32000;
constexpr double kLargestScale = 16;
// No chart looks deeper than an entry's properties.
constexpr size_t kDeepestValue = 64;

const Names kKeys = {"plot", "size", "scale", "locale", "options", "data", "steps"};
const Names kKinds = {"call", "wait", "mouse", "snapshot", "layers", "print", "frame", "resize", "scroll", "lifecycle"};
// What a page can call of a chart.
const Names kMethods = {"SetPlotOptions", "SetPlotData", "HoverEntryAtIndex", "SliceColorAtIndex"};

bool contains(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// A number as a message shows it.
std::string numberText(double number) {
  std::string text = std::to_string(number);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

// Where in the file we are, for error texts: a JSON pointer.
struct Place {
  const std::string& file;
  std::string pointer;
  Place at(std::string_view key) const { return {file, jsonPointer(pointer, key)}; }
  Place at(size_t index) const { return at(std::to_string(index)); }
  [[noreturn]] void fail(const std::string& problem) const {
    throw ScenarioError(printableName(file) + ": " + (pointer.empty() ? "/" : pointer) + ": " + problem);
  }
  void failForUnknown(std::string_view key, const Names& known) const {
    fail("there is no key " + quotedText(key) + " here" + didYouMean(key, known));
  }
};

const ValueDictionary& object(const Value& node, const Place& place) {
  if (!node.isDictionary()) place.fail("an object is expected");
  return node.dictionary();
}

const ValueArray& array(const Value& node, const Place& place) {
  if (!node.isArray()) place.fail("an array is expected");
  return node.array();
}

const std::string& text(const Value& node, const Place& place) {
  if (!node.isString()) place.fail("a string is expected");
  return node.string();
}

double number(const Value& node, const Place& place) {
  if (!node.isNumber() || !std::isfinite(node.doubleValue())) place.fail("a number is expected");
  return node.doubleValue();
}

CGPoint pair(const Value& node, const Place& place) {
  if (!node.isArray() || node.array().size() != 2) place.fail("two numbers are expected");
  return {number(node.array()[0], place.at(size_t{0})), number(node.array()[1], place.at(size_t{1}))};
}

CGSize size(const Value& node, const Place& place) {
  const CGPoint p = pair(node, place);
  if (p.x < 0 || p.y < 0 || p.x > kLargestSide || p.y > kLargestSide)
    place.fail("width and height from 0 to 32000 are expected");
  return {p.x, p.y};
}

// The name of a file that a step writes.
std::string fileName(const Value& node, const Place& place) {
  const std::string& name = text(node, place);
  if (!isNameBelowFolder(name)) place.fail("a name below the output folder is expected, not " + quotedText(name));
  return name;
}

// One step of a scenario, which does one thing.
class StepReader {
 public:
  StepReader(const Value& node, const Place& place) : step_(object(node, place)), place_(place) {}

  ScenarioStep read(double& waiting, const ScenarioLimits& limits) {
    const std::string kind = kindOf();
    for (const auto& [key, value] : step_)
      if (key != kind && !(kind == "call" && key == "arguments") && !(kind == "mouse" && key == "at"))
        place_.failForUnknown(key, {kind == "call" ? "arguments" : kind == "mouse" ? "at" : kind});
    const Value& value = step_.find(kind)->second;
    const Place place = place_.at(kind);
    if (kind == "call") return call(value, place);
    if (kind == "wait") return wait(value, place, waiting, limits);
    if (kind == "mouse") return mouse(value, place);
    if (kind == "snapshot") return SnapshotStep{fileName(value, place)};
    if (kind == "layers") return LayersStep{fileName(value, place)};
    if (kind == "print") return print(value, place);
    if (kind == "frame") return FrameStep{size(value, place)};
    if (kind == "resize") return ResizeStep{size(value, place)};
    if (kind == "scroll") return ScrollStep{pair(value, place)};
    return lifecycle(value, place);
  }

 private:
  std::string kindOf() const {
    std::string kind;
    for (const std::string_view each : kKinds) {
      if (!step_.count(each)) continue;
      if (!kind.empty()) place_.fail("a step does one thing, not \"" + kind + "\" and \"" + std::string(each) + "\"");
      kind = each;
    }
    if (kind.empty())
      place_.fail("no known step (call, wait, mouse, snapshot, layers, print, frame, resize, scroll, lifecycle)" +
                  (step_.empty() ? "" : didYouMean(step_.begin()->first, kKinds)));
    return kind;
  }
  CallStep call(const Value& value, const Place& place) const {
    CallStep result{text(value, place), {}};
    if (!contains(kMethods, result.name))
      place.fail("a chart has no method " + quotedText(result.name) + didYouMean(result.name, kMethods));
    if (const auto arguments = step_.find("arguments"); arguments != step_.end())
      result.arguments = array(arguments->second, place_.at("arguments"));
    return result;
  }
  static WaitStep wait(const Value& value, const Place& place, double& waiting, const ScenarioLimits& limits) {
    const double seconds = number(value, place);
    if (seconds < 0 || seconds > limits.waiting)
      place.fail("seconds from 0 to " + numberText(limits.waiting) + " are expected");
    waiting += seconds;
    if (waiting > limits.waiting)
      place.fail("the steps wait longer than " + numberText(limits.waiting) + " seconds in all");
    return {seconds};
  }
  MouseStep mouse(const Value& value, const Place& place) const {
    const std::string& kind = text(value, place);
    if (kind == "exited") return {MouseStep::Kind::exited, {}};
    const auto at = step_.find("at");
    if (at == step_.end()) place_.fail("\"at\" is missing");
    const CGPoint point = pair(at->second, place_.at("at"));
    if (kind == "moved") return {MouseStep::Kind::moved, point};
    if (kind == "down") return {MouseStep::Kind::down, point};
    if (kind == "entered") return {MouseStep::Kind::entered, point};
    place.fail("moved, down, entered or exited is expected, not " + quotedText(kind));
  }
  static PrintStep print(const Value& value, const Place& place) {
    std::string name = fileName(value, place);
    if (!pictureFormatOf(name))
      place.fail("a name that ends in .png, .svg or .pdf is expected, not " + quotedText(name));
    return {std::move(name)};
  }
  static LifecycleStep lifecycle(const Value& value, const Place& place) {
    const std::string& kind = text(value, place);
    if (kind == "stop") return {LifecycleStep::Kind::stop};
    if (kind == "destroy") return {LifecycleStep::Kind::destroy};
    place.fail("stop or destroy is expected, not " + quotedText(kind));
  }

  const ValueDictionary& step_;
  const Place& place_;
};

Value parsed(const std::string& source, const std::string& name, const ScenarioLimits& limits) {
  try {
    return readJson(source, {kDeepestValue, limits.entries});
  } catch (const JsonError& error) {
    throw ScenarioError(printableName(name) + ": " + error.where() + ": " + error.what());
  }
}

}  // namespace

Scenario Scenario::parse(const std::string& source, const std::string& name, const ScenarioLimits& limits) {
  const Value root = parsed(source, name, limits);
  const Place top{name, ""};
  const ValueDictionary& file = object(root, top);
  const auto find = [&](std::string_view key) -> const Value* {
    const auto found = file.find(key);
    return found == file.end() ? nullptr : &found->second;
  };
  for (const auto& [key, value] : file)
    if (!contains(kKeys, key)) top.failForUnknown(key, kKeys);

  Scenario scenario;
  const Value* plot = find("plot");
  if (!plot) top.fail("\"plot\" is missing");
  scenario.plot = text(*plot, top.at("plot"));
  if (const Value* given = find("size")) scenario.size = zelkon::size(*given, top.at("size"));
  if (const Value* given = find("scale")) {
    scenario.scale = number(*given, top.at("scale"));
    if (scenario.scale <= 0 || scenario.scale > kLargestScale)
      top.at("scale").fail("a scale above 0 and up to 16 is expected");
  }
  if (const Value* given = find("locale")) {
    scenario.locale = text(*given, top.at("locale"));
    if (!IcuLocaleServices::isLocale(scenario.locale))
      top.at("locale").fail("a locale such as de_DE is expected, not " + quotedText(scenario.locale));
  }

  if (const Value* steps = find("steps")) {
    for (const char* key : {"options", "data"})
      if (find(key)) top.at(key).fail("beside \"steps\" this has no effect; a step can call it");
    const Place place = top.at("steps");
    scenario.steps.emplace();
    double waiting = 0;
    for (const Value& step : array(*steps, place))
      scenario.steps->push_back(StepReader(step, place.at(scenario.steps->size())).read(waiting, limits));
    return scenario;
  }
  const Value* data = find("data");
  if (!data) top.fail("\"data\" is missing");
  if (const Value* options = find("options")) {
    array(*options, top.at("options"));
    scenario.options = *options;
  }
  array(*data, top.at("data"));
  scenario.data = *data;
  return scenario;
}

}  // namespace zelkon
