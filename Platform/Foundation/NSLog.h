// The system log. The host installs a sink; without one, lines go to standard error.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace zelkon {

using LogSink = std::function<void(std::string_view line)>;
// Replaces the session's sink and returns the earlier one (empty = standard error).
LogSink NSSetLogSink(LogSink sink);
void NSLog(std::string_view line);
// "%f": six decimals, no locale: NSFormatDouble(-3.5) is "-3.500000".
std::string NSFormatDouble(double value);

}  // namespace zelkon
