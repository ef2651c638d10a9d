// Owners of Cairo's counted objects. Only for the backend's own sources: nothing outside it sees Cairo's headers.
#pragma once

#include <cairo.h>

#include <memory>

namespace zelkon {

struct CairoDeleter {
  void operator()(cairo_t* cr) const { cairo_destroy(cr); }
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
  void operator()(cairo_rectangle_list_t* list) const { cairo_rectangle_list_destroy(list); }
};
using CairoHandle = std::unique_ptr<cairo_t, CairoDeleter>;
using CairoSurfaceHandle = std::unique_ptr<cairo_surface_t, CairoDeleter>;
using CairoRectanglesHandle = std::unique_ptr<cairo_rectangle_list_t, CairoDeleter>;
using CairoPatternHandle = std::unique_ptr<cairo_pattern_t, CairoDeleter>;

}  // namespace zelkon
