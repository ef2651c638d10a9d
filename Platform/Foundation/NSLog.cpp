#include "Foundation/NSLog.h"

#include <cmath>
#include <cstdio>
#include <utility>

namespace zelkon {

namespace {

LogSink& sink() {
  static LogSink installed;
  return installed;
}

}  // namespace

LogSink NSSetLogSink(LogSink newSink) { return std::exchange(sink(), std::move(newSink)); }

void NSLog(std::string_view line) {
  if (const LogSink target = sink()) {
    target(line);
    return;
  }
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fputc('\n', stderr);
}

std::string NSFormatDouble(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
  char buffer[400];
  const std::string text(buffer, std::snprintf(buffer, sizeof buffer, "%f", value));
  // The process may run in a locale with another decimal separator.
  const size_t separator = text.find_first_not_of("-0123456789");
  return text.substr(0, separator) + "." + text.substr(text.size() - 6);
}

}  // namespace zelkon
