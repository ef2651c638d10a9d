// The services that the charts of one thread share.
#pragma once

#include "Hosts/Headless/ScenarioPlayer.h"

namespace zelkon {

// Made at a thread's first call, gone at its end. Throws NSException where there are no fonts.
HeadlessServices& threadServices();

}  // namespace zelkon
