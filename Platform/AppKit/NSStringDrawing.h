// AppKit's drawing and measuring of attributed text: integral line heights, fractional widths.
#pragma once

#include "CoreText/NSAttributedString.h"

namespace zelkon {

// The text's own size, with lines that end where paragraphs end; the limit is ignored. Relative to the last line's
// baseline: the origin is (0, -round(descent)), by the font that descends lowest.
CGRect NSBoundingRectWithSize(const NSAttributedString& text, CGSize limit);
// Into the current graphics context: first line's top at the top edge of the rectangle, baseline round(ascent) below
// it, lines broken at its width and aligned as the paragraph style says (words are wrapped without one), clipped to it.
// Without a context, with an empty rectangle or an empty text nothing is drawn.
void NSDrawInRect(const NSAttributedString& text, CGRect rect);

}  // namespace zelkon
