#include "Classes/Plotting/LabelFitting.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "AppKit/NSStringDrawing.h"
#include "Foundation/Locale.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSLog.h"

namespace zelkon::labelfitting {
namespace {

constexpr double kSmallestFont = 10;
constexpr double kWidthStep = static_cast<double>(0.1f);
constexpr double kNarrowest = static_cast<double>(-0.3f);
// Makes the next width delta zero.
constexpr double kBeforeFullWidth = static_cast<double>(0.1f);
constexpr double kLargestFloat = 3.4028234663852886e38;

NSFont adjustedFont(const NSFont& font, double sizeDelta, double widthDelta) {
  NSFontDescriptor descriptor = NSFontDescriptorOfFont(font);
  descriptor.widthAtTopLevel = descriptor.widthTraitInTraits + widthDelta;
  return NSFontWithDescriptor(descriptor, descriptor.pointSize + sizeDelta);
}

NSAttributedString adjustedLabel(const NSAttributedString& label, double sizeDelta, double widthDelta) {
  return label.withFonts([&](const NSFont& font) { return adjustedFont(font, sizeDelta, widthDelta); });
}

// Where the label's text stands in its slot, or nothing when the slot is too narrow.
std::optional<CGRect> placedText(const NSAttributedString& label, const CGRect& slot) {
  CGRect text = NSBoundingRectWithSize(label, slot.size);
  if (slot.size.width < text.size.width) return std::nullopt;
  if (text.size.width == 0) return text;
  switch (label.paragraphStyle().alignment) {
    case NSTextAlignment::left:
    case NSTextAlignment::justified:
      text.origin.x += slot.origin.x;
      break;
    case NSTextAlignment::right:
      text.origin.x = slot.origin.x + slot.size.width - text.size.width;
      break;
    case NSTextAlignment::center:
      text.origin.x = slot.size.width * 0.5 + slot.origin.x - text.size.width * 0.5;
      break;
    case NSTextAlignment::natural:
      NSLog("Unrecognized text alignment in +[CashFlowPlot _labels:andRectsOverlap:withMargin:]");
      break;
  }
  return text;
}

// The overlap test over labels that are made one by one: it stops at the first that fails, so a trial that is hopeless
// costs one label.
template <typename LabelAt>
bool rowOverlaps(size_t count, LabelAt labelAt, const std::vector<CGRect>& rects, double margin) {
  CGRect previous = NSZeroRect;
  for (size_t i = 0; i < count; ++i) {
    const NSAttributedString label = labelAt(i);
    if (label.isEmpty()) continue;
    const std::optional<CGRect> text = placedText(label, rects[i]);
    if (!text) return true;
    CGRect shifted = *text;
    shifted.origin.x -= margin;
    if (NSIntersectsRect(shifted, previous)) return true;
    previous = *text;
  }
  return false;
}

// The walk over font widths and sizes that both ways of fitting share.
class FontTrials {
 public:
  enum class Outcome { fits, goOn, exhausted };
  Outcome next(const LabelRow& row, double margin) {
    width_ -= kWidthStep;
    if (width_ >= kNarrowest) {
      const auto trial = [&](size_t i) {
        if (i == sized_.size()) sized_.push_back(adjustedLabel(row.labels[i], size_, 0));
        return adjustedLabel(sized_[i], 0, width_);
      };
      return rowOverlaps(row.labels.size(), trial, row.rects, margin) ? Outcome::goOn : Outcome::fits;
    }
    size_ -= 1;
    sized_.clear();
    if (!canAdjust(row.labels, size_)) return Outcome::exhausted;
    width_ = kBeforeFullWidth;
    return Outcome::goOn;
  }
  // For a new set of labels.
  void restart() {
    size_ = 0;
    width_ = kBeforeFullWidth;
    sized_.clear();
  }
  std::vector<NSAttributedString> labels(const LabelRow& row) const { return adjusted(row.labels, size_, width_); }

 private:
  double size_ = 0, width_ = 0;
  // As many of the row's labels as the trials at this size have looked at, in it.
  std::vector<NSAttributedString> sized_;
};

class Span {
 public:
  void add(const CGRect& rect) {
    start_ = std::min(start_, rect.origin.x);
    end_ = std::max(end_, rect.origin.x + rect.size.width);
  }
  CGRect over(CGRect rect) const {
    const bool unset = start_ == kLargestFloat;
    if (unset && !mustBeSet_) return rect;
    NSParameterAssert(!unset && end_ != -kLargestFloat, "HUGE != startX && -HUGE != endX",
                      "+[CashFlowPlot _concatenateLabels:rects:intoGroupsOf:]", nullptr,
                      "Classes/Plotting/CashFlowPlot", __LINE__);
    rect.origin.x = start_;
    rect.size.width = end_ - start_;
    return rect;
  }
  void requireSet() { mustBeSet_ = true; }

 private:
  double start_ = kLargestFloat, end_ = -kLargestFloat;
  bool mustBeSet_ = false;
};

// What is left of a row that was merged, without the gaps.
struct Groups {
  LabelRow row;
  std::vector<size_t> places;  // of each label in the whole row
};

Groups mergedIntoGroups(const LabelRow& row, size_t groupSize) {
  Groups merged;
  const size_t count = row.labels.size();
  if (count == 0 || groupSize == 0) return merged;
  const auto middle = static_cast<size_t>(std::floor(static_cast<float>(groupSize - 1) * 0.5f));
  const auto keep = [&](size_t index, const Span& span) {
    merged.row.labels.push_back(row.labels[index]);
    merged.row.rects.push_back(span.over(row.rects[index]));
    merged.places.push_back(index);
  };

  const size_t full = count / groupSize;
  const bool hasTail = full * groupSize != count;
  // The tail is no group of its own: the last full group gives way to one that reaches the end.
  const size_t groups = hasTail && full > 0 ? full - 1 : full;
  merged.row.labels.reserve(groups + 1);
  merged.row.rects.reserve(groups + 1);
  merged.places.reserve(groups + 1);
  for (size_t group = 0; group < groups; ++group) {
    Span span;
    for (size_t i = 0; i < groupSize; ++i) span.add(row.rects[group * groupSize + i]);
    keep(group * groupSize + middle, span);
  }
  if (!hasTail) return merged;

  Span span;
  span.requireSet();
  const auto addFrom = [&](size_t first, size_t end) {
    for (size_t i = first; i < std::min(end, count); ++i) span.add(row.rects[i]);
  };
  size_t kept;
  if (full < 2) {
    kept = static_cast<size_t>(std::max(0.0, std::ceil(static_cast<double>(count) * 0.5 - 1)));
    const size_t half = groupSize / 2;
    const size_t first = kept > half ? kept - half : 0;
    addFrom(first, first + groupSize);
  } else {
    kept = count - groupSize + middle;
    addFrom(count - groupSize, count);
  }
  keep(kept, span);
  return merged;
}

// The row of so many places, empty between the groups.
LabelRow spread(const Groups& groups, size_t count) {
  LabelRow row;
  row.labels.resize(count);
  row.rects.resize(count, NSZeroRect);
  for (size_t i = 0; i < groups.places.size(); ++i) {
    row.labels[groups.places[i]] = groups.row.labels[i];
    row.rects[groups.places[i]] = groups.row.rects[i];
  }
  return row;
}

LabelRow thinnedToMonths(const LabelRow& row, const std::vector<int>& months, int divisor) {
  LabelRow thinned;
  thinned.labels.resize(row.labels.size());
  thinned.rects.resize(row.labels.size(), NSZeroRect);
  for (size_t i = 0; i < row.labels.size(); ++i) {
    const bool keep = months[i] == 1 || (divisor > 0 && (months[i] - 1) % divisor == 0);
    if (!keep) continue;
    thinned.labels[i] = row.labels[i];
    thinned.rects[i] = {row.rects[i].origin, row.labels[i].size()};
  }
  return thinned;
}

}  // namespace

CGSize maxSize(const std::vector<NSAttributedString>& labels) {
  CGSize result;
  for (const NSAttributedString& label : labels) {
    const CGSize size = label.size();
    result.width = std::max(result.width, size.width);
    result.height = std::max(result.height, size.height);
  }
  return result;
}

bool overlap(const LabelRow& row, double margin) {
  return rowOverlaps(
      row.labels.size(), [&](size_t i) { return row.labels[i]; }, row.rects, margin);
}

std::vector<NSAttributedString> adjusted(const std::vector<NSAttributedString>& labels, double sizeDelta,
                                         double widthDelta) {
  std::vector<NSAttributedString> result;
  result.reserve(labels.size());
  for (const NSAttributedString& label : labels) result.push_back(adjustedLabel(label, sizeDelta, widthDelta));
  return result;
}

bool canAdjust(const std::vector<NSAttributedString>& labels, double sizeDelta) {
  for (const NSAttributedString& label : labels)
    for (const NSAttributedString::Run& run : label.runs())
      if (run.attributes.fontOrDefault().pointSize() + sizeDelta < kSmallestFont) return false;
  return true;
}

LabelRow concatenated(const LabelRow& row, size_t groupSize) {
  return spread(mergedIntoGroups(row, groupSize), row.labels.size());
}

void fit(LabelRow& row, double margin) {
  if (!overlap(row, margin)) return;
  const size_t count = row.labels.size();
  // Groups of one at first.
  Groups groups{row, {}};
  FontTrials trials;
  size_t groupSize = 1;
  for (;;) {
    const FontTrials::Outcome outcome = trials.next(groups.row, margin);
    if (outcome == FontTrials::Outcome::goOn) continue;
    if (outcome == FontTrials::Outcome::fits) {
      groups.row.labels = trials.labels(groups.row);
      row = groupSize == 1 ? std::move(groups.row) : spread(groups, count);
      return;
    }
    groupSize += 2;
    trials.restart();
    if (groupSize >= count) {
      row = concatenated(row, count);
      return;
    }
    groups = mergedIntoGroups(row, groupSize);
  }
}

void fitMonths(LabelRow& row, double margin, const NSDateFormatter& formatter) {
  if (!overlap(row, margin)) return;
  const int monthsPerYear = NSCalendar::monthsPerYear();
  std::vector<int> months;
  LabelRow working = row;
  FontTrials trials;
  for (int level = 0;;) {
    const FontTrials::Outcome outcome = trials.next(working, margin);
    if (outcome == FontTrials::Outcome::fits) {
      row = {trials.labels(working), std::move(working.rects)};
      return;
    }
    if (outcome == FontTrials::Outcome::goOn) continue;
    if (months.empty()) {
      for (size_t i = 0; i < row.labels.size(); ++i) {
        // Of a month that has many labels one is read.
        const std::string& text = row.labels[i].string();
        const bool isSame = i > 0 && row.labels[i - 1].string() == text;
        months.push_back(isSame ? months.back() : NSCalendar::monthOfDate(formatter.monthFromString(text)));
      }
    }
    const int divisor = level == 0 ? monthsPerYear / 4 : level == 1 ? monthsPerYear / 2 : 0;
    LabelRow thinned = thinnedToMonths(row, months, divisor);
    ++level;
    // What this attempt tried is kept with the new rectangles: it is handed back when the pair fits, and in any case
    // once there is nothing left to thin.
    LabelRow pair{std::move(working.labels), thinned.rects};
    if (level == 3 || !overlap(pair, margin)) {
      row = std::move(pair);
      return;
    }
    working = std::move(thinned);
    trials.restart();
  }
}

}  // namespace zelkon::labelfitting
