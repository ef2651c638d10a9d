// Images mixed with what lies beneath by the overlay mode. Cairo's own operator works on one component after another.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Backends/Cairo/CairoHandles.h"

namespace zelkon {

// Mixes premultiplied ARGB pixels into those beneath them, `count` of both.
void overlayPixels(const uint32_t* source, uint32_t* beneath, size_t count);

// Paints an image with its top left corner at (x, y), in whole pixels of the device space of `cr`, whose target must be
// an image of premultiplied ARGB like the source. False, and nothing painted, where the clip cuts through pixels.
bool paintOverlay(cairo_t* cr, cairo_surface_t* image, double x, double y);

}  // namespace zelkon
