// Files that are there whole or not at all, and the folder that a scenario's files stay in.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace zelkon {

// What went wrong with a file: one printable line that names it.
class FileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Writes beside `path` and moves it into place, where it takes the place of another file or of a link. Throws FileError
// and leaves nothing behind when that fails.
void writeWholeFile(const std::string& path, const std::string& bytes);
// The whole file; "-" reads standard input. Throws FileError, also where there are more than `most` bytes.
std::string readWholeFile(const std::string& path, size_t most = static_cast<size_t>(-1));

// Whether this can name a file of an OutputFolder: relative, without "..", without NUL.
bool isNameBelowFolder(const std::string& name);

// A folder whose files are written by names that others chose. None of them leads out of it, whatever links there are
// and however they change meanwhile. May be used on several threads at once.
class OutputFolder {
 public:
  // Makes the folder where it is missing; the empty path is the working folder. Throws FileError.
  explicit OutputFolder(const std::string& path);
  ~OutputFolder();
  OutputFolder(const OutputFolder&) = delete;
  OutputFolder& operator=(const OutputFolder&) = delete;

  // As writeWholeFile, into a folder that must be there. Throws FileError, also for a name or a link that could lead
  // out.
  void write(const std::string& name, const std::string& bytes) const;

 private:
  std::string path_;
  int folder_;
};

}  // namespace zelkon
