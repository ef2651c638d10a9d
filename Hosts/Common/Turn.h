// One turn of a host, over all charts of a session: events and script calls have been delivered before it.
//
// Order: what was scheduled for this turn runs; charts whose box changed get a fresh view; the implicit transaction
// commits (layout, display, new animations); the media clock advances; the host composes frames; animations that have
// ended are delivered. What one of these raises is logged, and the turn goes on.
#pragma once

#include <vector>

#include "Hosts/Common/HostedChart.h"

namespace zelkon {

// All but the last two. `now`: seconds on the media clock, never before the last turn's. `reducesMotion`: animations
// end where they began to run.
void beginTurn(const std::vector<HostedChart*>& charts, double now, bool reducesMotion);
// The last one.
void endTurn(const std::vector<HostedChart*>& charts);

}  // namespace zelkon
