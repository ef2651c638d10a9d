#include "CoreText/CTLine.h"

#include <algorithm>

#include "CoreGraphics/CGContext.h"
#include "CoreText/GraphemeClusters.h"
#include "CoreText/UTF8.h"

namespace zelkon {

namespace {

constexpr const char* ellipsis = "\xE2\x80\xA6";
constexpr double widthTolerance = 1e-6;
constexpr size_t shortText = 256;  // bytes

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

bool isLineSeparator(std::string_view text, size_t i) {
  return text.compare(i, 3, "\xE2\x80\xA8") == 0 || text.compare(i, 3, "\xE2\x80\xA9") == 0;
}

// Control characters and line ends inside a line show as spaces.
bool needsSpaces(std::string_view text) {
  for (size_t i = 0; i < text.size(); ++i)
    if (isControl(text[i]) || (text[i] == '\xE2' && isLineSeparator(text, i))) return true;
  return false;
}

std::string withSpaces(std::string_view text) {
  std::string shown;
  for (size_t i = 0; i < text.size(); ++i) {
    if (isLineSeparator(text, i)) {
      shown += ' ';
      i += 2;
    } else if (isControl(text[i])) {
      if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
      shown += ' ';
    } else {
      shown += text[i];
    }
  }
  return shown;
}

double shownAdvance(const CTFont& font, std::string_view text) {
  return needsSpaces(text) ? CTTextAdvance(font, withSpaces(text)) : CTTextAdvance(font, text);
}

// Calls use(attributes, text) for each run's part of the range.
template <typename Use>
void forEachRun(const NSAttributedString& text, size_t begin, size_t end, Use use) {
  const std::string_view characters = text.string();
  const auto& runs = text.runs();
  auto run = std::upper_bound(runs.begin(), runs.end(), begin,
                              [](size_t offset, const NSAttributedString::Run& r) { return offset < r.end; });
  for (; run != runs.end() && run->begin < end; ++run) {
    const size_t first = std::max(begin, run->begin), last = std::min(end, run->end);
    if (first < last) use(run->attributes, characters.substr(first, last - first));
  }
}

// Attributes of the character at the offset, or of the one before it at the end of the text.
const TextAttributes& attributesAt(const NSAttributedString& text, size_t offset) {
  static const TextAttributes none;
  for (const NSAttributedString::Run& run : text.runs())
    if (offset < run.end) return run.attributes;
  return text.isEmpty() ? none : text.runs().back().attributes;
}

void includeMetrics(CTLine& line, const CTFont& font) {
  line.ascent = std::max(line.ascent, font.ascender());
  line.descent = std::max(line.descent, -font.descender());
  line.leading = std::max(line.leading, font.leading());
  line.hasExtraPitch = line.hasExtraPitch || font.face()->extraLinePitch;
}

void appendText(CTLine& line, const TextAttributes& attributes, std::string_view text) {
  const CTFont font = attributes.fontOrDefault();
  std::string shown = needsSpaces(text) ? withSpaces(text) : std::string(text);
  const double advance = CTTextAdvance(font, shown);
  const size_t inked = shown.find_last_not_of(' ') + 1;
  if (inked == shown.size())
    line.trailingWhitespace = 0;
  else
    line.trailingWhitespace =
        (inked == 0 ? line.trailingWhitespace : 0) + CTTextAdvance(font, std::string_view(shown).substr(inked));
  includeMetrics(line, font);
  line.pieces.push_back({font, attributes.color, std::move(shown), line.width});
  line.width += advance;
}

void appendRange(CTLine& line, const NSAttributedString& text, size_t begin, size_t end) {
  forEachRun(text, begin, end,
             [&](const TextAttributes& attributes, std::string_view part) { appendText(line, attributes, part); });
}

// The number of places (from 0) of which the width is within the limit; widths grow with the places. `place(n)` makes
// sure that place n exists and says whether it does.
template <typename Exists, typename Fits>
size_t countFitting(Exists exists, Fits fits) {
  size_t low = 0, high = 1;  // `low` fits
  while (exists(high) && fits(high)) {
    low = high;
    high *= 2;
  }
  while (high - low > 1) {
    const size_t middle = low + (high - low) / 2;
    if (exists(middle) && fits(middle))
      low = middle;
    else
      high = middle;
  }
  return low;
}

}  // namespace

std::string CTLine::text() const {
  std::string whole;
  for (const Piece& piece : pieces) whole += piece.text;
  return whole;
}

double CTWidthOfRange(const NSAttributedString& text, size_t begin, size_t end) {
  double width = 0;
  forEachRun(text, begin, end, [&](const TextAttributes& attributes, std::string_view part) {
    width += shownAdvance(attributes.fontOrDefault(), part);
  });
  return width;
}

size_t CTFittingPrefixEnd(const NSAttributedString& text, size_t begin, size_t end, double width) {
  // Most labels fit, and their whole width is remembered.
  if (end - begin <= shortText && CTWidthOfRange(text, begin, end) <= width) return end;
  const std::string_view characters = std::string_view(text.string()).substr(0, end);
  std::vector<size_t> places{begin};
  const auto exists = [&](size_t n) {
    while (places.size() <= n && places.back() < end) places.push_back(GraphemeClusterEnd(characters, places.back()));
    return n < places.size();
  };
  return places[countFitting(exists, [&](size_t n) { return CTWidthOfRange(text, begin, places[n]) <= width; })];
}

size_t CTFittingSuffixBegin(const NSAttributedString& text, size_t begin, size_t end, double width) {
  const std::string_view characters = std::string_view(text.string()).substr(0, end);
  std::vector<size_t> places{end};
  const auto exists = [&](size_t n) {
    while (places.size() <= n && places.back() > begin)
      places.push_back(std::max(begin, GraphemeClusterBegin(characters, places.back())));
    return n < places.size();
  };
  return places[countFitting(exists, [&](size_t n) { return CTWidthOfRange(text, places[n], end) <= width; })];
}

CTLine CTLineCreateWithRange(const NSAttributedString& text, size_t begin, size_t end) {
  CTLine line;
  appendRange(line, text, begin, end);
  if (line.pieces.empty() && !text.isEmpty()) includeMetrics(line, attributesAt(text, begin).fontOrDefault());
  return line;
}

CTLine CTLineCreate(const NSAttributedString& text) { return CTLineCreateWithRange(text, 0, text.string().size()); }

CTLine CTLineCreateTruncatedRange(const NSAttributedString& text, size_t begin, size_t end, double width,
                                  CTLineTruncation truncation) {
  if (CTFittingPrefixEnd(text, begin, end, width + widthTolerance) == end)
    return CTLineCreateWithRange(text, begin, end);
  const size_t last = UTF8PreviousOffset(text.string(), end);
  const size_t tokenPlace = truncation == CTLineTruncation::start ? begin
                            : truncation == CTLineTruncation::end ? last
                                                                  : begin + (end - begin) / 2;
  const TextAttributes& token = attributesAt(text, tokenPlace);
  CTLine line;
  line.isTruncated = true;
  const double tokenWidth = CTTextAdvance(token.fontOrDefault(), ellipsis);
  if (!(tokenWidth <= width + widthTolerance)) {
    includeMetrics(line, token.fontOrDefault());
    return line;
  }
  const double room = std::max(0.0, width - tokenWidth);
  size_t headEnd = begin, tailBegin = end;
  if (truncation == CTLineTruncation::end) {
    headEnd = CTFittingPrefixEnd(text, begin, end, room);
  } else if (truncation == CTLineTruncation::start) {
    tailBegin = CTFittingSuffixBegin(text, begin, end, room);
  } else {
    headEnd = CTFittingPrefixEnd(text, begin, end, room / 2);
    tailBegin = CTFittingSuffixBegin(text, headEnd, end, room / 2);
    // What wide characters left over goes to the narrower side, character by character.
    while (headEnd < tailBegin) {
      const double head = CTWidthOfRange(text, begin, headEnd), tail = CTWidthOfRange(text, tailBegin, end);
      const bool growsHead = head <= tail;
      const size_t longerHead = GraphemeClusterEnd(text.string(), headEnd);
      const size_t longerTail = GraphemeClusterBegin(text.string(), tailBegin);
      if (growsHead ? CTWidthOfRange(text, begin, longerHead) + tail > room
                    : head + CTWidthOfRange(text, longerTail, end) > room)
        break;
      (growsHead ? headEnd : tailBegin) = growsHead ? longerHead : longerTail;
    }
  }
  appendRange(line, text, begin, headEnd);
  appendText(line, token, ellipsis);
  appendRange(line, text, tailBegin, end);
  return line;
}

CTLine CTLineCreateTruncated(const NSAttributedString& text, double width, CTLineTruncation truncation) {
  return CTLineCreateTruncatedRange(text, 0, text.string().size(), width, truncation);
}

void CTLineDraw(const CTLine& line, CGContext& context, CGPoint baseline) {
  const RGBA fill = context.fillColor();
  for (const CTLine::Piece& piece : line.pieces) {
    context.setFillColor(piece.color ? piece.color->rgba() : RGBA{0, 0, 0, 1});
    context.showTextRun({piece.font.face(), piece.font.pointSize(), piece.text, {baseline.x + piece.x, baseline.y}});
  }
  context.setFillColor(fill);
}

double CTAlignmentOffset(const CTLine& line, NSTextAlignment alignment, double width) {
  const double inkWidth = line.width - line.trailingWhitespace;
  if (alignment == NSTextAlignment::center) return (width - inkWidth) / 2;
  if (alignment == NSTextAlignment::right) return width - inkWidth;
  return 0;
}

double CTCompatibleLineHeight(const CTLine& line) {
  return CTRoundMetric(line.ascent) + CTRoundMetric(line.descent) + CTRoundMetric(std::max(line.leading, 0.0));
}

double CTLinePitch(const CTLine& line) {
  const double height = CTCompatibleLineHeight(line);
  return line.hasExtraPitch ? height + CTRoundMetric(0.2 * height) : height;
}

}  // namespace zelkon
