// What hosts need to know of a chart over time.
#include "Classes/Views/BarOrLineView.h"

namespace zelkon {
namespace {

ReachableEntry period(const PlotEntry& entry) { return {std::nullopt, *entry.humanX, *entry.humanY, Value()}; }

}  // namespace

// Callouts, labels and two lines of names leave room for gridlines above and below zero.
CGSize BarOrLineView::minimumLayoutSize() const { return {160, 140}; }

std::vector<ReachableEntry> BarOrLineView::reachableEntries() const {
  std::vector<ReachableEntry> reachable;
  if (!plotter_ || !plotter_->plotData()) return reachable;
  const PlotEntryList& entries = *plotter_->plotData();
  reachable.reserve(entries.count());
  for (size_t i = 0; i < entries.count(); ++i) {
    const PlotEntryRef entry = entries.entry(i);
    reachable.push_back(period(*entry));
    const CGRect place = CGRectIntersection(plotter_->rectForEntry(entry), bounds());
    if (!NSIsEmptyRect(place)) reachable.back().point = {CGRectGetMidX(place), CGRectGetMidY(place)};
  }
  return reachable;
}

PlotEntryListRef BarOrLineView::periods() const {
  return isDisplayed() ? plotterEntries_ : std::dynamic_pointer_cast<const PlotEntryList>(plotData());
}

size_t BarOrLineView::numberOfPeriods() const {
  const PlotEntryListRef entries = periods();
  return entries ? entries->count() : 0;
}

ReachableEntry BarOrLineView::periodAtIndex(size_t index) const { return period(*periods()->entry(index)); }

CALayerPlotView::NamedValues BarOrLineView::plotterProperties() const {
  return plotter_ ? plotter_->properties() : NamedValues();
}

}  // namespace zelkon
