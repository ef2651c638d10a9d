// A radial gradient as pixels. Cairo's own looks for the stops at each pixel, which takes many times as long.
#pragma once

#include "Backends/Cairo/CairoHandles.h"
#include "CoreGraphics/CGGradient.h"

namespace zelkon {

// Pixels of premultiplied ARGB, `width` by `height`; `center` in pixels from the top left corner, `radius` in pixels.
// Beyond the radius the last colour goes on. Null when there is not memory enough.
CairoSurfaceHandle radialPicture(const CGGradient& gradient, CGPoint center, double radius, int width, int height);

// Multiplies the pixels that the clip lets through by the gradient's alpha; `center` and `radius` in the device space
// of `cr`, whose target must be an image of premultiplied ARGB. False, and nothing done, where the clip cuts through
// pixels.
bool multiplyByRadialAlpha(cairo_t* cr, const CGGradient& gradient, CGPoint center, double radius);

}  // namespace zelkon
