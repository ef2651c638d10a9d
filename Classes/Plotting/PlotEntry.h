// One amount over time, as the page named it for people and as a number.
#pragma once

#include <memory>
#include <string>

#include "Foundation/Value.h"

namespace zelkon {

// Texts are shared handles; a null one is absent.
struct PlotEntry {
  using Text = std::shared_ptr<const std::string>;
  Text humanX;                // name of the period; always there, never empty
  Text mediumHumanX;          // shorter; never empty
  Text shortHumanX;           // shortest; never empty
  Value shortHumanXSubtitle;  // second line under the short name; whatever the page gave, null when absent
  Text humanY;                // the amount as text; always there, never empty
  double y = 0;

  friend bool operator==(const PlotEntry& a, const PlotEntry& b);
};
using PlotEntryRef = std::shared_ptr<const PlotEntry>;

}  // namespace zelkon
