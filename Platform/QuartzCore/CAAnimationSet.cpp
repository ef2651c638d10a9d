#include "QuartzCore/CAAnimationSet.h"

#include <algorithm>
#include <utility>

#include "Foundation/VectorAlgorithms.h"
#include "QuartzCore/CAAnimationTimeline.h"

namespace zelkon {

namespace {

bool reachesBack(CAFillMode mode) { return mode == CAFillMode::backwards || mode == CAFillMode::both; }
bool reachesOn(CAFillMode mode) { return mode == CAFillMode::forwards || mode == CAFillMode::both; }

// The eased progress at a time; nothing when the animation has no effect then.
std::optional<double> progressAt(const CAAttachedAnimation& attached, double time) {
  const CABasicAnimation& animation = attached.animation;
  double t = 0;
  if (!attached.start) {
    if (animation.beginTime > 0 && !reachesBack(animation.fillMode)) return std::nullopt;
  } else if (time < *attached.start) {
    if (!reachesBack(animation.fillMode)) return std::nullopt;
  } else if (time >= attached.end()) {
    if (!reachesOn(animation.fillMode)) return std::nullopt;
    t = 1;
  } else {
    t = (time - *attached.start) / animation.duration;
  }
  return animation.timingFunction ? animation.timingFunction->solve(t) : t;
}

}  // namespace

void CAAnimationSet::add(CABasicAnimation animation, const std::string& key, std::optional<CAAnimatableValue> shown) {
  if (!key.empty()) remove(key);
  auto attached = std::make_shared<CAAttachedAnimation>();
  attached->animation = std::move(animation);
  attached->key = key;
  attached->serial = CAAnimationTimeline::shared().nextSerial();
  attached->shownWhenAdded = std::move(shown);
  attached->set = weak_from_this();
  animations_.push_back(std::move(attached));
}

template <typename Matches>
void CAAnimationSet::removeIf(Matches matches) {
  for (const auto& removed : ExtractIf(animations_, [&](const auto& a) { return matches(*a); }))
    CAAnimationTimeline::shared().didRemove(removed);
}

void CAAnimationSet::remove(const std::string& key) {
  removeIf([&](const CAAttachedAnimation& a) { return a.key == key; });
}

void CAAnimationSet::removeAll() {
  for (const auto& removed : std::exchange(animations_, {})) CAAnimationTimeline::shared().didRemove(removed);
}

void CAAnimationSet::removeStarted() {
  removeIf([](const CAAttachedAnimation& a) { return a.start.has_value(); });
}

const CABasicAnimation* CAAnimationSet::find(const std::string& key) const {
  for (const auto& attached : animations_)
    if (attached->key == key) return &attached->animation;
  return nullptr;
}

std::vector<std::string> CAAnimationSet::keys() const {
  std::vector<std::string> keys;
  for (const auto& attached : animations_)
    if (!attached->key.empty()) keys.push_back(attached->key);
  return keys;
}

void CAAnimationSet::start(double now) {
  for (const auto& attached : animations_) {
    if (attached->start) continue;
    attached->start = now + attached->animation.beginTime;
    CAAnimationTimeline::shared().didStart(attached);
  }
}

void CAAnimationSet::didEnd(const CAAttachedAnimation& ended) {
  if (!ended.animation.removedOnCompletion) return;
  const auto found =
      std::find_if(animations_.begin(), animations_.end(), [&](const auto& a) { return a.get() == &ended; });
  if (found == animations_.end()) return;
  const auto keptUntilReturn = *found;
  animations_.erase(found);
  if (didChange_) didChange_();
}

void CAAnimationSet::apply(CALayerProperties& p, double time) const {
  const CALayerProperties model = animations_.empty() ? CALayerProperties() : p;
  for (const auto& attached : animations_) {
    const CABasicAnimation& animation = attached->animation;
    const std::optional<double> f = progressAt(*attached, time);
    if (!f) continue;
    std::optional<CAAnimatableValue> from = animation.fromValue, to = animation.toValue;
    // A missing end is what lies under the animation: the model at the far end, the earlier animations at the near one.
    if (!from && !to) from = attached->shownWhenAdded;
    if (!from) from = CALayerValue(p, animation.keyPath);
    if (!to) to = CALayerValue(model, animation.keyPath);
    if (!from || !to) continue;
    if (animation.keyPath == "contents") {
      const auto *earlier = std::get_if<CGImageRef>(&*from), *later = std::get_if<CGImageRef>(&*to);
      if (earlier == nullptr || later == nullptr) continue;
      p.fadingContents = *earlier;
      p.contents = *later;
      p.contentsFade = *f;
      continue;
    }
    CALayerSetValue(p, animation.keyPath, CAInterpolate(*from, *to, *f));
  }
}

bool CAAnimationSet::isRunning(double time) const {
  return std::any_of(animations_.begin(), animations_.end(), [&](const auto& a) { return a->isRunning(time); });
}

}  // namespace zelkon
