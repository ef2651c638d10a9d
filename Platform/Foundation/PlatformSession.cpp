#include "Foundation/PlatformSession.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace zelkon {

thread_local constinit PlatformSession* PlatformSession::current_ = nullptr;

PlatformSession::~PlatformSession() {
  const Scope scope(*this);
  // What a part held may look for other parts as it goes, and so bring back one that has gone already.
  for (;;) {
    const auto part =
        std::find_if(parts_.begin(), parts_.end(), [](const Part& each) { return each.object != nullptr; });
    if (part == parts_.end()) return;
    part->manage(std::exchange(part->object, nullptr));
  }
}

void* PlatformSession::partAt(Key key, Manager manage) {
  if (current_ == nullptr) {
    std::fputs("zelkon: no PlatformSession is current on this thread\n", stderr);
    std::abort();
  }
  Part& part = current_->parts_[static_cast<size_t>(key)];
  if (part.object == nullptr) part = {manage(nullptr), manage};
  assert(part.manage == manage && "a key goes with one type");
  return part.object;
}

}  // namespace zelkon
