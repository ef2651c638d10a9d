// An entry of a chart as the keyboard and a screen reader reach it.
#pragma once

#include <optional>

#include "CoreGraphics/CGGeometry.h"
#include "Foundation/Value.h"

namespace zelkon {

struct ReachableEntry {
  std::optional<CGPoint> point;  // in the view, points, y up: a place that belongs to the entry alone, if it has any
  Value label;                   // the slice or the period
  Value amount;                  // a number, or text for people
  Value share;                   // of the whole, 0 to 1; null where there is no whole
};

}  // namespace zelkon
