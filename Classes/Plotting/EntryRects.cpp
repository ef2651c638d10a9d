#include "Classes/Plotting/EntryRects.h"

#include <functional>

namespace zelkon {

size_t EntryRects::Hash::operator()(const PlotEntryRef& entry) const {
  const size_t name = entry->humanX ? std::hash<std::string>()(*entry->humanX) : 0;
  // Adding zero makes one zero of both, as they compare equal.
  return name * 31 + std::hash<double>()(entry->y + 0.0);
}

void EntryRects::clear() {
  slots_.clear();
  index_.clear();
}

void EntryRects::set(const PlotEntryRef& entry, CGRect rect) {
  const auto [place, isNew] = index_.emplace(entry, slots_.size());
  if (isNew)
    slots_.push_back({entry, rect});
  else
    slots_[place->second].rect = rect;
}

PlotEntryRef EntryRects::entryAt(CGPoint point) const {
  for (const Slot& slot : slots_)
    if (CGRectContainsPoint(slot.rect, point)) return slot.entry;
  return nullptr;
}

CGRect EntryRects::rectFor(const PlotEntryRef& entry) const {
  if (!entry) return NSZeroRect;
  const auto place = index_.find(entry);
  return place == index_.end() ? NSZeroRect : slots_[place->second].rect;
}

}  // namespace zelkon
