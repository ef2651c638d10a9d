// The animations of one layer, in order of adding.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "QuartzCore/CALayerProperties.h"

namespace zelkon {

class CAAnimationSet;

// A layer's own copy of an animation and what became of it.
struct CAAttachedAnimation {
  CABasicAnimation animation;
  std::string key;
  unsigned long serial = 0;                         // counts up with every animation added to any layer
  std::optional<double> start;                      // media time at which it begins; none while it waits for a commit
  std::optional<CAAnimatableValue> shownWhenAdded;  // what the layer showed; from here when it says neither end
  bool stopTold = false;                            // its delegate has heard, or is about to hear, that it ended
  std::weak_ptr<CAAnimationSet> set;

  double end() const { return *start + animation.duration; }
  bool isRunning(double time) const { return !start || time < end(); }
};

class CAAnimationSet : public std::enable_shared_from_this<CAAnimationSet> {
 public:
  // `didChange` is called when the end of an animation takes it out of the set.
  explicit CAAnimationSet(std::function<void()> didChange) : didChange_(std::move(didChange)) {}

  // Takes the place of an animation under the same key, which is told that it did not finish. An empty key: no name.
  void add(CABasicAnimation animation, const std::string& key, std::optional<CAAnimatableValue> shown);
  // Takes it out; its delegate will be told that it did not finish unless it has been told already.
  void remove(const std::string& key);
  void removeAll();
  void removeStarted();  // those that do not wait for a commit
  const CABasicAnimation* find(const std::string& key) const;
  std::vector<std::string> keys() const;
  bool isEmpty() const { return animations_.empty(); }

  // Gives the waiting ones their place on the media clock.
  void start(double now);
  // Its time has run out: out of the set unless it is to stay.
  void didEnd(const CAAttachedAnimation& animation);
  // Puts the animated values of the time into `p`.
  void apply(CALayerProperties& p, double time) const;
  bool isRunning(double time) const;
  // Calls `visit(keyPath)` for each one that is running or waiting.
  template <typename Visit>
  void forEachRunning(double time, Visit visit) const {
    for (const auto& attached : animations_)
      if (attached->isRunning(time)) visit(attached->animation.keyPath);
  }
  // The layer is going: no more calls to it.
  void detach() { didChange_ = nullptr; }

 private:
  template <typename Matches>
  void removeIf(Matches matches);
  std::vector<std::shared_ptr<CAAttachedAnimation>> animations_;
  std::function<void()> didChange_;
};

}  // namespace zelkon
