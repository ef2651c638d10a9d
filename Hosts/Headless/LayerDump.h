// The layer tree of a view as JSON, for comparing hosts and for looking inside a chart.
#pragma once

#include <string>

#include "Classes/Views/CALayerPlotView.h"

namespace zelkon {

// Geometry in points, y up; transforms as 16 numbers, left out when identity; `presentation` holds the values that
// animations show at `time`. Null for the layers of a view that is gone. Beside the tree stands what the plotter of a
// chart over time works with, the hit rectangle of each of its entries included (zero for an entry that cannot be hit).
// One trailing newline.
std::string layerDump(const CALayerPlotView* view, double time);

}  // namespace zelkon
