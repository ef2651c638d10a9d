// The bridge from platform colours to Core Graphics colours.
#pragma once

#include "AppKit/NSColor.h"
#include "CoreGraphics/CGColor.h"

namespace zelkon {

// The same colour in its own colour space, unconverted; the constant clear colour for one that has no components (a
// pattern, or a named colour not yet converted).
CGColorRef NSColorGetCGColor(const NSColor& color);

}  // namespace zelkon
