#include <cmath>
#include <limits>

#include "Classes/Utilities/NSColor+CGColorRef.h"
#include "Classes/Views/PiePlotView.h"
#include "Foundation/NSAssertionHandler.h"

namespace zelkon {

namespace {

constexpr const char* sourceFile = "Classes/Views/PiePlotView";
constexpr const char* isFoundCondition = "NSNotFound != index";
constexpr double pi = 3.141592653589793;
constexpr int64_t NSNotFound = std::numeric_limits<int64_t>::max();

}  // namespace

void PiePlotView::replaceTrackingArea() {
  if (trackingArea_) removeTrackingArea(trackingArea_);
  trackingArea_ = std::make_shared<NSTrackingArea>();
  trackingArea_->rect = NSZeroRect;
  trackingArea_->options =
      NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveInKeyWindow | NSTrackingInVisibleRect;
  trackingArea_->owner = weak_from_this();
  addTrackingArea(trackingArea_);
}

PiePlotEntryRef PiePlotView::_entryForPoint(CGPoint point) const {
  const std::shared_ptr<const PiePlotData> data = piePlotData();
  if (!data) return nullptr;
  CGRect plot = bounds();
  plot.origin.y += 17;
  plot.size.height -= 17;
  // The middle of a plot area of negative height, as the sides give it.
  const double dx = point.x - (plot.origin.x + plot.size.width / 2);
  const double dy = point.y - (plot.origin.y + plot.size.height / 2);
  if (!(std::sqrt(dx * dx + dy * dy) <= pieRadius())) return nullptr;
  double angle = std::atan2(static_cast<float>(dy), static_cast<float>(dx));
  if (angle < 0) angle = static_cast<float>(angle + 2 * pi);
  double share = 0;
  for (const PiePlotEntryRef& entry : data->entries()) {
    share += entry->fraction;
    if (angle <= share * 2 * pi || entry == data->entries().back()) return entry;
  }
  return nullptr;
}

std::vector<ReachableEntry> PiePlotView::reachableEntries() const {
  std::vector<ReachableEntry> reachable;
  const std::shared_ptr<const PiePlotData> data = piePlotData();
  if (!data) return reachable;
  const CGSize size = bounds().size;
  const CGPoint center{size.width / 2, 17 + (size.height - 17) / 2};
  const double halfRadius = pieRadius() / 2;
  double before = 0;
  reachable.reserve(data->count());
  for (const PiePlotEntryRef& entry : data->entries()) {
    const double angle = (before + entry->fraction / 2) * 2 * pi;
    before += entry->fraction;
    reachable.push_back({CGPoint{center.x + std::cos(angle) * halfRadius, center.y + std::sin(angle) * halfRadius},
                         entry->key, entry->value, entry->fraction});
  }
  return reachable;
}

int64_t PiePlotView::indexOfEntry(const PiePlotEntryRef& entry) const {
  const std::shared_ptr<const PiePlotData> data = piePlotData();
  for (size_t i = 0; data && i < data->count(); ++i)
    if (data->entries()[i] == entry) return static_cast<int64_t>(i);
  return NSNotFound;
}

void PiePlotView::mouseDown(const NSEvent& event) {
  const PiePlotEntryRef entry = _entryForPoint(layerPointForWindowPoint(event.locationInWindow));
  if (!entry) return;
  const int64_t index = indexOfEntry(entry);
  NSParameterAssert(index != NSNotFound, isFoundCondition, "-[PiePlotView mouseDown:]", this, sourceFile, 380);
  callPage("SpendingTrendsSliceClicked", {index});
}

void PiePlotView::mouseMoved(const NSEvent& event) {
  const std::shared_ptr<NSView> self = shared_from_this();
  const PiePlotEntryRef entry = _entryForPoint(layerPointForWindowPoint(event.locationInWindow));
  const PiePlotEntryRef old = currentHoverEntry_;
  if (entry == old) return;
  currentHoverEntry_ = entry;
  if (!entry) {
    callPageAboutHover(-1, old ? indexOfEntry(old) : -1);
  } else {
    _hoverEntry(entry);
    const int64_t index = indexOfEntry(entry);
    // From outside the pie there is no old entry to be found, and the page hears of the not-found value.
    const int64_t previous = indexOfEntry(old);
    NSParameterAssert(index != NSNotFound, isFoundCondition, "-[PiePlotView mouseMoved:]", this, sourceFile, 431);
    callPageAboutHover(index, previous);
  }
  _clearHoverStatesExceptingEntry(entry);
}

void PiePlotView::mouseExited(const NSEvent&) {
  const std::shared_ptr<NSView> self = shared_from_this();
  callPageAboutHover(-1, -1);
  currentHoverEntry_ = nullptr;
  _clearHoverStatesExceptingEntry(nullptr);
}

void PiePlotView::callPageAboutHover(int64_t index, int64_t previous) {
  callPage("SpendingTrendsSliceHoverIndex", {index, previous});
}

void PiePlotView::_hoverEntry(const PiePlotEntryRef& entry) {
  if (entry->hover) return;
  const std::shared_ptr<PieSliceLayer> slice = entry->layerValue.lock();
  const CALayerRef label = entry->textLayerValue.lock();
  entry->hover = true;
  // Above its neighbours, whose edges its outline overlaps.
  if (const CALayerRef slices = slice ? slice->superlayer() : nullptr) slices->addSublayer(slice);
  NSParameterAssert(indexOfEntry(entry) != NSNotFound, "NSNotFound != foundIndex", "-[PiePlotView _hoverEntry:]", this,
                    sourceFile, 980);
  if (slice) {
    slice->setFilters({CIFilterCreate(CIExposureAdjust{0.5})});
    if (const CGColorRef border = NSColorGetCGColor(NSColor::colorWithCalibratedWhite(1, 0.25))) {
      slice->setSliceBorderColor(border);
      slice->setSliceBorderWidth(1);
    }
    slice->setNeedsLayout();
  }
  if (label) {
    label->setTransform(CATransform3DRotate(label->transform(), -pi, 0, 0, 1));
    label->setHidden(false);
  }
}

void PiePlotView::_clearHoverStatesExceptingEntry(const PiePlotEntryRef& kept) {
  const std::shared_ptr<const PiePlotData> data = piePlotData();
  if (!data) return;
  for (const PiePlotEntryRef& entry : data->entries()) {
    if (entry == kept || !entry->hover) continue;
    const std::shared_ptr<PieSliceLayer> slice = entry->layerValue.lock();
    if (slice) {
      slice->setFilters({});
      slice->setSliceBorderColor(nullptr);
      slice->setSliceBorderWidth(0);
    }
    if (const CALayerRef label = entry->textLayerValue.lock()) {
      label->setTransform(CATransform3DRotate(label->transform(), pi, 0, 0, 1));
      label->setHidden(true);
    }
    if (slice) slice->setNeedsLayout();
    entry->hover = false;
  }
}

}  // namespace zelkon
