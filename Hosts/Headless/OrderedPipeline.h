// Does jobs on several threads and hands their results on in the order in which the jobs came.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace zelkon {

// Each thread that works makes a Context of its own, which lives and is used on that thread alone. One thread adds the
// jobs. A bounded number of jobs is in flight, added and not yet handed on, so that memory does not grow where results
// are taken slower than they are made.
template <typename Context>
class OrderedPipeline {
 public:
  // Hands a result on; false when no other is wanted.
  using HandOn = std::function<bool()>;
  using Job = std::function<HandOn(Context&)>;

  // With fewer than two threads, and where none can be started, jobs are done on the thread that adds them.
  OrderedPipeline(size_t threads, size_t mostInFlight) : mostInFlight_(mostInFlight) {
    try {
      for (size_t i = 0; threads > 1 && i < threads; ++i) threads_.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
      // Those that could be started do it.
    }
  }
  // Jobs that have begun are done; what is not handed on yet is lost.
  ~OrderedPipeline() {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      isStopped_ = true;
    }
    end();
  }
  OrderedPipeline(const OrderedPipeline&) = delete;
  OrderedPipeline& operator=(const OrderedPipeline&) = delete;

  // Waits while there are too many in flight. False when no more results are wanted. Throws what a job, the handing on
  // of its result or the making of a Context has thrown; no result after that one is handed on.
  bool add(Job job) {
    if (threads_.empty()) return doHere(job);
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return isStopped_ || slots_.size() < mostInFlight_; });
    if (problem_) std::rethrow_exception(std::exchange(problem_, nullptr));
    if (isStopped_) return false;
    slots_.push_back({std::move(job), nullptr});
    ++waiting_;
    changed_.notify_all();
    return true;
  }
  // Returns when every result is handed on. Throws as add().
  void finish() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return isStopped_ || slots_.empty(); });
    if (problem_) std::rethrow_exception(std::exchange(problem_, nullptr));
  }

 private:
  struct Slot {
    Job job;        // until a thread takes it
    HandOn handOn;  // once it is done
  };

  bool doHere(const Job& job) {
    if (isStopped_) return false;
    isStopped_ = true;  // unless it ends well
    if (!here_) here_.emplace();
    isStopped_ = !job(*here_)();
    return !isStopped_;
  }

  void work() {
    try {
      Context context;
      while (doNext(context)) {
      }
    } catch (...) {
      const std::lock_guard<std::mutex> lock(mutex_);
      fail();
    }
  }

  bool doNext(Context& context) {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return isStopped_ || isEnding_ || waiting_ > 0; });
    if (isStopped_ || waiting_ == 0) return false;
    // Elements of a deque stay where they are while others come at its end and go at its beginning.
    Slot& slot = slots_[slots_.size() - waiting_--];
    const Job job = std::move(slot.job);
    lock.unlock();
    HandOn handOn;
    try {
      handOn = job(context);
    } catch (...) {
      handOn = [problem = std::current_exception()]() -> bool { std::rethrow_exception(problem); };
    }
    lock.lock();
    slot.handOn = std::move(handOn);
    handOnFirst(lock);
    return true;
  }

  // Hands on what is done up to the first job that is not, unless another thread is about it.
  void handOnFirst(std::unique_lock<std::mutex>& lock) {
    if (isHandingOn_) return;
    isHandingOn_ = true;
    while (!isStopped_ && !slots_.empty() && slots_.front().handOn) {
      const HandOn handOn = std::move(slots_.front().handOn);
      lock.unlock();
      bool wantsMore = false;
      std::exception_ptr problem;
      try {
        wantsMore = handOn();
      } catch (...) {
        problem = std::current_exception();
      }
      lock.lock();
      slots_.pop_front();
      if (!wantsMore) {
        isStopped_ = true;
        problem_ = problem;
      }
      changed_.notify_all();
    }
    isHandingOn_ = false;
  }

  void fail() {
    if (!isStopped_) problem_ = std::current_exception();
    isStopped_ = true;
    changed_.notify_all();
  }

  void end() {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      isEnding_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

  const size_t mostInFlight_;
  std::optional<Context> here_;
  std::mutex mutex_;
  std::condition_variable changed_;
  // Under the mutex, once there are threads:
  std::deque<Slot> slots_;  // of the jobs in flight
  size_t waiting_ = 0;      // how many of them, the last ones, no thread has taken
  bool isHandingOn_ = false, isStopped_ = false, isEnding_ = false;
  std::exception_ptr problem_;

  std::vector<std::thread> threads_;
};

}  // namespace zelkon
