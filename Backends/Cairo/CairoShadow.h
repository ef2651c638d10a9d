// Effects on the pixels of finished groups: shadows and brightness. For the backend's own sources.
#pragma once

#include "Backends/Cairo/CairoHandles.h"
#include "Backends/Cairo/ClippedRows.h"
#include "Backends/Cairo/GaussianBlur.h"

namespace zelkon {

// The blurred alpha of a drawing: an 8-bit picture whose top left corner lies at (x, y) in the drawing's own pixels.
struct ShadowMask {
  CairoSurfaceHandle alpha;  // null when there is nothing to see
  double x = 0, y = 0;
};

// Blurs the alpha of `drawing` (an image with a device offset, or a recording) with a gaussian of `sigma` of its
// pixels. Only what can be seen in `visible` is made, at `resolution` pixels per pixel of the drawing.
ShadowMask shadowMask(cairo_surface_t* drawing, PixelBox visible, double sigma, double resolution);

// Multiplies the plain components by the factor, at most 1; alpha as it is.
void brightenPixels(cairo_surface_t* image, double factor);
CairoSurfaceHandle brightenedCopy(cairo_surface_t* image, double factor);

}  // namespace zelkon
