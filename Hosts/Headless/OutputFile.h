// Files that are there whole or not at all.
#pragma once

#include <stdexcept>
#include <string>

namespace zelkon {

// What went wrong with a file, one line that names it.
class FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Writes beside `path` and moves it into place; throws FileError and leaves nothing behind when that fails. "-" writes
// to standard output.
void writeWholeFile(const std::string& path, const std::string& bytes);
// The whole file; "-" reads standard input. Throws FileError.
std::string readWholeFile(const std::string& path);

}  // namespace zelkon
