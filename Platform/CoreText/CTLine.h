// One line of attributed text, laid out: measuring, truncation and drawing over one primitive, the advance of a run.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "CoreText/NSAttributedString.h"

namespace zelkon {

class CGContext;

// One laid-out line: pieces in visual order from x = 0.
struct CTLine {
  struct Piece {
    CTFont font;
    CGColorRef color;  // null = black
    std::string text;
    double x;  // from the line's left end
  };
  std::vector<Piece> pieces;
  double width = 0;                             // sum of advances, trailing white space included
  double trailingWhitespace = 0;                // part of the width that alignment does not count
  double ascent = 0, descent = 0, leading = 0;  // maxima over the pieces, unrounded, positive
  bool hasExtraPitch = false;                   // a piece's family adds a fifth between lines
  bool isTruncated = false;
  std::string text() const;
};

// One line of the whole text (line breaks become spaces).
CTLine CTLineCreate(const NSAttributedString& text);
enum class CTLineTruncation { start, end, middle };
// The text as one line no wider than `width`, "…" standing for what was taken out; a line that fits comes back whole. A
// width below the ellipsis' own gives an empty line.
CTLine CTLineCreateTruncated(const NSAttributedString& text, double width, CTLineTruncation truncation);
void CTLineDraw(const CTLine& line, CGContext& context, CGPoint baseline);

// Characters [begin, end) of the text (byte offsets at code points) as one line. An empty range gives an empty line as
// high as the character before it.
CTLine CTLineCreateWithRange(const NSAttributedString& text, size_t begin, size_t end);
// Sum of advances over the range, without laying it out.
double CTWidthOfRange(const NSAttributedString& text, size_t begin, size_t end);
// The end of the longest beginning of the range that is no wider than `width`, at a whole character; `begin` when not
// even the first one fits.
size_t CTFittingPrefixEnd(const NSAttributedString& text, size_t begin, size_t end, double width);
// The beginning of the longest ending of the range that is no wider than `width`.
size_t CTFittingSuffixBegin(const NSAttributedString& text, size_t begin, size_t end, double width);
// As CTLineCreateTruncated, of the characters [begin, end).
CTLine CTLineCreateTruncatedRange(const NSAttributedString& text, size_t begin, size_t end, double width,
                                  CTLineTruncation truncation);

// Where the line's left end goes in a box of the width, from the box's left edge; trailing white space does not count.
double CTAlignmentOffset(const CTLine& line, NSTextAlignment alignment, double width);

// Distance of baselines in a frame: rounded ascent, descent and leading, with the extra fifth of some families.
double CTLinePitch(const CTLine& line);
// Height of a line as AppKit measures it: rounded ascent, descent and leading without the extra.
double CTCompatibleLineHeight(const CTLine& line);

// Half a point rounds up, as text metrics are rounded.
inline double CTRoundMetric(double value) { return std::floor(value + 0.5); }

}  // namespace zelkon
