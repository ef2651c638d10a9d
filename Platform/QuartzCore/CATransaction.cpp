#include "QuartzCore/CATransaction.h"

#include <exception>
#include <utility>
#include <vector>

#include "Foundation/PlatformSession.h"
#include "QuartzCore/CAAnimationTimeline.h"
#include "QuartzCore/CALayerCommit.h"

namespace zelkon {

namespace {

constexpr double defaultDuration = 0.25;

struct Level {
  double duration = defaultDuration;
  bool actionsDisabled = false;
  std::optional<CAMediaTimingFunction> timingFunction;
  ValueDictionary values;
};

// The open levels, outermost first. The implicit transaction, when there is one, is the first.
struct Stack {
  std::vector<Level> levels;
  bool implicit = false;
  std::exception_ptr failure;  // raised by a drawing where it could not go on to the caller

  const Level& top() const {
    static const Level none;
    return levels.empty() ? none : levels.back();
  }
  Level& openTop() {
    CATransaction::noteChange();
    return levels.back();
  }
};

Stack& stack() { return PlatformSession::part<Stack>(PlatformSession::Key::transactions); }

}  // namespace

void CATransaction::noteChange() {
  if (!stack().levels.empty()) return;
  stack().implicit = true;
  stack().levels.emplace_back();
}

void CATransaction::begin() {
  Level level = stack().top();
  stack().levels.push_back(std::move(level));
}

void CATransaction::commit() {
  Stack& open = stack();
  if (open.levels.size() <= (open.implicit ? 1u : 0u)) return;
  open.levels.pop_back();
  if (open.levels.empty()) CALayerCommit::run();
}

void CATransaction::commitQuietly() noexcept {
  try {
    commit();
  } catch (...) {
    if (!stack().failure) stack().failure = std::current_exception();
  }
}

void CATransaction::flush() {
  Stack& open = stack();
  if (open.levels.size() > (open.implicit ? 1u : 0u)) return;
  if (open.implicit) {
    open.levels.clear();
    open.implicit = false;
    try {
      CALayerCommit::run();
    } catch (...) {
      if (!open.failure) open.failure = std::current_exception();
    }
  }
  if (open.failure) std::rethrow_exception(std::exchange(open.failure, nullptr));
}

bool CATransaction::disableActions() { return stack().top().actionsDisabled; }
void CATransaction::setDisableActions(bool disable) { stack().openTop().actionsDisabled = disable; }
double CATransaction::animationDuration() { return stack().top().duration; }
void CATransaction::setAnimationDuration(double seconds) { stack().openTop().duration = seconds; }
std::optional<CAMediaTimingFunction> CATransaction::animationTimingFunction() { return stack().top().timingFunction; }
void CATransaction::setAnimationTimingFunction(std::optional<CAMediaTimingFunction> function) {
  stack().openTop().timingFunction = function;
}

void CATransaction::setValue(Value value, const std::string& key) {
  if (key == kCATransactionDisableActions)
    setDisableActions(value.boolValue());
  else if (key == kCATransactionAnimationDuration)
    setAnimationDuration(value.isNull() ? defaultDuration : value.doubleValue());
  else if (value.isNull())
    stack().openTop().values.erase(key);
  else
    stack().openTop().values[key] = std::move(value);
}

Value CATransaction::valueForKey(const std::string& key) {
  if (key == kCATransactionDisableActions) return disableActions();
  if (key == kCATransactionAnimationDuration) return animationDuration();
  const ValueDictionary& values = stack().top().values;
  const auto found = values.find(key);
  return found == values.end() ? Value() : found->second;
}

void CATransaction::deliverEndedAnimations() { CAAnimationTimeline::shared().deliver(); }
bool CATransaction::hasRunningAnimations() { return CAAnimationTimeline::shared().isBusy(); }

double CACurrentMediaTime() { return CAAnimationTimeline::shared().now(); }
void CASetCurrentMediaTime(double seconds) { CAAnimationTimeline::shared().advanceTo(seconds); }

}  // namespace zelkon
