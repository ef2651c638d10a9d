// Where broken internal assumptions go. The default handler logs "*** Assertion failure in OPERATION, FILE:LINE" and
// raises NSInternalInconsistencyException whose reason is the text.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zelkon {

struct AssertionFailure {
  std::string operation;  // "-[BarPlot generatePlot]"; "+[...]" for a class operation
  const void* object;     // the receiver, null for a class
  std::string file;       // "Classes/Plotting/BarPlot"
  int line;
  std::string text;  // "Invalid parameter not satisfying: NULL != renderContext"
};

class NSAssertionHandler {
 public:
  using Handler = std::function<void(const AssertionFailure&)>;
  // Replaces the session's handler and returns the earlier one; an empty function restores the default.
  static Handler setHandler(Handler handler);
  // Passes the failure to the handler. Should the handler return, the exception is raised all the same.
  [[noreturn]] static void handleFailure(const AssertionFailure& failure);
};

// Fails with "Invalid parameter not satisfying: CONDITION" unless `holds`.
inline void NSParameterAssert(bool holds, std::string_view condition, std::string_view operation, const void* object,
                              std::string_view file, int line) {
  if (holds) return;
  NSAssertionHandler::handleFailure({std::string(operation), object, std::string(file), line,
                                     "Invalid parameter not satisfying: " + std::string(condition)});
}

}  // namespace zelkon
