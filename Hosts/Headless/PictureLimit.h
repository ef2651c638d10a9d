// How large the pictures of a scenario become, before any of them is drawn.
#pragma once

#include <string>

#include "Hosts/Headless/ScenarioPlayer.h"

namespace zelkon {

// Throws ScenarioError with the place of a size that makes a picture of more than options.mostPixels pixels: of a
// snapshot or a print in pixels and, where the scenario ends in one, of the picture of its end.
void checkPixels(const Scenario& scenario, const std::string& name, const PlayOptions& options, bool endsInPixels);

}  // namespace zelkon
