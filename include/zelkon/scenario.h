// Scenarios: JSON that says what a page does with a chart, as the command plays and renders them.
//
// Threads, ownership and errors as in charts.h.
#pragma once

#include <functional>
#include <string>

#include "zelkon/error.h"
#include "zelkon/picture.h"

namespace zelkon::plot {

// The chart at the end of the scenario (UTF-8 JSON). The scenario's own size, scale and locale count, not the
// picture's. It may not have steps that write files.
std::string render(const std::string& scenario, Format format = Format::png);

// Plays the scenario from its first step to its last. Files that steps name are written below `folder`, which must be
// there, and never elsewhere. `line` receives the transcript line by line, during the call and on its thread: what the
// page's functions were called with, results and log lines, each with the media time in seconds ("0.267 page
// GraphHasDisplayed()"). What `line` throws ends the play and passes.
void play(const std::string& scenario, const std::string& folder, const std::function<void(const std::string&)>& line);

}  // namespace zelkon::plot
