// Makes a row of axis labels fit side by side: first in a narrower font, then in a smaller one, at last by leaving
// labels out. A label that was left out has the zero rectangle; its text is empty but for the one case of fitMonths.
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
// The labels with every font changed: `sizeDelta` points larger, and beside the traits of its descriptor a width entry
// that is `widthDelta` more than the width among them. No face is matched by such an entry, so it changes no width.
std::vector<NSAttributedString> adjusted(const std::vector<NSAttributedString>& labels, double sizeDelta,
                                         double widthDelta);
// Whether every font would be of 10 points or more.
bool canAdjust(const std::vector<NSAttributedString>& labels, double sizeDelta);
// Keeps the middle label of every `groupSize`, over the span of its group. Where the last group is not full, it and the
// full one before it give way to one that ends with the row; where there are fewer than two full groups, one label in
// the middle of the row is kept, over as many places around it.
LabelRow concatenated(const LabelRow& row, size_t groupSize);

// Fits by merging into groups of 3, 5, 7, ... when no font does. A row that fits comes back as it is.
void fit(LabelRow& row, double margin);
// Fits by keeping the labels of quarter starts, then of January and July; the texts are read by the formatter. Where
// that is not enough, the labels of January and July come back, but with rectangles for January alone: July keeps its
// text and has no place to be drawn.
void fitMonths(LabelRow& row, double margin, const NSDateFormatter& formatter);

}  // namespace labelfitting
}  // namespace zelkon
