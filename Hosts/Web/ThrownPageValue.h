// Stands in the place of a value for what a getter of the page threw, and raises it when the value is asked for.
#pragma once

#include <string>
#include <utility>

#include "Foundation/NSException.h"
#include "Foundation/Value.h"

namespace zelkon {

class ThrownPageValue : public Object {
 public:
  explicit ThrownPageValue(std::string reason) : reason_(std::move(reason)) {}
  std::string className() const override { return "WebScriptException"; }
  [[noreturn]] void raise() const { NSRaise(NSUndefinedKeyException, reason_); }

 private:
  std::string reason_;
};

// The value, unless it stands for something thrown.
inline const Value& CheckedPageValue(const Value& value) {
  if (value.isObject()) {
    if (const auto thrown = value.object<ThrownPageValue>()) thrown->raise();
  }
  return value;
}

}  // namespace zelkon
