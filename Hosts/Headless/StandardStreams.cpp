#include "Hosts/Headless/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/PrintableText.h"

namespace zelkon {
namespace {

constexpr size_t kMostKept = 64 * 1024;

// 0, or the number of what went wrong.
int writeAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(file, text.data(), text.size());
    if (count > 0) text.remove_prefix(static_cast<size_t>(count));
    if (count == 0) return ENOSPC;
    if (count < 0 && errno != EINTR) return errno;
  }
  return 0;
}

}  // namespace

void openStandardStreams() {
  std::signal(SIGPIPE, SIG_IGN);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    // Opened the wrong way round: whoever reads or writes it is told so.
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

StandardOutput::~StandardOutput() { flush(); }

void StandardOutput::write(std::string_view text) {
  if (problem_ != 0) return;
  kept_ += text;
  if (kept_.size() >= kMostKept) flush();
}

void StandardOutput::finish() {
  flush();
  if (problem_ == 0 || isClosed()) return;
  throw FileError("standard output: cannot be written: " + std::generic_category().message(problem_));
}

bool StandardOutput::isClosed() const { return problem_ == EPIPE; }

void StandardOutput::flush() {
  if (problem_ == 0) problem_ = writeAll(STDOUT_FILENO, kept_);
  kept_.clear();
}

void reportLine(std::string_view text) { writeAll(STDERR_FILENO, "zelkon-plot: " + printableText(text) + "\n"); }

}  // namespace zelkon
