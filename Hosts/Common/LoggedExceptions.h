// Where exceptions of the platform end when a host lets something run: in the log, as the web engine that drives a
// plug-in has it. What was stored before stays stored.
#pragma once

#include "Foundation/NSException.h"
#include "Foundation/NSLog.h"

namespace zelkon {

// Exceptions of other kinds pass.
template <typename Body>
void logExceptions(Body body) {
  try {
    body();
  } catch (const NSException& exception) {
    NSLog(exception.description());
  }
}

}  // namespace zelkon
