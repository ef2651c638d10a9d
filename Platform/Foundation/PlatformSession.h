// What the platform keeps beyond single objects: run loop, transactions, clock, device, locale, log and so on. A
// program may have many sessions, one after another, inside one another, or on as many threads; they share nothing that
// changes.
//
// A session is current on a thread while a Scope for it is the thread's latest. Using the platform without one ends the
// program with a line on standard error. Objects are used, and go, while the session they were made in is current:
// a session outlives them. A session and its objects are used by one thread at a time.
#pragma once

#include <array>
#include <cstddef>

namespace zelkon {

class PlatformSession {
 public:
  PlatformSession() = default;
  // Lets go of what its parts hold, with itself as the current session. Not to be called inside a Scope for it.
  ~PlatformSession();
  PlatformSession(const PlatformSession&) = delete;
  PlatformSession& operator=(const PlatformSession&) = delete;

  // Makes the session current on this thread, and at its end the one that was before. Scopes of a thread end in the
  // reverse order of their beginnings.
  class Scope {
   public:
    explicit Scope(PlatformSession& session) : earlier_(current_) { current_ = &session; }
    ~Scope() { current_ = earlier_; }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    PlatformSession* earlier_;
  };

  // Who keeps something in a session, in the order in which it goes with the session: what holds others' objects goes
  // first.
  enum class Key : size_t {
    runLoop,
    graphicsContexts,
    transactions,
    commits,
    timeline,
    layerVersions,
    drawingUtilities,
    textAdvances,
    notificationCenter,
    bundle,
    device,
    locale,
    assertionHandler,
    log,
    count
  };
  // The current session's part of that key, made at the first call; a key always goes with the same type.
  template <typename Kept>
  static Kept& part(Key key) {
    return *static_cast<Kept*>(partAt(key, manage<Kept>));
  }

 private:
  // Makes an object where there is none, else deletes it.
  using Manager = void* (*)(void* object);
  template <typename Kept>
  static void* manage(void* object) {
    if (object == nullptr) return new Kept();
    delete static_cast<Kept*>(object);
    return nullptr;
  }
  struct Part {
    void* object = nullptr;
    Manager manage = nullptr;
  };
  static void* partAt(Key key, Manager manage);

  static thread_local constinit PlatformSession* current_;
  std::array<Part, static_cast<size_t>(Key::count)> parts_;
};

}  // namespace zelkon
