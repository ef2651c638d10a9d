// What a gradient covers.
#pragma once

#include "CoreGraphics/CGGradient.h"
#include "CoreGraphics/CGPath.h"

namespace zelkon {

// The part of `visible` that the gradient paints under its options: the band between its lines, the disc, or more where
// it goes on beyond them. All in the gradient's own space; the path may reach beyond `visible`. Empty when nothing is
// painted.
CGPath gradientRegion(const CGGradientPlacement& placement, CGRect visible);

}  // namespace zelkon
