#include "Foundation/NSNotificationCenter.h"

#include <algorithm>
#include <utility>

#include "Foundation/PlatformSession.h"

namespace zelkon {

NSNotificationCenter& NSNotificationCenter::defaultCenter() {
  return PlatformSession::part<NSNotificationCenter>(PlatformSession::Key::notificationCenter);
}

void NSNotificationCenter::addObserver(const void* observer, Handler handler, std::string name, const void* object) {
  registrations_.push_back({observer, std::move(handler), std::move(name), object, nextSerial_++});
}

void NSNotificationCenter::removeObserver(const void* observer, const std::string& name, const void* object) {
  std::erase_if(registrations_, [&](const Registration& registration) {
    return registration.observer == observer && registration.name == name &&
           (object == nullptr || registration.object == object);
  });
}

void NSNotificationCenter::removeObserver(const void* observer) {
  std::erase_if(registrations_, [&](const Registration& registration) { return registration.observer == observer; });
}

void NSNotificationCenter::post(const std::string& name, const void* object) {
  const NSNotification notification{name, object};
  std::vector<unsigned long> serials;
  for (const Registration& registration : registrations_)
    if (registration.name == name && (registration.object == nullptr || registration.object == object))
      serials.push_back(registration.serial);
  for (const unsigned long serial : serials) {
    const auto found = std::find_if(registrations_.begin(), registrations_.end(),
                                    [&](const Registration& registration) { return registration.serial == serial; });
    if (found == registrations_.end()) continue;
    // A handler may remove its own registration while it runs.
    const Handler handler = found->handler;
    handler(notification);
  }
}

}  // namespace zelkon
