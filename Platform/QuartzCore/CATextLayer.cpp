#include "QuartzCore/CATextLayer.h"

#include <utility>

namespace zelkon {

std::shared_ptr<CATextLayer> CATextLayer::layer() { return std::make_shared<CATextLayer>(); }

void CATextLayer::setString(std::string text) {
  if (isPlain_ && plainString() == text) return;
  text_ = NSAttributedString(std::move(text), TextAttributes{});
  isPlain_ = true;
  setNeedsDisplay();
}

void CATextLayer::setString(NSAttributedString text) {
  if (!isPlain_ && text_ == text) return;
  text_ = std::move(text);
  isPlain_ = false;
  setNeedsDisplay();
}

NSAttributedString CATextLayer::attributedString() const {
  if (!isPlain_ || text_.isEmpty()) return text_;
  TextAttributes attributes;
  attributes.font = font_.withSize(fontSize_);
  attributes.color = foreground_;
  return NSAttributedString(plainString(), std::move(attributes));
}

const std::string& CATextLayer::plainString() const { return text_.string(); }

void CATextLayer::setFont(CTFont font) {
  if (font_ == font) return;
  font_ = std::move(font);
  setNeedsDisplay();
}

void CATextLayer::setFontSize(double size) {
  if (fontSize_ == size) return;
  fontSize_ = size;
  setNeedsDisplay();
}

void CATextLayer::setForegroundColor(CGColorRef color) {
  if (foreground_ == color || (foreground_ && color && *foreground_ == *color)) return;
  foreground_ = std::move(color);
  setNeedsDisplay();
}

void CATextLayer::setWrapped(bool wrapped) {
  if (style_.wrapped == wrapped) return;
  style_.wrapped = wrapped;
  setNeedsDisplay();
}

void CATextLayer::setTruncationMode(std::optional<CTLineTruncation> mode) {
  if (style_.truncation == mode) return;
  style_.truncation = mode;
  setNeedsDisplay();
}

void CATextLayer::setAlignmentMode(NSTextAlignment alignment) {
  if (style_.alignment == alignment) return;
  style_.alignment = alignment;
  setNeedsDisplay();
}

void CATextLayer::drawInContext(CGContext& context) {
  if (text_.isEmpty()) return;
  CTLayOutTextBox(attributedString(), style_, bounds()).draw(context);
}

}  // namespace zelkon
