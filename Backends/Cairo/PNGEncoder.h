// Pixels as the bytes of a PNG file.
#pragma once

#include <cairo.h>

#include <string>

namespace zelkon {

// Of an image surface of premultiplied ARGB: eight bits per component with plain alpha. Empty when there is not memory
// enough.
std::string encodedPNG(cairo_surface_t* image);

}  // namespace zelkon
