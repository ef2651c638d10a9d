// A JSON text as a Value, read in one pass whose time and memory grow with the text alone.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Foundation/Value.h"

namespace zelkon {

// What is wrong with a text, and where: "line 3, column 14" or, for what is JSON and yet refused, "/data/3/value".
class JsonError : public std::runtime_error {
 public:
  JsonError(std::string where, const std::string& problem) : std::runtime_error(problem), where_(std::move(where)) {}
  const std::string& where() const { return where_; }

 private:
  std::string where_;
};

struct JsonLimits {
  size_t depth;     // of arrays and objects inside the outermost one
  size_t elements;  // of one array
};

// Numbers are doubles, as a script's are. Throws JsonError, and std::bad_alloc.
Value readJson(std::string_view text, const JsonLimits& limits);

// A pointer with one more key, "~" and "/" in it escaped, printable.
std::string jsonPointer(const std::string& pointer, std::string_view key);

}  // namespace zelkon
