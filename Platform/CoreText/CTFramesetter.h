// Lines out of attributed text: breaking, truncation, alignment and frame sizes, over one primitive, the advance of a
// run.
#pragma once

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

struct CTFrame {
  struct PlacedLine {
    CTLine line;
    CGPoint origin;  // baseline origin, relative to the lower left corner of the frame's rectangle
  };
  CGRect rect;
  std::vector<PlacedLine> lines;
  void draw(CGContext& context) const;
};

class CTFramesetter {
 public:
  // Truncating modes give one line per paragraph, each cut by itself; word wrapping breaks at words and, where a word
  // is wider than the line, between characters.
  explicit CTFramesetter(NSAttributedString text, NSParagraphStyle style);
  // Lines from the top: first baseline at maxY - ascent (unrounded), next ones lower by the line pitch. Lines whose
  // descent does not fit are left out.
  CTFrame createFrame(CGRect rect) const;
  // Widest line and summed pitches of the lines that fit the constraints; (0, 0) for an empty text.
  CGSize suggestFrameSize(CGSize constraints) const;

 private:
  std::vector<CTLine> linesForWidth(double width) const;
  NSAttributedString text_;
  NSParagraphStyle style_;
};

// Distance of baselines in a frame: rounded ascent, descent and leading, with the extra fifth of some families.
double CTLinePitch(const CTLine& line);

// Text as a text layer shows it: wrapped or one line per paragraph, the last line that fits cut with an ellipsis when
// there is more and `truncation` says where. First line's ascent touches the top of `bounds`.
struct CTTextBoxStyle {
  bool wrapped = false;
  std::optional<CTLineTruncation> truncation;
  NSTextAlignment alignment = NSTextAlignment::natural;
};
CTFrame CTLayOutTextBox(const NSAttributedString& text, const CTTextBoxStyle& style, CGRect bounds);

}  // namespace zelkon
