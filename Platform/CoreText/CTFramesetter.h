// Frames of lines out of attributed text: line breaking, alignment and frame sizes.
#pragma once

#include <optional>
#include <vector>

#include "CoreText/CTLine.h"

namespace zelkon {

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
  NSAttributedString text_;
  NSParagraphStyle style_;
};

// Text as a text layer shows it: wrapped or one line per paragraph, the last line that fits cut with an ellipsis when
// there is more and `truncation` says where. First line's ascent touches the top of `bounds`. A line fits when its
// baseline does; the first line is always there, however low the bounds.
struct CTTextBoxStyle {
  bool wrapped = false;
  std::optional<CTLineTruncation> truncation;
  NSTextAlignment alignment = NSTextAlignment::natural;
};
CTFrame CTLayOutTextBox(const NSAttributedString& text, const CTTextBoxStyle& style, CGRect bounds);

}  // namespace zelkon
