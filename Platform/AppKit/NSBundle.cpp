#include "AppKit/NSBundle.h"

#include "Foundation/PlatformSession.h"

namespace zelkon {

NSBundle& NSBundle::mainBundle() { return PlatformSession::part<NSBundle>(PlatformSession::Key::bundle); }

std::optional<std::vector<uint8_t>> NSBundle::dataForImageResource(const std::string& name) const {
  return loader_ ? loader_(name) : std::nullopt;
}

}  // namespace zelkon
