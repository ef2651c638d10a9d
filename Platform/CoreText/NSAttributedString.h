// Text with fonts, colours and a paragraph style. Immutable and shared: copying is copying a handle, and a label's size
// is measured once however often it is asked. The operations that change a text return a new one.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CoreGraphics/CGColor.h"
#include "CoreGraphics/CGGeometry.h"
#include "CoreText/CTFont.h"

namespace zelkon {

enum class NSTextAlignment { left = 0, right = 1, center = 2, justified = 3, natural = 4 };
enum class NSLineBreakMode {
  wordWrapping = 0,
  charWrapping = 1,
  clipping = 2,
  truncatingHead = 3,
  truncatingTail = 4,
  truncatingMiddle = 5
};

struct NSParagraphStyle {
  NSTextAlignment alignment = NSTextAlignment::natural;
  NSLineBreakMode lineBreakMode = NSLineBreakMode::wordWrapping;
  friend bool operator==(const NSParagraphStyle&, const NSParagraphStyle&) = default;
};

struct TextAttributes {
  std::optional<CTFont> font;  // missing: Helvetica 12
  CGColorRef color;            // missing: black
  std::optional<NSParagraphStyle> paragraphStyle;
  CTFont fontOrDefault() const { return font ? *font : CTFont(); }
};

class NSAttributedString {
 public:
  struct Run {
    size_t begin, end;  // byte offsets into the UTF-8 text
    TextAttributes attributes;
  };
  NSAttributedString() = default;  // empty
  NSAttributedString(std::shared_ptr<const std::string> text, TextAttributes attributes);
  NSAttributedString(std::string text, TextAttributes attributes);
  explicit NSAttributedString(std::string text, std::vector<Run> runs);

  const std::string& string() const;
  bool isEmpty() const { return string().empty(); }
  const std::vector<Run>& runs() const;
  // Attributes at the first character; raises NSRangeException for an empty text.
  const TextAttributes& attributesAtStart() const;
  // The paragraph style at the first character or, without one, the default style.
  NSParagraphStyle paragraphStyle() const;

  // Same text, every run's font replaced by what `change` makes of it. The same handle when every font stays.
  template <typename Change>
  NSAttributedString withFonts(Change change) const {
    bool isSame = true;
    for (const Run& run : runs()) isSame = isSame && run.attributes.font == change(run.attributes.fontOrDefault());
    if (isSame) return *this;
    std::vector<Run> changed = runs();
    for (Run& run : changed) run.attributes.font = change(run.attributes.fontOrDefault());
    return withRuns(std::move(changed));
  }
  NSAttributedString withFont(const CTFont& font) const;  // over the whole text
  NSAttributedString emptied() const { return {}; }

  // Widest line by sum of line heights (rounded ascent + descent + leading), as AppKit measures; (0, 0) when empty.
  CGSize size() const;

  friend bool operator==(const NSAttributedString& a, const NSAttributedString& b);

 private:
  struct Contents;
  NSAttributedString withRuns(std::vector<Run> runs) const;
  std::shared_ptr<const Contents> contents_;  // null when empty
};

}  // namespace zelkon
