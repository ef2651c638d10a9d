#include "CoreGraphics/GraphicsDevice.h"

#include <utility>

#include "Foundation/PlatformSession.h"

namespace zelkon {

namespace {

struct Installed {
  GraphicsDevice* device = nullptr;
  unsigned long installations = 0;
};

Installed& installed() { return PlatformSession::part<Installed>(PlatformSession::Key::device); }

}  // namespace

GraphicsDevice* GraphicsDevice::current() { return installed().device; }

GraphicsDevice* GraphicsDevice::install(GraphicsDevice* device) {
  ++installed().installations;
  return std::exchange(installed().device, device);
}

unsigned long GraphicsDevice::installations() { return installed().installations; }

}  // namespace zelkon
