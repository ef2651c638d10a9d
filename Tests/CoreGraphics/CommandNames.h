// The kinds of a recording's commands as one line, for tests of order and structure.
#pragma once

#include <string>

#include "CoreGraphics/DisplayList.h"

namespace zelkon {

inline std::string commandNames(const DisplayList& list) {
  static const char* const names[] = {"save",     "restore", "concat", "clip",  "fill",  "stroke",
                                      "gradient", "image",   "text",   "clear", "begin", "end"};
  std::string line;
  for (const DisplayList::Command& command : list.commands()) {
    if (!line.empty()) line += ' ';
    line += names[command.index()];
  }
  return line;
}

inline std::string commandNames(const RecordingContext& context) { return commandNames(*context.snapshot()); }

// The command at `index`; throws std::bad_variant_access when it is of another kind.
template <typename Command>
const Command& commandAt(const DisplayList& list, size_t index) {
  return std::get<Command>(list.commands().at(index));
}

}  // namespace zelkon
