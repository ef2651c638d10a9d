// Takes attributed text apart into lines, one at a time, so that nobody lays out what will not be seen.
#pragma once

#include <optional>

#include "CoreText/CTLine.h"

namespace zelkon {

class CTTypesetter {
 public:
  CTTypesetter(NSAttributedString text, NSLineBreakMode mode) : text_(std::move(text)), mode_(mode) {}

  // The next line for a width in points, or nothing at the end. Paragraphs end at "\n", "\r", "\r\n", U+2028 and
  // U+2029; a text that ends so has an empty line after it.
  std::optional<CTLine> nextLine(double width);
  bool atEnd() const;
  // Byte offset of the first character that is in no line yet.
  size_t offset() const { return offset_; }
  const NSAttributedString& text() const { return text_; }

 private:
  size_t wrappedLineEnd(size_t paragraphEnd, double width) const;
  NSAttributedString text_;
  NSLineBreakMode mode_;
  size_t offset_ = 0;
  bool emptyLineDue_ = false;  // the text ended with a paragraph end
};

}  // namespace zelkon
