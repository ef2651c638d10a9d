// Prefix codes as DEFLATE (RFC 1951) has them. For the backend's own sources.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zelkon {

struct HuffmanCode {
  std::vector<uint8_t> lengths;  // in bits, 0 for a symbol that does not occur
  std::vector<uint16_t> bits;    // the first bit of the code is the lowest
};

// The shortest code for symbols that occur as often as `counts` tells, none longer than `longest` bits (at most 15). At
// least two counts must not be 0; `longest` bits must be enough to tell those symbols apart.
HuffmanCode huffmanCode(const std::vector<uint32_t>& counts, int longest);

// The code with these lengths: among codes of one length, the symbols' order counts.
HuffmanCode huffmanCodeOfLengths(std::vector<uint8_t> lengths);

}  // namespace zelkon
