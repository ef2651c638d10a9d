#include "Classes/Plotting/EntryRects.h"

#include <functional>

namespace zelkon {

namespace {

size_t hashOf(const PlotEntry& entry) {
  const size_t name = entry.humanX ? std::hash<std::string>()(*entry.humanX) : 0;
  // Adding zero makes one zero of both, as they compare equal.
  return name * 31 + std::hash<double>()(entry.y + 0.0);
}

}  // namespace

void EntryRects::clear() {
  slots_.clear();
  index_.clear();
}

const EntryRects::Slot* EntryRects::find(const PlotEntryRef& entry) const {
  const auto [begin, end] = index_.equal_range(hashOf(*entry));
  for (auto place = begin; place != end; ++place) {
    const Slot& slot = slots_[place->second];
    if (slot.entry == entry || *slot.entry == *entry) return &slot;
  }
  return nullptr;
}

void EntryRects::set(const PlotEntryRef& entry, CGRect rect) {
  if (const Slot* slot = find(entry)) {
    slots_[static_cast<size_t>(slot - slots_.data())].rect = rect;
    return;
  }
  index_.emplace(hashOf(*entry), slots_.size());
  slots_.push_back({entry, rect});
}

PlotEntryRef EntryRects::entryAt(CGPoint point) const {
  for (const Slot& slot : slots_)
    if (CGRectContainsPoint(slot.rect, point)) return slot.entry;
  return nullptr;
}

CGRect EntryRects::rectFor(const PlotEntryRef& entry) const {
  const Slot* slot = entry ? find(entry) : nullptr;
  return slot ? slot->rect : NSZeroRect;
}

}  // namespace zelkon
