#include "CoreText/NSAttributedString.h"

#include <algorithm>

#include "CoreGraphics/GraphicsDevice.h"
#include "CoreText/CTLine.h"
#include "CoreText/CTTypesetter.h"
#include "CoreText/UTF8.h"
#include "Foundation/NSException.h"

namespace zelkon {

namespace {

const std::vector<NSAttributedString::Run>& noRuns() {
  static const std::vector<NSAttributedString::Run> runs;
  return runs;
}

const std::string& noText() {
  static const std::string text;
  return text;
}

bool sameColor(const CGColorRef& a, const CGColorRef& b) { return a == b || (a && b && *a == *b); }

bool sameAttributes(const TextAttributes& a, const TextAttributes& b) {
  return a.font == b.font && sameColor(a.color, b.color) && a.paragraphStyle == b.paragraphStyle;
}

// Whether the text has neither control characters nor line ends. U+2028 and U+2029 begin with the byte E2; what else
// does is laid out like them.
bool isPlainLine(const std::string& text) {
  return std::none_of(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F || byte == 0xE2;
  });
}

size_t atCodePoint(const std::string& text, size_t offset) {
  offset = std::min(offset, text.size());
  while (offset > 0 && offset < text.size() && (static_cast<unsigned char>(text[offset]) & 0xC0) == 0x80) --offset;
  return offset;
}

// The runs in order, within the text, at code points and without gaps.
std::vector<NSAttributedString::Run> coveringRuns(const std::string& text,
                                                  const std::vector<NSAttributedString::Run>& runs) {
  std::vector<NSAttributedString::Run> covering;
  size_t covered = 0;
  for (const NSAttributedString::Run& run : runs) {
    const size_t begin = std::max(covered, atCodePoint(text, run.begin));
    const size_t end = atCodePoint(text, run.end);
    if (begin >= end) continue;
    if (begin > covered) covering.push_back({covered, begin, {}});
    covering.push_back({begin, end, run.attributes});
    covered = end;
  }
  if (covered < text.size()) covering.push_back({covered, text.size(), {}});
  return covering;
}

}  // namespace

struct NSAttributedString::Contents {
  std::shared_ptr<const std::string> text;
  std::vector<Run> runs;
  mutable std::optional<CGSize> size;
  mutable unsigned long sizeInstallation = 0;  // of the device that measured it
};

NSAttributedString::NSAttributedString(std::shared_ptr<const std::string> text, TextAttributes attributes) {
  if (!text || text->empty()) return;
  if (!UTF8IsWellFormed(*text)) text = std::make_shared<const std::string>(UTF8WithReplacements(*text));
  auto contents = std::make_shared<Contents>();
  contents->runs.push_back({0, text->size(), std::move(attributes)});
  contents->text = std::move(text);
  contents_ = std::move(contents);
}

NSAttributedString::NSAttributedString(std::string text, TextAttributes attributes)
    : NSAttributedString(std::make_shared<const std::string>(std::move(text)), std::move(attributes)) {}

NSAttributedString::NSAttributedString(std::string text, std::vector<Run> runs) {
  if (text.empty()) return;
  if (!UTF8IsWellFormed(text)) {
    std::vector<size_t> offsets;
    std::string mended = UTF8WithReplacements(text, &offsets);
    for (Run& run : runs) {
      run.begin = offsets[std::min(run.begin, text.size())];
      run.end = offsets[std::min(run.end, text.size())];
    }
    text = std::move(mended);
  }
  auto contents = std::make_shared<Contents>();
  contents->runs = coveringRuns(text, runs);
  contents->text = std::make_shared<const std::string>(std::move(text));
  contents_ = std::move(contents);
}

const std::string& NSAttributedString::string() const { return contents_ ? *contents_->text : noText(); }

const std::vector<NSAttributedString::Run>& NSAttributedString::runs() const {
  return contents_ ? contents_->runs : noRuns();
}

const TextAttributes& NSAttributedString::attributesAtStart() const {
  if (!contents_)
    NSRaise(NSRangeException, "-[NSConcreteAttributedString attributesAtIndex:effectiveRange:]: Out of bounds");
  return contents_->runs.front().attributes;
}

NSParagraphStyle NSAttributedString::paragraphStyle() const {
  return contents_ ? contents_->runs.front().attributes.paragraphStyle.value_or(NSParagraphStyle())
                   : NSParagraphStyle();
}

NSAttributedString NSAttributedString::withFont(const CTFont& font) const {
  return withFonts([&](const CTFont&) { return font; });
}

NSAttributedString NSAttributedString::withRuns(std::vector<Run> runs) const {
  NSAttributedString changed;
  if (!contents_) return changed;
  auto contents = std::make_shared<Contents>();
  contents->text = contents_->text;
  contents->runs = std::move(runs);
  changed.contents_ = std::move(contents);
  return changed;
}

CGSize NSAttributedString::size() const {
  if (!contents_) return {};
  const unsigned long installation = GraphicsDevice::installations();
  if (contents_->size && contents_->sizeInstallation == installation) return *contents_->size;
  CGSize size;
  const std::string& text = string();
  if (runs().size() == 1 && isPlainLine(text)) {
    // Nothing needs to be laid out; the empty line at the end is as high.
    const CTLine end = CTLineCreateWithRange(*this, text.size(), text.size());
    size = {CTTextAdvance(runs().front().attributes.fontOrDefault(), text), CTCompatibleLineHeight(end)};
  } else {
    CTTypesetter typesetter(*this, NSLineBreakMode::clipping);
    while (const std::optional<CTLine> line = typesetter.nextLine(0)) {
      size.width = std::max(size.width, line->width);
      size.height += CTCompatibleLineHeight(*line);
    }
  }
  contents_->size = size;
  contents_->sizeInstallation = installation;
  return size;
}

bool operator==(const NSAttributedString& a, const NSAttributedString& b) {
  if (a.contents_ == b.contents_) return true;
  return a.string() == b.string() &&
         std::equal(a.runs().begin(), a.runs().end(), b.runs().begin(), b.runs().end(),
                    [](const NSAttributedString::Run& left, const NSAttributedString::Run& right) {
                      return left.begin == right.begin && left.end == right.end &&
                             sameAttributes(left.attributes, right.attributes);
                    });
}

}  // namespace zelkon
