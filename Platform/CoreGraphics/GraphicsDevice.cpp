#include "CoreGraphics/GraphicsDevice.h"

#include <utility>

namespace zelkon {

namespace {

GraphicsDevice*& installed() {
  static GraphicsDevice* device = nullptr;
  return device;
}

}  // namespace

GraphicsDevice* GraphicsDevice::current() { return installed(); }

GraphicsDevice* GraphicsDevice::install(GraphicsDevice* device) { return std::exchange(installed(), device); }

}  // namespace zelkon
