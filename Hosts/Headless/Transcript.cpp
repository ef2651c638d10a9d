#include "Hosts/Headless/Transcript.h"

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "QuartzCore/CATransaction.h"

namespace zelkon {
namespace {

nlohmann::ordered_json jsonOf(const Value& value) {
  if (value.isBoolean()) return value.boolValue();
  if (value.isInteger()) return value.integerValue();
  if (value.isNumber()) {
    const double number = value.doubleValue();
    if (std::abs(number) < 1e15 && number == std::trunc(number)) return static_cast<int64_t>(number);
    return number;
  }
  if (value.isString()) return value.string();
  if (value.isArray()) {
    auto array = nlohmann::ordered_json::array();
    for (const Value& element : value.array()) array.push_back(jsonOf(element));
    return array;
  }
  if (value.isDictionary()) {
    auto object = nlohmann::ordered_json::object();
    for (const auto& [key, element] : value.dictionary()) object[key] = jsonOf(element);
    return object;
  }
  return nullptr;
}

}  // namespace

std::string jsonText(const Value& value) {
  return jsonOf(value).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

Transcript::Transcript(Sink sink) : sink_(std::move(sink)), start_(CACurrentMediaTime()) {}

void Transcript::write(std::string_view kind, const std::string& text) {
  char time[32];
  std::snprintf(time, sizeof time, "%.3f", CACurrentMediaTime() - start_);
  sink_(std::string(time) + " " + std::string(kind) + " " + text);
}

void Transcript::page(std::string_view function, const ValueArray& arguments) {
  std::string text(function);
  text += "(";
  for (size_t i = 0; i < arguments.size(); ++i) text += (i ? ", " : "") + jsonText(arguments[i]);
  write("page", text + ")");
}

void Transcript::log(std::string_view text) { write("log", std::string(text)); }

void Transcript::result(std::string_view call, const Value& value) {
  write("result", std::string(call) + " " + jsonText(value));
}

}  // namespace zelkon
