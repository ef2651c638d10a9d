// Whether two PNGs show the same: the compressor packs equal pixels differently now and then, on a busy machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Backends/Cairo/CairoDevice.h"

namespace zelkon {

inline bool showTheSame(const std::string& png, const std::string& other) {
  if (png == other) return true;
  CairoDevice device;
  const auto pixelsOf = [&](const std::string& bytes) {
    const auto surface = device.decodePNG(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    return surface ? device.readPixels(*surface) : std::vector<uint8_t>();
  };
  const std::vector<uint8_t> pixels = pixelsOf(png);
  return !pixels.empty() && pixels == pixelsOf(other);
}

}  // namespace zelkon
