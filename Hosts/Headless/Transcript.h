// What happened, one line per event with the media time since the transcript began: "0.267 page GraphHasDisplayed()".
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "Foundation/Value.h"

namespace zelkon {

class Transcript {
 public:
  using Sink = std::function<void(const std::string& line)>;
  explicit Transcript(Sink sink);
  void page(std::string_view function, const ValueArray& arguments);
  void log(std::string_view text);
  void result(std::string_view call, const Value& value);

 private:
  void write(std::string_view kind, const std::string& text);
  Sink sink_;
  double start_;
};

// JSON text of a value; whole numbers without a point, integers exactly, undefined as null.
std::string jsonText(const Value& value);

}  // namespace zelkon
