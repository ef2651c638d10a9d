// The platform's one exception class: a name and a reason. Only the guard on script-called operations swallows it.
#pragma once

#include <exception>
#include <string>

namespace zelkon {

inline constexpr const char* NSInvalidArgumentException = "NSInvalidArgumentException";
inline constexpr const char* NSInternalInconsistencyException = "NSInternalInconsistencyException";
inline constexpr const char* NSRangeException = "NSRangeException";
inline constexpr const char* NSMallocException = "NSMallocException";
inline constexpr const char* NSUndefinedKeyException = "NSUnknownKeyException";

class NSException : public std::exception {
 public:
  NSException(std::string name, std::string reason) : name_(std::move(name)), reason_(std::move(reason)) {}
  const std::string& name() const { return name_; }
  const std::string& reason() const { return reason_; }
  // The reason, or the name where there is no reason: what "%@" prints.
  const std::string& description() const { return reason_.empty() ? name_ : reason_; }
  const char* what() const noexcept override { return description().c_str(); }

 private:
  std::string name_;
  std::string reason_;
};

[[noreturn]] inline void NSRaise(const char* name, std::string reason) { throw NSException(name, std::move(reason)); }

}  // namespace zelkon
