// The platform's values as Cairo's: matrices, paths, operators, gradients. For the backend's own sources.
#pragma once

#include "Backends/Cairo/CairoHandles.h"
#include "CoreGraphics/CGContext.h"

namespace zelkon {

cairo_matrix_t cairoMatrix(const CGAffineTransform& t);
cairo_operator_t cairoOperator(CGBlendMode blend);
// Replaces the current path; the points are in the user space in force.
void setCairoPath(cairo_t* cr, const CGPath& path);
void setCairoColor(cairo_t* cr, const RGBA& color);
// Every plain component times `factor`, at most 1; alpha as it is.
RGBA brightened(const RGBA& color, double factor);
CGGradient brightened(const CGGradient& gradient, double factor);

// Paints the gradient over the clip, with the operator set. `premultiplies` tells that the target interpolates
// premultiplied colours; stops are then added so that plain interpolation comes out within 1/255.
void paintCairoGradient(cairo_t* cr, const CGGradient& gradient, const CGGradientPlacement& placement, double alpha,
                        bool premultiplies);

}  // namespace zelkon
