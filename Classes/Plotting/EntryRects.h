// Hit rectangles of plot entries, in root-layer coordinates. Entries are told apart by what they hold, so two equal
// ones share one rectangle, the later.
#pragma once

#include <map>
#include <vector>

#include "Classes/Plotting/PlotEntry.h"
#include "CoreGraphics/CGGeometry.h"

namespace zelkon {

class EntryRects {
 public:
  void clear();
  void set(const PlotEntryRef& entry, CGRect rect);
  // The first entry whose rectangle holds the point (left and bottom edges inside, right and top ones outside), or
  // null.
  PlotEntryRef entryAt(CGPoint point) const;
  // The zero rectangle for an entry without one, or for none.
  CGRect rectFor(const PlotEntryRef& entry) const;
  size_t count() const { return slots_.size(); }

 private:
  struct Slot {
    PlotEntryRef entry;
    CGRect rect;
  };
  const Slot* find(const PlotEntryRef& entry) const;
  std::vector<Slot> slots_;              // in order of first setting
  std::multimap<size_t, size_t> index_;  // from the hash of an entry to its slot
};

}  // namespace zelkon
