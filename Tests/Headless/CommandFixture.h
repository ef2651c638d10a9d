// The built command, run by a shell in a folder of its own.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "Hosts/Headless/OutputFile.h"

namespace zelkon {

struct Outcome {
  int status;  // above 128: the signal that ended it
  std::string output, errors;
  long errorLines() const { return std::count(errors.begin(), errors.end(), '\n'); }
};

class CommandFixture : public testing::Test {
 protected:
  CommandFixture()
      : folder_(std::filesystem::temp_directory_path() /
                std::filesystem::path("zelkon-command-" + std::to_string(getpid()))) {
    std::filesystem::create_directories(folder_);
    write("pie.json", R"({"plot": "pie", "size": [300, 200], "data": [{"key": "Rent", "value": 3}]})");
  }
  ~CommandFixture() override { std::filesystem::remove_all(folder_); }

  void write(const std::string& name, const std::string& text) { std::ofstream(folder_ / name) << text; }
  // Writes a pie scenario whose steps are those.
  void writeSteps(const std::string& name, const std::string& steps) {
    write(name, R"({"plot": "pie", "size": [300, 200], "steps": [)" + steps + "]}");
  }
  std::string read(const std::string& name) const { return readWholeFile((folder_ / name).string()); }
  bool exists(const std::string& name) const { return std::filesystem::exists(folder_ / name); }
  size_t files(const std::string& below = ".") const {
    return static_cast<size_t>(
        std::distance(std::filesystem::directory_iterator(folder_ / below), std::filesystem::directory_iterator()));
  }

  // Runs a script in which $Z is the command.
  Outcome shell(const std::string& script) {
    const std::string command =
        "cd '" + folder_.string() + "' && Z='" ZELKON_COMMAND "' && { " + script + "\n} >.output 2>.errors </dev/null";
    const int status = std::system(command.c_str());
    const Outcome outcome{WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), read(".output"),
                          read(".errors")};
    std::filesystem::remove(folder_ / ".output");
    std::filesystem::remove(folder_ / ".errors");
    return outcome;
  }
  // Runs the command with those arguments, behind a piece of a script.
  Outcome run(const std::string& arguments, const std::string& before = "") {
    return shell(before + "\"$Z\" " + arguments);
  }

  std::filesystem::path folder_;
};

}  // namespace zelkon
