// Every animation that has begun and not been reported yet, over all layers: who is told what, and in which order.
#pragma once

#include <memory>
#include <vector>

#include "QuartzCore/CAAnimationSet.h"

namespace zelkon {

class CAAnimationTimeline {
 public:
  // The session's.
  static CAAnimationTimeline& shared();

  double now() const { return now_; }
  void advanceTo(double seconds);  // never goes back

  void didStart(const std::shared_ptr<CAAttachedAnimation>& animation);
  // Taken from its layer: its delegate will hear that it did not finish, unless it has heard already.
  void didRemove(const std::shared_ptr<CAAttachedAnimation>& animation);
  // Tells the delegates what has begun and ended up to now: beginnings first, then ends in order of end time, equal
  // times in order of adding. What happens inside a delegate is told the next time.
  void deliver();
  // One more for every animation that is added to a layer.
  unsigned long nextSerial() { return ++serial_; }
  bool isBusy() const { return !running_.empty() || !stopped_.empty(); }

 private:
  struct Stop {
    double time;
    bool finished;
    std::shared_ptr<CAAttachedAnimation> animation;
  };
  using Animations = std::vector<std::shared_ptr<CAAttachedAnimation>>;
  Animations beginning_;  // started, delegate not told yet
  Animations running_;
  std::vector<Stop> stopped_;  // removed before the end
  double now_ = 0;
  unsigned long serial_ = 0;
};

}  // namespace zelkon
