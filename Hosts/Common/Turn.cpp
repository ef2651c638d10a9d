#include "Hosts/Common/Turn.h"

#include "Foundation/NSRunLoop.h"
#include "Hosts/Common/LoggedExceptions.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {

void beginTurn(const std::vector<HostedChart*>& charts, double now, bool reducesMotion) {
  logExceptions([&] { NSRunLoop::mainRunLoop().runDue(now); });
  for (HostedChart* chart : charts) logExceptions([&] { chart->refreshIfNeeded(); });
  logExceptions([] { CATransaction::flush(); });
  if (reducesMotion) {
    for (HostedChart* chart : charts) chart->finishAnimations();
  }
  CASetCurrentMediaTime(now);
}

void endTurn(const std::vector<HostedChart*>& charts) {
  for (HostedChart* chart : charts) chart->turnEnded();
  logExceptions([] { CATransaction::deliverEndedAnimations(); });
}

}  // namespace zelkon
