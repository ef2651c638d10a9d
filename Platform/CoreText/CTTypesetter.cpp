#include "CoreText/CTTypesetter.h"

#include "CoreText/GraphemeClusters.h"
#include "CoreText/UTF8.h"

namespace zelkon {

namespace {

// Widths of the same text summed in another order differ in the last digits.
constexpr double widthTolerance = 1e-6;

// Bytes of the paragraph end at the offset; 0 when there is none.
size_t paragraphEndLength(const std::string& text, size_t offset) {
  if (text[offset] == '\n') return 1;
  if (text[offset] == '\r') return offset + 1 < text.size() && text[offset + 1] == '\n' ? 2 : 1;
  const char32_t value = UTF8CodePointAt(text, offset).value;
  return value == 0x2028 || value == 0x2029 ? 3 : 0;
}

bool isBreakingSpace(char32_t value) {
  return value == ' ' || value == '\t' || value == 0x1680 || (value >= 0x2000 && value <= 0x200B && value != 0x2007) ||
         value == 0x205F || value == 0x3000;
}

bool isHyphen(char32_t value) { return value == '-' || value == 0x2010 || value == 0x2013 || value == 0x2014; }

// Scripts that break between any two characters.
bool isIdeographic(char32_t value) {
  return (value >= 0x2E80 && value <= 0x9FFF) || (value >= 0xAC00 && value <= 0xD7A3) ||
         (value >= 0xF900 && value <= 0xFAFF) || (value >= 0xFF01 && value <= 0xFFEF) ||
         (value >= 0x20000 && value <= 0x3FFFF);
}

bool isIn(char32_t value, const char32_t* set) {
  for (; *set != 0; ++set)
    if (*set == value) return true;
  return false;
}

bool mayBreakBetween(char32_t beforeThat, char32_t before, char32_t after) {
  if (isBreakingSpace(after)) return false;
  if (isBreakingSpace(before)) return true;
  // A sign before a number stays with it, and so does a hyphen that opens a word.
  if (isHyphen(before)) return beforeThat != 0 && !isBreakingSpace(beforeThat) && !(after >= '0' && after <= '9');
  if (!isIdeographic(before) && !isIdeographic(after)) return false;
  constexpr auto unbreakable = U"\u00A0\u202F\u2060\uFEFF";
  constexpr auto opening = U"([{\u2018\u201C\u3008\u300A\u300C\u300E\u3010\u3014\uFF08\uFF3B\uFF5B";
  constexpr auto closing =
      U")]},.:;!?%\u2019\u201D\u2026\u3001\u3002\u3005\u3009\u300B\u300D\u300F\u3011\u3015\u30FB\u30FC\uFF01\uFF05"
      U"\uFF09\uFF0C\uFF0E\uFF1A\uFF1B\uFF1F\uFF3D\uFF5D\u3041\u3043\u3045\u3047\u3049\u3063\u3083\u3085\u3087\u30A1"
      U"\u30A3\u30A5\u30A7\u30A9\u30C3\u30E3\u30E5\u30E7";
  return !isIn(before, unbreakable) && !isIn(after, unbreakable) && !isIn(before, opening) && !isIn(after, closing);
}

// Whether a line may end before the character at the offset, which lies inside the text after `begin`.
bool mayBreakAt(const std::string& text, size_t begin, size_t offset) {
  const size_t before = UTF8PreviousOffset(text, offset);
  const char32_t beforeThat = before > begin ? UTF8CodePointAt(text, UTF8PreviousOffset(text, before)).value : 0;
  return mayBreakBetween(beforeThat, UTF8CodePointAt(text, before).value, UTF8CodePointAt(text, offset).value);
}

}  // namespace

bool CTTypesetter::atEnd() const { return offset_ >= text_.string().size() && !emptyLineDue_; }

size_t CTTypesetter::wrappedLineEnd(size_t paragraphEnd, double width) const {
  const std::string& text = text_.string();
  size_t fitting = CTFittingPrefixEnd(text_, offset_, paragraphEnd, width + widthTolerance);
  // Spaces hang over the edge, but not one that carries a mark.
  while (fitting < paragraphEnd) {
    const UTF8CodePoint point = UTF8CodePointAt(text, fitting);
    if (!isBreakingSpace(point.value) || GraphemeClusterEnd(text, fitting) != fitting + point.length) break;
    fitting += point.length;
  }
  if (fitting == paragraphEnd) return fitting;
  if (mode_ == NSLineBreakMode::wordWrapping)
    for (size_t end = fitting; end > offset_; end = GraphemeClusterBegin(text, end))
      if (mayBreakAt(text, offset_, end)) return end;
  return fitting > offset_ ? fitting : GraphemeClusterEnd(text, offset_);
}

std::optional<CTLine> CTTypesetter::nextLine(double width) {
  const std::string& text = text_.string();
  if (atEnd()) return std::nullopt;
  if (offset_ >= text.size()) {
    emptyLineDue_ = false;
    return CTLineCreateWithRange(text_, text.size(), text.size());
  }
  const size_t begin = offset_;
  size_t paragraphEnd = begin, endLength = 0;
  while (paragraphEnd < text.size() && (endLength = paragraphEndLength(text, paragraphEnd)) == 0)
    paragraphEnd += UTF8CodePointAt(text, paragraphEnd).length;

  const bool wraps = mode_ == NSLineBreakMode::wordWrapping || mode_ == NSLineBreakMode::charWrapping;
  const size_t end = wraps && begin < paragraphEnd ? wrappedLineEnd(paragraphEnd, width) : paragraphEnd;
  offset_ = end == paragraphEnd ? end + endLength : end;
  emptyLineDue_ = end == paragraphEnd && endLength > 0 && offset_ == text.size();

  switch (mode_) {
    case NSLineBreakMode::truncatingHead:
      return CTLineCreateTruncatedRange(text_, begin, end, width, CTLineTruncation::start);
    case NSLineBreakMode::truncatingTail:
      return CTLineCreateTruncatedRange(text_, begin, end, width, CTLineTruncation::end);
    case NSLineBreakMode::truncatingMiddle:
      return CTLineCreateTruncatedRange(text_, begin, end, width, CTLineTruncation::middle);
    default:
      return CTLineCreateWithRange(text_, begin, end);
  }
}

}  // namespace zelkon
