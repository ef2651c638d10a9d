#include "QuartzCore/CAAnimationTimeline.h"

#include <algorithm>
#include <utility>

namespace zelkon {

CAAnimationTimeline& CAAnimationTimeline::shared() {
  // Never destroyed: layers that outlive main still report to it.
  static CAAnimationTimeline* timeline = new CAAnimationTimeline;
  return *timeline;
}

void CAAnimationTimeline::advanceTo(double seconds) {
  if (seconds > now_) now_ = seconds;
}

void CAAnimationTimeline::didStart(const std::shared_ptr<CAAttachedAnimation>& animation) {
  beginning_.push_back(animation);
  running_.push_back(animation);
}

void CAAnimationTimeline::didRemove(const std::shared_ptr<CAAttachedAnimation>& animation) {
  if (std::exchange(animation->stopTold, true)) return;
  stopped_.push_back({now_, false, animation});
}

void CAAnimationTimeline::deliver() {
  std::vector<std::shared_ptr<CAAttachedAnimation>> begun;
  std::vector<Stop> ended = std::exchange(stopped_, {});
  const auto isGone = [](const auto& a) { return a->stopTold; };
  running_.erase(std::remove_if(running_.begin(), running_.end(), isGone), running_.end());
  beginning_.erase(std::remove_if(beginning_.begin(), beginning_.end(), isGone), beginning_.end());
  const auto take = [](auto& from, auto isDue, auto receive) {
    const auto firstDue = std::stable_partition(from.begin(), from.end(), [&](const auto& a) { return !isDue(*a); });
    std::for_each(firstDue, from.end(), receive);
    from.erase(firstDue, from.end());
  };
  take(
      beginning_, [&](const CAAttachedAnimation& a) { return *a.start <= now_; },
      [&](const auto& a) { begun.push_back(a); });
  take(
      running_, [&](const CAAttachedAnimation& a) { return a.end() <= now_; },
      [&](const auto& a) {
        a->stopTold = true;
        ended.push_back({a->end(), true, a});
      });
  std::sort(begun.begin(), begun.end(), [](const auto& a, const auto& b) {
    return std::make_pair(*a->start, a->serial) < std::make_pair(*b->start, b->serial);
  });
  std::sort(ended.begin(), ended.end(), [](const Stop& a, const Stop& b) {
    return std::make_pair(a.time, a.animation->serial) < std::make_pair(b.time, b.animation->serial);
  });
  for (const Stop& stop : ended)
    if (const auto set = stop.finished ? stop.animation->set.lock() : nullptr) set->didEnd(*stop.animation);
  for (const auto& animation : begun)
    if (const auto delegate = animation->animation.delegate.lock()) delegate->animationDidStart(animation->animation);
  for (const Stop& stop : ended)
    if (const auto delegate = stop.animation->animation.delegate.lock())
      delegate->animationDidStop(stop.animation->animation, stop.finished);
}

}  // namespace zelkon
