#include "CoreGraphics/GraphicsDevice.h"

#include <utility>

namespace zelkon {

namespace {

GraphicsDevice*& installed() {
  static GraphicsDevice* device = nullptr;
  return device;
}

unsigned long installationCount = 0;

}  // namespace

GraphicsDevice* GraphicsDevice::current() { return installed(); }

GraphicsDevice* GraphicsDevice::install(GraphicsDevice* device) {
  ++installationCount;
  return std::exchange(installed(), device);
}

unsigned long GraphicsDevice::installations() { return installationCount; }

}  // namespace zelkon
