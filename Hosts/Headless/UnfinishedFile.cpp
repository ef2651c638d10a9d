#include "Hosts/Headless/UnfinishedFile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/random.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <system_error>

namespace zelkon {

namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXFSZ, SIGXCPU};

[[noreturn]] void fail(int problem) { throw std::system_error(problem, std::generic_category()); }

}  // namespace

// The list of those there are. Whoever holds it has its signals blocked, so a handler that waits for it waits for
// another thread, which goes on.
class UnfinishedFiles {
 public:
  class Holding {
   public:
    Holding() {
      sigset_t all;
      sigfillset(&all);
      pthread_sigmask(SIG_BLOCK, &all, &before_);
      hold();
    }
    ~Holding() {
      isHeld_.clear(std::memory_order_release);
      pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    Holding(const Holding&) = delete;
    Holding& operator=(const Holding&) = delete;

   private:
    sigset_t before_;
  };

  static void hold() {
    while (isHeld_.test_and_set(std::memory_order_acquire)) poll(nullptr, 0, 1);
  }
  static void add(UnfinishedFile& file) {
    file.next_ = first_;
    if (first_) first_->previous_ = &file;
    first_ = &file;
  }
  static void remove(UnfinishedFile& file) {
    (file.previous_ ? file.previous_->next_ : first_) = file.next_;
    if (file.next_) file.next_->previous_ = file.previous_;
  }
  // Only what a signal handler may call. Nothing is added or moved to its place any more: the list stays held.
  static void removeAll() {
    hold();
    for (const UnfinishedFile* file = first_; file; file = file->next_) unlinkat(file->folder_, file->name_, 0);
  }
  static void end(int signal) {
    removeAll();
    std::signal(signal, SIG_DFL);
    sigset_t just;
    sigemptyset(&just);
    sigaddset(&just, signal);
    pthread_sigmask(SIG_UNBLOCK, &just, nullptr);
    std::raise(signal);
  }

 private:
  static inline std::atomic_flag isHeld_;
  static inline UnfinishedFile* first_ = nullptr;
};

UnfinishedFile::UnfinishedFile(int folder) : folder_(folder) {
  for (;;) {
    uint64_t random[2];
    if (getrandom(random, sizeof random, 0) != sizeof random) fail(errno);
    std::snprintf(name_, sizeof name_, ".part-%016llx%016llx", static_cast<unsigned long long>(random[0]),
                  static_cast<unsigned long long>(random[1]));
    int problem = 0;
    {
      const UnfinishedFiles::Holding held;
      file_ = openat(folder, name_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
      problem = errno;
      if (file_ >= 0) UnfinishedFiles::add(*this);
    }
    if (file_ >= 0) return;
    if (problem != EEXIST && problem != EINTR) fail(problem);
  }
}

UnfinishedFile::~UnfinishedFile() {
  if (file_ >= 0) close(file_);
  if (isMoved_) return;
  const UnfinishedFiles::Holding held;
  unlinkat(folder_, name_, 0);
  UnfinishedFiles::remove(*this);
}

void UnfinishedFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file_, bytes.data(), bytes.size());
    if (count > 0) bytes.remove_prefix(static_cast<size_t>(count));
    if (count == 0) fail(ENOSPC);
    if (count < 0 && errno != EINTR) fail(errno);
  }
}

void UnfinishedFile::moveTo(const std::string& name) {
  const int file = file_;
  file_ = -1;
  if (close(file) != 0 && errno != EINTR) fail(errno);
  const UnfinishedFiles::Holding held;
  if (renameat(folder_, name_, folder_, name.c_str()) != 0) fail(errno);
  isMoved_ = true;
  UnfinishedFiles::remove(*this);
}

void UnfinishedFile::removeAllOnSignals() {
  for (const int signal : kEndingSignals) {
    struct sigaction action = {};
    if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action.sa_handler = UnfinishedFiles::end;
    sigfillset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
  }
}

void UnfinishedFile::removeAllAndEnd(int status) {
  UnfinishedFiles::removeAll();
  _exit(status);
}

}  // namespace zelkon
