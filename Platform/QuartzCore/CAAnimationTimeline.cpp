#include "QuartzCore/CAAnimationTimeline.h"

#include <algorithm>
#include <utility>

#include "Foundation/PlatformSession.h"
#include "Foundation/VectorAlgorithms.h"

namespace zelkon {

CAAnimationTimeline& CAAnimationTimeline::shared() {
  return PlatformSession::part<CAAnimationTimeline>(PlatformSession::Key::timeline);
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
  std::vector<Stop> ended = std::exchange(stopped_, {});
  for (Animations* list : {&running_, &beginning_})
    list->erase(std::remove_if(list->begin(), list->end(), [](const auto& a) { return a->stopTold; }), list->end());
  Animations begun = ExtractIf(beginning_, [&](const auto& a) { return *a->start <= now_; });
  for (const auto& animation : ExtractIf(running_, [&](const auto& a) { return a->end() <= now_; })) {
    animation->stopTold = true;
    ended.push_back({animation->end(), true, animation});
  }
  StableSort(begun, [](const auto& a, const auto& b) {
    return std::make_pair(*a->start, a->serial) < std::make_pair(*b->start, b->serial);
  });
  StableSort(ended, [](const Stop& a, const Stop& b) {
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
