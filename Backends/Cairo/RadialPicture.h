// A radial gradient as pixels. Cairo's own looks for the stops at each pixel, which takes many times as long.
#pragma once

#include "Backends/Cairo/CairoHandles.h"
#include "CoreGraphics/CGGradient.h"

namespace zelkon {

// Pixels of premultiplied ARGB, `width` by `height`; `center` in pixels from the top left corner, `radius` in pixels.
// Beyond the radius the last colour goes on. Null when there is not memory enough.
CairoSurfaceHandle radialPicture(const CGGradient& gradient, CGPoint center, double radius, int width, int height);

}  // namespace zelkon
