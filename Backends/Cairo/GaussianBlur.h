// Gaussian blur of one channel, as shadows need it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zelkon {

// Blurs `values` (rows `stride` bytes apart, top to bottom, nothing beyond the edges) in place with a gaussian of
// standard deviation `sigma` in pixels. A sigma of 0 or less changes nothing.
void gaussianBlur(uint8_t* values, size_t stride, int width, int height, double sigma);

// How far, in whole pixels, a blur of that sigma can be seen.
int gaussianReach(double sigma);

}  // namespace zelkon
