// AppKit's drawing and measuring of attributed text: integral line heights, fractional widths.
#pragma once

#include "CoreText/NSAttributedString.h"

namespace zelkon {

// One unbroken line relative to its baseline origin: (0, -round(descent)) with the typographic size; the limit is
// ignored.
CGRect NSBoundingRectWithSize(const NSAttributedString& text, CGSize limit);
// Into the current graphics context: first line's top at the top edge of the rectangle (unflipped), baseline
// round(ascent) below it, words wrapped at its width, clipped to it. No context or an empty rectangle: nothing.
void NSDrawInRect(const NSAttributedString& text, CGRect rect);

}  // namespace zelkon
