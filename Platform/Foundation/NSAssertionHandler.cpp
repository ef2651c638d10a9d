#include "Foundation/NSAssertionHandler.h"

#include <utility>

#include "Foundation/NSException.h"
#include "Foundation/NSLog.h"
#include "Foundation/PlatformSession.h"

namespace zelkon {

namespace {

NSAssertionHandler::Handler& installed() {
  return PlatformSession::part<NSAssertionHandler::Handler>(PlatformSession::Key::assertionHandler);
}

}  // namespace

NSAssertionHandler::Handler NSAssertionHandler::setHandler(Handler handler) {
  return std::exchange(installed(), std::move(handler));
}

void NSAssertionHandler::handleFailure(const AssertionFailure& failure) {
  if (const Handler handler = installed())
    handler(failure);
  else
    NSLog("*** Assertion failure in " + failure.operation + ", " + failure.file + ":" + std::to_string(failure.line));
  NSRaise(NSInternalInconsistencyException, failure.text);
}

}  // namespace zelkon
