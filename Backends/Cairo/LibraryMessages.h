// What GLib and Pango say of themselves.
#pragma once

#include <string_view>

namespace zelkon {

// A message of one of them. After a fatal one the library ends the process, unless the sink does.
using LibraryMessageSink = void (*)(std::string_view text, bool isFatal);

// Hands what the libraries would print on standard error to the sink instead, on the thread that it concerns. Once a
// process.
void setLibraryMessageSink(LibraryMessageSink sink);

}  // namespace zelkon
