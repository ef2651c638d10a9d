// The process's standard output and standard error.
#pragma once

#include <string>
#include <string_view>

namespace zelkon {

// Sees to it that the three standard streams are open, so that no other file comes in the place of one that the caller
// has closed: such a one fails when it is used. Once, before anything is opened. A reader that closes its end of a pipe
// then fails the writing and does not end the process.
void openStandardStreams();

// Standard output, whose failures are not lost. For one thread at a time.
class StandardOutput {
 public:
  ~StandardOutput();
  void write(std::string_view text);
  // Writes what is kept back. Throws FileError when anything could not be written, unless the reader had enough.
  void finish();
  // Whether the reader has closed its end of the pipe: there is no use in writing on.
  bool isClosed() const;

 private:
  void flush();
  std::string kept_;
  int problem_ = 0;
};

// One line on standard error: "zelkon-plot: " and the text, printable, in one piece.
void reportLine(std::string_view text);

}  // namespace zelkon
