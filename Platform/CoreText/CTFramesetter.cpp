#include "CoreText/CTFramesetter.h"

#include <algorithm>

#include "CoreGraphics/CGContext.h"
#include "CoreText/CTTypesetter.h"

namespace zelkon {

namespace {

constexpr double heightTolerance = 1e-6;

double inkWidth(const CTLine& line) { return line.width - line.trailingWhitespace; }

NSLineBreakMode modeOfTextBox(const CTTextBoxStyle& style) {
  if (style.wrapped) return NSLineBreakMode::wordWrapping;
  if (!style.truncation) return NSLineBreakMode::clipping;
  switch (*style.truncation) {
    case CTLineTruncation::start:
      return NSLineBreakMode::truncatingHead;
    case CTLineTruncation::end:
      return NSLineBreakMode::truncatingTail;
    case CTLineTruncation::middle:
      break;
  }
  return NSLineBreakMode::truncatingMiddle;
}

}  // namespace

void CTFrame::draw(CGContext& context) const {
  for (const PlacedLine& placed : lines)
    CTLineDraw(placed.line, context, {rect.origin.x + placed.origin.x, rect.origin.y + placed.origin.y});
}

CTFramesetter::CTFramesetter(NSAttributedString text, NSParagraphStyle style) : text_(std::move(text)), style_(style) {}

CTFrame CTFramesetter::createFrame(CGRect rect) const {
  rect = CGRectStandardize(rect);
  CTFrame frame{rect, {}};
  CTTypesetter typesetter(text_, style_.lineBreakMode);
  double top = rect.size.height;
  while (std::optional<CTLine> line = typesetter.nextLine(rect.size.width)) {
    const double baseline = top - line->ascent;
    if (!(baseline - line->descent >= -heightTolerance)) break;
    top -= CTLinePitch(*line);
    const double x = CTAlignmentOffset(*line, style_.alignment, rect.size.width);
    frame.lines.push_back({std::move(*line), {x, baseline}});
  }
  return frame;
}

CGSize CTFramesetter::suggestFrameSize(CGSize constraints) const {
  CGSize size;
  CTTypesetter typesetter(text_, style_.lineBreakMode);
  while (const std::optional<CTLine> line = typesetter.nextLine(constraints.width)) {
    if (!(size.height + line->ascent + line->descent <= constraints.height + heightTolerance)) break;
    size.width = std::max(size.width, std::min(inkWidth(*line), constraints.width));
    size.height += CTLinePitch(*line);
  }
  return size;
}

CTFrame CTLayOutTextBox(const NSAttributedString& text, const CTTextBoxStyle& style, CGRect bounds) {
  bounds = CGRectStandardize(bounds);
  CTFrame frame{bounds, {}};
  const double width = bounds.size.width;
  CTTypesetter typesetter(text, modeOfTextBox(style));
  double top = bounds.size.height;
  size_t begin = 0;  // of the line that was placed last
  while (true) {
    const size_t offset = typesetter.offset();
    std::optional<CTLine> line = typesetter.nextLine(width);
    if (!line) break;
    const double baseline = top - line->ascent;
    if (!frame.lines.empty() && !(baseline >= -heightTolerance)) {
      if (style.wrapped && style.truncation)
        frame.lines.back().line =
            CTLineCreateTruncatedRange(text, begin, text.string().size(), width, *style.truncation);
      break;
    }
    begin = offset;
    top -= CTLinePitch(*line);
    frame.lines.push_back({std::move(*line), {0, baseline}});
  }
  for (CTFrame::PlacedLine& placed : frame.lines)
    placed.origin.x = CTAlignmentOffset(placed.line, style.alignment, width);
  return frame;
}

}  // namespace zelkon
