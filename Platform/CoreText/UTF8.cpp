#include "CoreText/UTF8.h"

#include <algorithm>
#include <iterator>

namespace zelkon {

namespace {

constexpr char32_t zeroWidthJoiner = 0x200D;

struct CodePointRange {
  char32_t first, last;
};

// Marks and modifiers that continue the character before them, in ascending order.
constexpr CodePointRange extenders[] = {
    {0x0300, 0x036F},   {0x0483, 0x0489},   {0x0591, 0x05BD}, {0x05BF, 0x05BF}, {0x05C1, 0x05C2}, {0x05C4, 0x05C5},
    {0x05C7, 0x05C7},   {0x0610, 0x061A},   {0x064B, 0x065F}, {0x0670, 0x0670}, {0x06D6, 0x06DC}, {0x06DF, 0x06E4},
    {0x06E7, 0x06E8},   {0x06EA, 0x06ED},   {0x0711, 0x0711}, {0x0730, 0x074A}, {0x0900, 0x0903}, {0x093A, 0x093C},
    {0x093E, 0x094F},   {0x0951, 0x0957},   {0x0962, 0x0963}, {0x0981, 0x0983}, {0x09BC, 0x09BC}, {0x09BE, 0x09CD},
    {0x0A01, 0x0A03},   {0x0A3C, 0x0A4D},   {0x0A81, 0x0A83}, {0x0ABC, 0x0ABC}, {0x0ABE, 0x0ACD}, {0x0B01, 0x0B03},
    {0x0B3C, 0x0B3C},   {0x0B3E, 0x0B4D},   {0x0BBE, 0x0BCD}, {0x0C3E, 0x0C4D}, {0x0CBE, 0x0CCD}, {0x0D3E, 0x0D4D},
    {0x0E31, 0x0E31},   {0x0E34, 0x0E3A},   {0x0E47, 0x0E4E}, {0x0EB1, 0x0EB1}, {0x0EB4, 0x0EBC}, {0x0EC8, 0x0ECD},
    {0x0F71, 0x0F84},   {0x102B, 0x103E},   {0x1160, 0x11FF}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200C, 0x200D},
    {0x20D0, 0x20FF},   {0x302A, 0x302F},   {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0x1F3FB, 0x1F3FF},
    {0xE0020, 0xE007F}, {0xE0100, 0xE01EF},
};

bool isExtender(char32_t value) {
  if (value < extenders[0].first) return false;
  const auto* found = std::lower_bound(std::begin(extenders), std::end(extenders), value,
                                       [](const CodePointRange& range, char32_t v) { return range.last < v; });
  return found != std::end(extenders) && found->first <= value;
}

// Whether the code points on both sides of the offset make up one character.
bool joinsAt(std::string_view text, size_t offset) {
  if (isExtender(UTF8CodePointAt(text, offset).value)) return true;
  return UTF8CodePointAt(text, UTF8PreviousOffset(text, offset)).value == zeroWidthJoiner;
}

}  // namespace

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

size_t UTF8NextCharacter(std::string_view text, size_t offset) {
  do offset += UTF8CodePointAt(text, offset).length;
  while (offset < text.size() && joinsAt(text, offset));
  return offset;
}

size_t UTF8PreviousCharacter(std::string_view text, size_t offset) {
  do offset = UTF8PreviousOffset(text, offset);
  while (offset > 0 && joinsAt(text, offset));
  return offset;
}

}  // namespace zelkon
