#include "Foundation/NSLog.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "Foundation/DecimalDigits.h"
#include "Foundation/PlatformSession.h"

namespace zelkon {

namespace {

LogSink& sink() { return PlatformSession::part<LogSink>(PlatformSession::Key::log); }

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
  return DecimalDigits::exact(value).fixed(6);
}

}  // namespace zelkon
