#include "Hosts/Headless/PictureWriter.h"

#include <system_error>
#include <utility>

#include "Hosts/Headless/OutputFile.h"

namespace zelkon {

PictureWriter::~PictureWriter() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isEnding_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void PictureWriter::write(const std::string& path, PictureBytes bytes) {
  finish();
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    path_ = path;
    bytes_ = std::move(bytes);
  }
  if (!thread_.joinable() && !start()) {
    const PictureBytes here = std::exchange(bytes_, nullptr);
    writeWholeFile(path_, here());
  }
  changed_.notify_all();
}

bool PictureWriter::start() {
  try {
    thread_ = std::thread([this] { run(); });
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

void PictureWriter::finish() {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [this] { return !bytes_; });
  if (problem_) std::rethrow_exception(std::exchange(problem_, nullptr));
}

void PictureWriter::run() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return bytes_ || isEnding_; });
    if (!bytes_) return;
    lock.unlock();
    // Nobody else touches the picture until it is taken away below.
    std::exception_ptr problem;
    try {
      writeWholeFile(path_, bytes_());
    } catch (...) {
      problem = std::current_exception();
    }
    lock.lock();
    bytes_ = nullptr;
    problem_ = problem;
    changed_.notify_all();
  }
}

}  // namespace zelkon
