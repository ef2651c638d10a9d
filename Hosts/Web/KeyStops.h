// Where the keyboard can take the pointer of a chart, and what a screen reader says there.
#pragma once

#include <optional>
#include <vector>

#include "Classes/Views/CALayerPlotView.h"

namespace zelkon {

struct KeyStop {
  std::optional<CGPoint> point;  // in the view, y up: a place that belongs to the entry alone, if it has any
  Value label;                   // the slice or the period
  Value amount;                  // a number, or text for people
  Value share;                   // of the whole, 0 to 1; null where there is no whole
};

// One for each entry that is shown or too small to show, in the order of the data.
std::vector<KeyStop> KeyStopsOfView(const CALayerPlotView& view);

}  // namespace zelkon
