#include "CoreText/GraphemeClusters.h"

#include <algorithm>
#include <array>

#include "CoreText/GraphemeTable.h"
#include "CoreText/UTF8.h"

namespace zelkon {

namespace {

// How a code point joins its neighbours. The first ones are the table's classes, in its order.
enum class Break : uint8_t {
  extend,
  spacingMark,
  pictographic,
  control,
  prepend,
  hangulL,
  hangulV,
  hangulT,
  hangulLV,
  hangulLVT,
  regionalIndicator,
  zeroWidthJoiner,
  other
};
static_assert(static_cast<unsigned>(Break::hangulT) + 1 == graphemeTableClasses);

struct Range {
  char32_t first, last;
  Break kind;
};
using Ranges = std::array<Range, graphemeTableRanges>;

Ranges decodedRanges() {
  Ranges ranges{};
  const uint8_t* byte = graphemeTable;
  const auto nextNumber = [&byte] {
    unsigned number = 0;
    for (unsigned shift = 0;; shift += 7) {
      number |= (*byte & 0x7Fu) << shift;
      if ((*byte++ & 0x80) == 0) return number;
    }
  };
  char32_t next = 0;
  for (Range& range : ranges) {
    range.first = next + nextNumber();
    const unsigned lengthAndClass = nextNumber();
    range.last = range.first + lengthAndClass / graphemeTableClasses;
    range.kind = static_cast<Break>(lengthAndClass % graphemeTableClasses);
    next = range.last + 1;
  }
  return ranges;
}

Break breakOf(char32_t value) {
  if (value >= ' ' && value < 0x7F) return Break::other;
  if (value == 0x200D) return Break::zeroWidthJoiner;
  if (value >= 0x1F1E6 && value <= 0x1F1FF) return Break::regionalIndicator;
  // Precomposed syllables stand in an order of their own: each pair of first consonant and vowel without a last
  // consonant, then with each of the 27.
  if (value >= 0xAC00 && value <= 0xD7A3) return (value - 0xAC00) % 28 == 0 ? Break::hangulLV : Break::hangulLVT;
  static const Ranges ranges = decodedRanges();
  const auto found = std::lower_bound(ranges.begin(), ranges.end(), value,
                                      [](const Range& range, char32_t v) { return range.last < v; });
  return found != ranges.end() && found->first <= value ? found->kind : Break::other;
}

struct Character {
  Break kind;
  char32_t value;
  size_t length;
};

Character characterAt(std::string_view text, size_t offset) {
  const UTF8CodePoint point = UTF8CodePointAt(text, offset);
  const bool endsLine = point.value == '\r' || point.value == '\n';
  return {endsLine ? Break::control : breakOf(point.value), point.value, point.length};
}

bool continuesHangul(Break before, Break after) {
  if (before == Break::hangulL)
    return after == Break::hangulL || after == Break::hangulV || after == Break::hangulLV || after == Break::hangulLVT;
  if (before == Break::hangulLV || before == Break::hangulV) return after == Break::hangulV || after == Break::hangulT;
  return (before == Break::hangulLVT || before == Break::hangulT) && after == Break::hangulT;
}

// Whether two neighbours belong together whatever stands before them.
bool joins(const Character& before, const Character& after) {
  if (before.value == '\r' && after.value == '\n') return true;
  if (before.kind == Break::control || after.kind == Break::control) return false;
  return after.kind == Break::extend || after.kind == Break::zeroWidthJoiner || after.kind == Break::spacingMark ||
         before.kind == Break::prepend || continuesHangul(before.kind, after.kind);
}

// Whether the joiner at the offset comes after a pictograph and its modifiers.
bool joinsPictograph(std::string_view text, size_t joiner) {
  for (size_t offset = joiner; offset > 0;) {
    offset = UTF8PreviousOffset(text, offset);
    const Break kind = characterAt(text, offset).kind;
    if (kind != Break::extend) return kind == Break::pictographic;
  }
  return false;
}

// Whether the indicator at the offset is the first of a flag's two: flags are counted from the first of their row.
bool beginsFlag(std::string_view text, size_t indicator) {
  bool begins = true;
  for (size_t offset = indicator; offset > 0; begins = !begins) {
    offset = UTF8PreviousOffset(text, offset);
    if (characterAt(text, offset).kind != Break::regionalIndicator) break;
  }
  return begins;
}

// Whether the place between two code points lies inside a cluster.
bool isInside(std::string_view text, size_t place) {
  const size_t previous = UTF8PreviousOffset(text, place);
  const Character before = characterAt(text, previous), after = characterAt(text, place);
  if (joins(before, after)) return true;
  if (before.kind == Break::zeroWidthJoiner && after.kind == Break::pictographic)
    return joinsPictograph(text, previous);
  return before.kind == Break::regionalIndicator && after.kind == Break::regionalIndicator &&
         beginsFlag(text, previous);
}

}  // namespace

size_t GraphemeClusterEnd(std::string_view text, size_t offset) {
  // Nothing before a cluster decides where it ends.
  const std::string_view rest = text.substr(offset);
  size_t end = 0;
  do end += UTF8CodePointAt(rest, end).length;
  while (end < rest.size() && isInside(rest, end));
  return offset + end;
}

size_t GraphemeClusterBegin(std::string_view text, size_t offset) {
  do offset = UTF8PreviousOffset(text, offset);
  while (offset > 0 && isInside(text, offset));
  return offset;
}

}  // namespace zelkon
