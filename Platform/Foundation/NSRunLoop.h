// Delayed perform requests. The host says what time it is and when a turn happens; nothing here reads a clock.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zelkon {

class NSRunLoop {
 public:
  // The session's.
  static NSRunLoop& mainRunLoop();

  // Runs `action` at the first turn at or after now + delay (seconds), never before the current call returns.
  // Same-time requests run in order of scheduling. `target` only identifies the request for cancelling; the caller's
  // `alive` handle is kept until the request has run or was cancelled.
  void performAfterDelay(const void* target, double delay, std::function<void()> action,
                         std::shared_ptr<const void> alive = nullptr);
  // Drops every pending request of the target, also those due in the turn that is running.
  void cancelPreviousPerformRequests(const void* target);
  // Runs what is due at `now` (seconds). Requests made meanwhile wait for the next turn.
  void runDue(double now);
  // The time at which the earliest request is due; none when nothing is pending.
  std::optional<double> nextDue() const;
  double now() const { return now_; }

 private:
  struct Request {
    const void* target;
    double due;
    std::function<void()> action;
    std::shared_ptr<const void> alive;
  };
  std::vector<Request> requests_;
  std::vector<Request> running_;
  double now_ = 0;
};

}  // namespace zelkon
