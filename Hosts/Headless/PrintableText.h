// Text of others as a message shows it: one line, every character of it seen.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zelkon {

// What is no character to be seen comes as an escape: controls and line ends ("\x1b", "\n"), marks that turn the
// direction of a line or show nothing ("\u202e"), bytes that are no UTF-8 ("\xff"). What is longer than `most`
// characters is cut and ends in "…". Printable text comes back as it is, so nothing is escaped twice.
std::string printableText(std::string_view text, size_t most = static_cast<size_t>(-1));

// A value as a message repeats it: printable, in quotation marks, at most 80 characters of it.
std::string quotedText(std::string_view text);

// The name of a file as a message begins with it: of a very long one the end.
std::string printableName(std::string_view path);

}  // namespace zelkon
