#include "Foundation/NSRunLoop.h"

#include <utility>

#include "Foundation/PlatformSession.h"
#include "Foundation/VectorAlgorithms.h"

namespace zelkon {

NSRunLoop& NSRunLoop::mainRunLoop() { return PlatformSession::part<NSRunLoop>(PlatformSession::Key::runLoop); }

void NSRunLoop::performAfterDelay(const void* target, double delay, std::function<void()> action,
                                  std::shared_ptr<const void> alive) {
  const double due = now_ + (delay > 0 ? delay : 0);
  requests_.push_back({target, due, std::move(action), std::move(alive)});
}

void NSRunLoop::cancelPreviousPerformRequests(const void* target) {
  // What the requests held may cancel or schedule more when it goes, so it goes after the lists are in order again.
  std::vector<Request> dropped;
  for (std::vector<Request>* list : {&requests_, &running_}) {
    for (Request& request : ExtractIf(*list, [&](const Request& each) { return each.target == target; }))
      dropped.push_back(std::move(request));
  }
}

void NSRunLoop::runDue(double now) {
  now_ = now;
  for (Request& request : ExtractIf(requests_, [&](const Request& each) { return each.due <= now; }))
    running_.push_back(std::move(request));
  StableSort(running_, [](const Request& a, const Request& b) { return a.due < b.due; });
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
