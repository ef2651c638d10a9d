// What the words of the command line mean.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "Hosts/Headless/ScenarioPlayer.h"

namespace zelkon {

// Words that do not fit together: one printable line.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct CommandLine {
  enum class Kind { render, play, answer };
  Kind kind = Kind::answer;
  std::string answer;  // what --help and --version print
  std::vector<std::string> files, outputs;
  std::string folder;
  PlayOptions options;
  ScenarioLimits limits;
  size_t mostInput = 0;  // bytes of one file

  // Throws UsageError.
  static CommandLine parse(int argc, char** argv);
};

}  // namespace zelkon
