// A layer that shows text: first line at the top, centred or aligned over the full bounds width.
#pragma once

#include "CoreText/CTFramesetter.h"
#include "QuartzCore/CALayer.h"

namespace zelkon {

class CATextLayer : public CALayer {
 public:
  static std::shared_ptr<CATextLayer> layer();
  std::string className() const override { return "CATextLayer"; }

  // A plain text takes the layer's font, size and colour; an attributed one its own (black and Helvetica 12 where it
  // has none). Each change marks the layer for display.
  void setString(std::string text);
  void setString(NSAttributedString text);
  // The text with the attributes it is shown in.
  NSAttributedString attributedString() const;
  const std::string& plainString() const;
  const CTFont& font() const { return font_; }  // Helvetica 12 at first; its own size is not used for drawing
  void setFont(CTFont font);
  double fontSize() const { return fontSize_; }  // 36 at first
  void setFontSize(double size);
  const CGColorRef& foregroundColor() const { return foreground_; }  // white at first
  void setForegroundColor(CGColorRef color);
  bool isWrapped() const { return style_.wrapped; }
  void setWrapped(bool wrapped);
  void setTruncationMode(std::optional<CTLineTruncation> mode);
  void setAlignmentMode(NSTextAlignment alignment);

  bool needsDisplayOnBoundsChange() const override { return true; }
  bool drawsItself() const override { return true; }
  void drawInContext(CGContext& context) override;

 private:
  NSAttributedString text_;
  bool isPlain_ = true;
  CTFont font_;
  double fontSize_ = 36;
  CGColorRef foreground_ = kCGColorWhite();
  CTTextBoxStyle style_;
};

}  // namespace zelkon
