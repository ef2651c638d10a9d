#include "AppKit/NSStringDrawing.h"

#include <algorithm>

#include "AppKit/NSGraphicsContext.h"
#include "CoreText/CTTypesetter.h"

namespace zelkon {

CGRect NSBoundingRectWithSize(const NSAttributedString& text, CGSize) {
  double descent = 0;
  for (const NSAttributedString::Run& run : text.runs())
    descent = std::max(descent, -run.attributes.fontOrDefault().descender());
  // Written as a difference, so that an empty text gives 0 and not -0.
  return {{0, 0 - CTRoundMetric(descent)}, text.size()};
}

void NSDrawInRect(const NSAttributedString& text, CGRect rect) {
  const auto current = NSGraphicsContext::currentContext();
  if (!current || current->graphicsPort() == nullptr || NSIsEmptyRect(rect) || text.isEmpty()) return;
  CGContext& context = *current->graphicsPort();
  context.saveGState();
  if (current->isFlipped()) {
    context.translateCTM(0, CGRectGetMinY(rect) + CGRectGetMaxY(rect));
    context.scaleCTM(1, -1);
  }
  context.clipToRect(rect);
  const NSParagraphStyle style = text.paragraphStyle();
  CTTypesetter typesetter(text, style.lineBreakMode);
  double top = CGRectGetMaxY(rect);
  while (top > CGRectGetMinY(rect)) {
    const std::optional<CTLine> line = typesetter.nextLine(rect.size.width);
    if (!line) break;
    const double x = CGRectGetMinX(rect) + CTAlignmentOffset(*line, style.alignment, rect.size.width);
    CTLineDraw(*line, context, {x, top - CTRoundMetric(line->ascent)});
    top -= CTCompatibleLineHeight(*line);
  }
  context.restoreGState();
}

}  // namespace zelkon
