// Makes a row of axis labels fit side by side: first in a narrower font, then in a smaller one, at last by leaving
// labels out. A label that was left out is empty and its rectangle is the zero rectangle.
#pragma once

#include <vector>

#include "CoreText/NSAttributedString.h"

namespace zelkon {

struct NSDateFormatter;

// One label per entry and the rectangle reserved for it, parallel.
struct LabelRow {
  std::vector<NSAttributedString> labels;
  std::vector<CGRect> rects;
};

namespace labelfitting {

// Greatest width and greatest height, each taken separately; (0, 0) for none.
CGSize maxSize(const std::vector<NSAttributedString>& labels);

// Whether some label is wider than its own rectangle, or comes nearer than `margin` (points) to the one before it.
// Labels without text take no part.
bool overlap(const LabelRow& row, double margin);
// The labels with every font changed: `sizeDelta` points larger, the width entry of its descriptor larger by
// `widthDelta`.
std::vector<NSAttributedString> adjusted(const std::vector<NSAttributedString>& labels, double sizeDelta,
                                         double widthDelta);
// Whether every font stays at 10 points or more.
bool canAdjust(const std::vector<NSAttributedString>& labels, double sizeDelta);
// Keeps the middle label of every `groupSize`, over the span of its group; a tail that is no full group is merged with
// the end of the row.
LabelRow concatenated(const LabelRow& row, size_t groupSize);

// Fits by merging into groups of 3, 5, 7, ... when no font does. A row that fits comes back as it is.
void fit(LabelRow& row, double margin);
// Fits by keeping the labels of quarter starts, then January and July, then January; the texts are read by the
// formatter.
void fitMonths(LabelRow& row, double margin, const NSDateFormatter& formatter);

}  // namespace labelfitting
}  // namespace zelkon
