#include "Hosts/Headless/Scenario.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/PictureFormat.h"
#include "Hosts/Headless/PrintableText.h"

namespace zelkon {
namespace {

using nlohmann::json;

constexpr double kLargestSide = 32000;
constexpr double kLongestWait = 3600;
// No chart looks deeper than an entry's properties; what is nested without end must not use up the stack.
constexpr int kDeepestValue = 64;

// Where in the file we are, for error texts: a JSON pointer.
struct Place {
  const std::string& file;
  std::string pointer;
  Place at(const std::string& key) const { return {file, pointer + "/" + key}; }
  Place at(size_t index) const { return at(std::to_string(index)); }
  [[noreturn]] void fail(const std::string& problem) const {
    throw ScenarioError(file + ": " + (pointer.empty() ? "/" : pointer) + ": " + problem);
  }
};

// `place` is that of the whole value, `depth` how far inside it this part lies.
Value valueOf(const json& node, const Place& place, int depth = 0) {
  if (depth > kDeepestValue) place.fail("values nested more than 64 deep");
  switch (node.type()) {
    case json::value_t::boolean:
      return node.get<bool>();
    case json::value_t::number_integer:
    case json::value_t::number_unsigned:
    case json::value_t::number_float:
      return node.get<double>();  // script numbers are doubles
    case json::value_t::string:
      return node.get<std::string>();
    case json::value_t::array: {
      ValueArray array;
      array.reserve(node.size());
      for (const json& element : node) array.push_back(valueOf(element, place, depth + 1));
      return array;
    }
    case json::value_t::object: {
      ValueDictionary dictionary;
      for (const auto& [key, element] : node.items()) dictionary.emplace(key, valueOf(element, place, depth + 1));
      return dictionary;
    }
    default:
      return {};
  }
}

std::string text(const json& node, const Place& place) {
  if (!node.is_string()) place.fail("a string is expected");
  return node.get<std::string>();
}

double number(const json& node, const Place& place) {
  if (!node.is_number() || !std::isfinite(node.get<double>())) place.fail("a number is expected");
  return node.get<double>();
}

CGPoint pair(const json& node, const Place& place) {
  if (!node.is_array() || node.size() != 2) place.fail("two numbers are expected");
  return {number(node[0], place.at(size_t{0})), number(node[1], place.at(size_t{1}))};
}

CGSize size(const json& node, const Place& place) {
  const CGPoint p = pair(node, place);
  if (p.x < 0 || p.y < 0 || p.x > kLargestSide || p.y > kLargestSide)
    place.fail("width and height from 0 to 32000 are expected");
  return {p.x, p.y};
}

// The name of a file that a step writes.
std::string fileName(const json& node, const Place& place) {
  std::string name = text(node, place);
  if (!isNameBelowFolder(name)) place.fail("a name below the output folder is expected, not " + quotedText(name));
  return name;
}

PrintStep print(const json& node, const Place& place) {
  std::string name = fileName(node, place);
  if (!pictureFormatOf(name)) place.fail("a name that ends in .png, .svg or .pdf is expected, not " + quotedText(name));
  return {std::move(name)};
}

CallStep call(const json& step, const Place& place) {
  CallStep result{text(step["call"], place.at("call")), {}};
  if (const auto arguments = step.find("arguments"); arguments != step.end()) {
    const Place whole = place.at("arguments");
    if (!arguments->is_array()) whole.fail("an array is expected");
    for (const json& argument : *arguments) result.arguments.push_back(valueOf(argument, whole));
  }
  return result;
}

MouseStep mouse(const json& step, const Place& place) {
  const std::string kind = text(step["mouse"], place.at("mouse"));
  if (kind == "exited") return {MouseStep::Kind::exited, {}};
  const auto at = step.find("at");
  if (at == step.end()) place.fail("\"at\" is missing");
  const CGPoint point = pair(*at, place.at("at"));
  if (kind == "moved") return {MouseStep::Kind::moved, point};
  if (kind == "down") return {MouseStep::Kind::down, point};
  if (kind == "entered") return {MouseStep::Kind::entered, point};
  place.at("mouse").fail("moved, down, entered or exited is expected, not \"" + kind + "\"");
}

ScenarioStep parseStep(const json& step, const Place& place) {
  if (!step.is_object()) place.fail("an object is expected");
  const auto has = [&](const char* key) { return step.contains(key); };
  if (has("call")) return call(step, place);
  if (has("wait")) {
    const double seconds = number(step["wait"], place.at("wait"));
    if (seconds < 0 || seconds > kLongestWait) place.at("wait").fail("seconds from 0 to 3600 are expected");
    return WaitStep{seconds};
  }
  if (has("mouse")) return mouse(step, place);
  if (has("snapshot")) return SnapshotStep{fileName(step["snapshot"], place.at("snapshot"))};
  if (has("layers")) return LayersStep{fileName(step["layers"], place.at("layers"))};
  if (has("print")) return print(step["print"], place.at("print"));
  if (has("frame")) return FrameStep{size(step["frame"], place.at("frame"))};
  if (has("resize")) return ResizeStep{size(step["resize"], place.at("resize"))};
  if (has("scroll")) return ScrollStep{pair(step["scroll"], place.at("scroll"))};
  if (has("lifecycle")) {
    const std::string kind = text(step["lifecycle"], place.at("lifecycle"));
    if (kind == "stop") return LifecycleStep{LifecycleStep::Kind::stop};
    if (kind == "destroy") return LifecycleStep{LifecycleStep::Kind::destroy};
    place.at("lifecycle").fail("stop or destroy is expected, not \"" + kind + "\"");
  }
  place.fail("no known step (call, wait, mouse, snapshot, layers, print, frame, resize, scroll, lifecycle)");
}

// "line 3, column 14" of a byte offset.
std::string lineAndColumn(const std::string& source, size_t offset) {
  size_t line = 1, column = 1;
  for (size_t i = 0; i + 1 < offset && i < source.size(); ++i) {
    column = source[i] == '\n' ? 1 : column + 1;
    line += source[i] == '\n';
  }
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

}  // namespace

Scenario Scenario::parse(const std::string& source, const std::string& name) {
  json root;
  try {
    root = json::parse(source);
  } catch (const json::parse_error& error) {
    throw ScenarioError(name + ": " + lineAndColumn(source, error.byte) + ": this is not JSON");
  } catch (const json::exception& error) {
    throw ScenarioError(name + ": /: " + error.what());
  }
  const Place top{name, ""};
  if (!root.is_object()) top.fail("an object is expected");

  Scenario scenario;
  if (!root.contains("plot")) top.fail("\"plot\" is missing");
  scenario.plot = text(root["plot"], top.at("plot"));
  if (root.contains("size")) scenario.size = zelkon::size(root["size"], top.at("size"));
  if (root.contains("scale")) {
    scenario.scale = number(root["scale"], top.at("scale"));
    if (scenario.scale <= 0 || scenario.scale > 16) top.at("scale").fail("a scale above 0 and up to 16 is expected");
  }
  if (root.contains("locale")) scenario.locale = text(root["locale"], top.at("locale"));

  if (const auto steps = root.find("steps"); steps != root.end()) {
    const Place place = top.at("steps");
    if (!steps->is_array()) place.fail("an array is expected");
    scenario.steps.emplace();
    for (size_t i = 0; i < steps->size(); ++i) scenario.steps->push_back(parseStep((*steps)[i], place.at(i)));
    return scenario;
  }
  if (!root.contains("data")) top.fail("\"data\" is missing");
  for (const char* key : {"options", "data"}) {
    if (root.contains(key) && !root[key].is_array()) top.at(key).fail("an array is expected");
  }
  if (root.contains("options")) scenario.options = valueOf(root["options"], top.at("options"));
  scenario.data = valueOf(root["data"], top.at("data"));
  return scenario;
}

}  // namespace zelkon
