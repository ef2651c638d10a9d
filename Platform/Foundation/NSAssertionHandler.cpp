#include "Foundation/NSAssertionHandler.h"

#include <utility>

#include "Foundation/NSException.h"
#include "Foundation/NSLog.h"

namespace zelkon {

namespace {

NSAssertionHandler::Handler& threadHandler() {
  thread_local NSAssertionHandler::Handler handler;
  return handler;
}

}  // namespace

NSAssertionHandler::Handler NSAssertionHandler::setHandler(Handler handler) {
  return std::exchange(threadHandler(), std::move(handler));
}

void NSAssertionHandler::handleFailure(const AssertionFailure& failure) {
  if (const Handler handler = threadHandler())
    handler(failure);
  else
    NSLog("*** Assertion failure in " + failure.operation + ", " + failure.file + ":" + std::to_string(failure.line));
  NSRaise(NSInternalInconsistencyException, failure.text);
}

}  // namespace zelkon
