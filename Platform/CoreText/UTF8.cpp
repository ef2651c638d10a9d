#include "CoreText/UTF8.h"

namespace zelkon {

UTF8CodePoint UTF8CodePointAt(std::string_view text, size_t offset) {
  const auto byteAt = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byteAt(offset);
  if (lead < 0x80) return {lead, 1, true};
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (lead < 0xC2 || lead > 0xF4) return {0xFFFD, 1, false};
  char32_t value = lead & (0xFFu >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    if (offset + i >= text.size() || (byteAt(offset + i) & 0xC0) != 0x80) return {0xFFFD, i, false};
    value = value << 6 | (byteAt(offset + i) & 0x3F);
  }
  if (value < smallest[length] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
    return {0xFFFD, length, false};
  return {value, length, true};
}

size_t UTF8PreviousOffset(std::string_view text, size_t offset) {
  size_t start = offset - 1;
  while (start > 0 && offset - start < 4 && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
  return start;
}

bool UTF8IsWellFormed(std::string_view text) {
  for (size_t offset = 0; offset < text.size();) {
    const UTF8CodePoint point = UTF8CodePointAt(text, offset);
    if (!point.wellFormed) return false;
    offset += point.length;
  }
  return true;
}

std::string UTF8WithReplacements(std::string_view text, std::vector<size_t>* offsets) {
  std::string result;
  result.reserve(text.size());
  if (offsets != nullptr) offsets->clear();
  for (size_t offset = 0; offset < text.size();) {
    const UTF8CodePoint point = UTF8CodePointAt(text, offset);
    if (offsets != nullptr) offsets->insert(offsets->end(), point.length, result.size());
    if (point.wellFormed)
      result += text.substr(offset, point.length);
    else
      result += "\xEF\xBF\xBD";
    offset += point.length;
  }
  if (offsets != nullptr) offsets->push_back(result.size());
  return result;
}

}  // namespace zelkon
