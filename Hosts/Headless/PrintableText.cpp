#include "Hosts/Headless/PrintableText.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>

#include "CoreText/UTF8.h"

namespace zelkon {
namespace {

constexpr size_t kLongestEcho = 80;
constexpr size_t kLongestName = 250;

struct Range {
  char32_t first, last;
};

// Controls, formats, separators of lines and paragraphs, private use and noncharacters below U+10000, in order.
constexpr Range kUnseen[] = {
    {0x0000, 0x001F}, {0x007F, 0x009F}, {0x00AD, 0x00AD}, {0x0600, 0x0605}, {0x061C, 0x061C}, {0x06DD, 0x06DD},
    {0x070F, 0x070F}, {0x0890, 0x0891}, {0x08E2, 0x08E2}, {0x115F, 0x1160}, {0x180B, 0x180F}, {0x200B, 0x200F},
    {0x2028, 0x202E}, {0x2060, 0x206F}, {0x3164, 0x3164}, {0xE000, 0xF8FF}, {0xFDD0, 0xFDEF}, {0xFE00, 0xFE0F},
    {0xFEFF, 0xFEFF}, {0xFFA0, 0xFFA0}, {0xFFF0, 0xFFFB}, {0xFFFE, 0xFFFF},
};

bool isSeen(char32_t c) {
  // Beyond the supplementary planes of characters there are tags, selectors and private use.
  if (c >= 0xE0000 || (c & 0xFFFE) == 0xFFFE) return false;
  const auto* range = std::lower_bound(std::begin(kUnseen), std::end(kUnseen), c,
                                       [](const Range& each, char32_t value) { return each.last < value; });
  return range == std::end(kUnseen) || c < range->first;
}

std::string escaped(const char* format, unsigned value) {
  char text[16];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string escapedCharacter(char32_t c) {
  if (c == '\n') return "\\n";
  if (c == '\r') return "\\r";
  if (c == '\t') return "\\t";
  if (c < 0x80) return escaped("\\x%02x", c);
  return escaped(c < 0x10000 ? "\\u%04x" : "\\U%08x", c);
}

// The piece at the offset as it is printed, and the offset behind it.
std::string piece(std::string_view text, size_t& offset) {
  const UTF8CodePoint point = UTF8CodePointAt(text, offset);
  const std::string_view bytes = text.substr(offset, point.length);
  offset += point.length;
  if (!point.wellFormed) {
    std::string result;
    for (const char byte : bytes) result += escaped("\\x%02x", static_cast<uint8_t>(byte));
    return result;
  }
  return isSeen(point.value) ? std::string(bytes) : escapedCharacter(point.value);
}

}  // namespace

std::string printableText(std::string_view text, size_t most) {
  std::string result;
  size_t count = 0;
  for (size_t offset = 0; offset < text.size(); ++count) {
    if (count == most) return result + "…";
    result += piece(text, offset);
  }
  return result;
}

std::string quotedText(std::string_view text) { return "\"" + printableText(text, kLongestEcho) + "\""; }

std::string printableName(std::string_view path) {
  if (path.empty()) return "\"\"";
  if (path.size() <= kLongestName) return printableText(path);
  size_t start = path.size() - kLongestName;
  while (start < path.size() && (static_cast<uint8_t>(path[start]) & 0xC0) == 0x80) ++start;
  return "…" + printableText(path.substr(start));
}

}  // namespace zelkon
