#include "AppKit/NSBundle.h"

namespace zelkon {

NSBundle& NSBundle::mainBundle() {
  static NSBundle bundle;
  return bundle;
}

std::optional<std::vector<uint8_t>> NSBundle::dataForImageResource(const std::string& name) const {
  return loader_ ? loader_(name) : std::nullopt;
}

}  // namespace zelkon
