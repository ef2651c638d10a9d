// The components of pixels that the processor works on at once. For the backend's own sources.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zelkon {

constexpr size_t pixelsAtOnce = 2;

// Of two pixels of ARGB, each component with the room of sixteen bits. Both compilers know such types.
using Components = uint16_t __attribute__((vector_size(16)));

inline Components componentsAt(const uint32_t* pixels) {
  using Bytes = uint8_t __attribute__((vector_size(8)));
  Bytes bytes;
  std::memcpy(&bytes, pixels, sizeof bytes);
  return __builtin_convertvector(bytes, Components);
}

inline void storeComponents(const Components& components, uint32_t* pixels) {
  using Bytes = uint8_t __attribute__((vector_size(8)));
  const Bytes bytes = __builtin_convertvector(components, Bytes);
  std::memcpy(pixels, &bytes, sizeof bytes);
}

// Products of two components, at most 255 * 255, as components again: divided by 255 and rounded.
inline Components dividedBy255(const Components& products) {
  const Components half = products + 128;
  return (half + (half >> 8)) >> 8;
}

}  // namespace zelkon
