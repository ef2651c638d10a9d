// The drawing device and fonts that all targets of a process share.
#pragma once

#include "Hosts/Headless/ScenarioPlayer.h"

namespace zelkon {

inline HeadlessServices& fuzzServices() {
  static HeadlessServices installed;
  return installed;
}

}  // namespace zelkon
