// Reads a number at the beginning of a text, locale-free.
#pragma once

#include <optional>
#include <string_view>

namespace zelkon {

// Skips white space and newlines, collects characters from "+-.0-9eE" and takes the longest prefix that is a decimal
// floating-point number. Overflow gives plus or minus infinity; no number gives nothing.
std::optional<double> NSScanDouble(std::string_view text);

}  // namespace zelkon
