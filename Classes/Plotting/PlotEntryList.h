// The entries of a chart of amounts over time, in order. A list may hold its amounts compactly and make an entry only
// when somebody asks for it.
#pragma once

#include <utility>
#include <vector>

#include "Classes/Plotting/PlotEntry.h"
#include "Classes/Views/PlotData.h"

namespace zelkon {

class PlotEntryList : public PlotData {
 public:
  virtual double y(size_t index) const = 0;
  virtual PlotEntryRef entry(size_t index) const = 0;
};
using PlotEntryListRef = std::shared_ptr<const PlotEntryList>;

// A list of entries that exist one by one.
class PlotEntryArray final : public PlotEntryList {
 public:
  explicit PlotEntryArray(std::vector<PlotEntryRef> entries) : entries_(std::move(entries)) {}
  size_t count() const override { return entries_.size(); }
  double y(size_t index) const override { return entries_[index]->y; }
  PlotEntryRef entry(size_t index) const override { return entries_[index]; }

 private:
  std::vector<PlotEntryRef> entries_;
};

}  // namespace zelkon
