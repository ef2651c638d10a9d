// Code points of UTF-8 text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zelkon {

struct UTF8CodePoint {
  char32_t value;   // U+FFFD for a malformed sequence
  size_t length;    // bytes, at least 1
  bool wellFormed;  // neither cut, overlong, a surrogate nor beyond U+10FFFF
};
// The code point at the offset; precondition offset < text.size().
UTF8CodePoint UTF8CodePointAt(std::string_view text, size_t offset);
// Offset of the code point that ends at `offset`; precondition 0 < offset <= text.size().
size_t UTF8PreviousOffset(std::string_view text, size_t offset);
bool UTF8IsWellFormed(std::string_view text);
// The text with U+FFFD in place of each malformed sequence. `offsets`, when given, receives for each byte offset of the
// old text (its size included) the offset in the new one.
std::string UTF8WithReplacements(std::string_view text, std::vector<size_t>* offsets = nullptr);

}  // namespace zelkon
