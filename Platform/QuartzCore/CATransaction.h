// Groups of layer changes of the current session. The host says what time it is.
#pragma once

#include <optional>
#include <string>

#include "Foundation/Value.h"
#include "QuartzCore/CAAnimation.h"

namespace zelkon {

inline constexpr const char* kCATransactionDisableActions = "disableActions";
inline constexpr const char* kCATransactionAnimationDuration = "animationDuration";

class CATransaction {
 public:
  static void begin();
  // Closes the innermost level; the outermost one carries out layout and display and starts the animations added in it,
  // unless an implicit transaction is open, which carries them out at the end of the turn. Unmatched: nothing.
  static void commit();
  // The same where nothing may be raised: what a drawing raises is raised by the next flush, the first of several.
  static void commitQuietly() noexcept;
  // Commits the implicit transaction: the end of a run-loop turn. Raises what a drawing has raised.
  static void flush();

  static bool disableActions();
  static void setDisableActions(bool disable);
  static double animationDuration();  // seconds, 0.25 unless set
  static void setAnimationDuration(double seconds);
  static std::optional<CAMediaTimingFunction> animationTimingFunction();
  static void setAnimationTimingFunction(std::optional<CAMediaTimingFunction> function);
  static void setValue(Value value, const std::string& key);
  static Value valueForKey(const std::string& key);

  // Delivers animationDidStop for everything that ended at or before the current media time or was removed, in order of
  // end time, equal times in order of adding.
  static void deliverEndedAnimations();
  // Whether any animation is running or waiting to be delivered.
  static bool hasRunningAnimations();

  // A layer has changed: opens the implicit transaction when none is open.
  static void noteChange();
};

// Seconds on the media clock. The host advances it, once per turn; it never goes back.
double CACurrentMediaTime();
void CASetCurrentMediaTime(double seconds);

// begin/commit with implicit actions off, for one scope. It ends without raising, however it is left.
class CATransactionWithoutActions {
 public:
  CATransactionWithoutActions() {
    CATransaction::begin();
    CATransaction::setValue(true, kCATransactionDisableActions);
  }
  ~CATransactionWithoutActions() { CATransaction::commitQuietly(); }
  CATransactionWithoutActions(const CATransactionWithoutActions&) = delete;
  CATransactionWithoutActions& operator=(const CATransactionWithoutActions&) = delete;
};

}  // namespace zelkon
