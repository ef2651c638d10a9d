// A file while it is being written: under a name that cannot be foreseen, beside the place where it will stand.
#pragma once

#include <string>
#include <string_view>

namespace zelkon {

// What is not moved to its place is removed: when the object goes, and when a signal ends the process.
class UnfinishedFile {
 public:
  // Makes the file anew in the folder, an open descriptor that must outlive this; never through a link. Throws
  // std::system_error.
  explicit UnfinishedFile(int folder);
  ~UnfinishedFile();
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  // Throws std::system_error.
  void write(std::string_view bytes);
  // Gives the file its name in the folder, in place of what has that name. Throws std::system_error.
  void moveTo(const std::string& name);

  // From now on the signals that end a process (a break, a hang-up, a limit on files or time) first remove every
  // unfinished file; the process then ends as by the signal. A signal that is ignored stays ignored. Once a process.
  static void removeAllOnSignals();
  // Removes every unfinished file, on whatever thread it is written, and ends the process at once.
  [[noreturn]] static void removeAllAndEnd(int status);

 private:
  friend class UnfinishedFiles;

  int folder_;
  int file_ = -1;
  bool isMoved_ = false;
  char name_[48];
  UnfinishedFile* previous_ = nullptr;
  UnfinishedFile* next_ = nullptr;
};

}  // namespace zelkon
