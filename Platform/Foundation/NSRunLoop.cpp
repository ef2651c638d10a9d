#include "Foundation/NSRunLoop.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zelkon {

NSRunLoop& NSRunLoop::mainRunLoop() {
  static NSRunLoop loop;
  return loop;
}

void NSRunLoop::performAfterDelay(const void* target, double delay, std::function<void()> action,
                                  std::shared_ptr<const void> alive) {
  const double due = now_ + (delay > 0 ? delay : 0);
  requests_.push_back({target, due, std::move(action), std::move(alive)});
}

void NSRunLoop::cancelPreviousPerformRequests(const void* target) {
  // What the requests held may cancel or schedule more when it goes, so it goes after the lists are in order again.
  std::vector<Request> dropped;
  for (std::vector<Request>* list : {&requests_, &running_}) {
    const auto kept = std::stable_partition(list->begin(), list->end(),
                                            [&](const Request& request) { return request.target != target; });
    std::move(kept, list->end(), std::back_inserter(dropped));
    list->erase(kept, list->end());
  }
}

void NSRunLoop::runDue(double now) {
  now_ = now;
  const auto due = std::stable_partition(requests_.begin(), requests_.end(),
                                         [&](const Request& request) { return !(request.due <= now); });
  std::move(due, requests_.end(), std::back_inserter(running_));
  requests_.erase(due, requests_.end());
  std::stable_sort(running_.begin(), running_.end(), [](const Request& a, const Request& b) { return a.due < b.due; });
  while (!running_.empty()) {
    const Request request = std::move(running_.front());
    running_.erase(running_.begin());
    request.action();
  }
}

std::optional<double> NSRunLoop::nextDue() const {
  std::optional<double> earliest;
  for (const std::vector<Request>* list : {&requests_, &running_})
    for (const Request& request : *list)
      if (!earliest || request.due < *earliest) earliest = request.due;
  return earliest;
}

}  // namespace zelkon
