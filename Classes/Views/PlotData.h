// What a plot view shows. Each view keeps data of its own kind behind this base.
#pragma once

#include <cstddef>

namespace zelkon {

class PlotData {
 public:
  virtual ~PlotData() = default;
  virtual size_t count() const = 0;  // number of entries
};

}  // namespace zelkon
