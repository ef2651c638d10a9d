// Synchronous notifications. Observers are identified by address and not owned; registering twice delivers twice.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zelkon {

inline constexpr const char* NSViewBoundsDidChangeNotification = "NSViewBoundsDidChangeNotification";
inline constexpr const char* NSViewFrameDidChangeNotification = "NSViewFrameDidChangeNotification";

struct NSNotification {
  std::string name;
  const void* object;
};

class NSNotificationCenter {
 public:
  using Handler = std::function<void(const NSNotification&)>;
  // The session's.
  static NSNotificationCenter& defaultCenter();

  // `object` null observes every sender.
  void addObserver(const void* observer, Handler handler, std::string name, const void* object);
  // `object` null removes all registrations of that observer and name.
  void removeObserver(const void* observer, const std::string& name, const void* object);
  // Removes every registration of the observer; views call it when they are destroyed.
  void removeObserver(const void* observer);
  // Delivers in order of registration. Observers removed by an earlier handler are skipped, ones added meanwhile wait.
  void post(const std::string& name, const void* object);
  size_t observerCount() const { return registrations_.size(); }

 private:
  struct Registration {
    const void* observer;
    Handler handler;
    std::string name;
    const void* object;
    unsigned long serial;
  };
  std::vector<Registration> registrations_;
  unsigned long nextSerial_ = 0;
};

}  // namespace zelkon
