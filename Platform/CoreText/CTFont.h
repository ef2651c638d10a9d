// A face at a size. Copying is copying a handle. NSFont and CTFont are the same thing.
#pragma once

#include <optional>
#include <string_view>

#include "CoreGraphics/FontFace.h"

namespace zelkon {

class CTFont {
 public:
  CTFont() : CTFont(FontFaceHelvetica(), 12) {}
  CTFont(FontFaceRef face, double size) : face_(std::move(face)), size_(size) {}
  const FontFaceRef& face() const { return face_; }
  double pointSize() const { return size_; }
  double ascender() const { return face_->ascent * size_; }     // positive, unrounded
  double descender() const { return -face_->descent * size_; }  // negative, unrounded
  double leading() const { return face_->leading * size_; }
  CTFont withSize(double size) const { return {face_, size}; }
  friend bool operator==(const CTFont& a, const CTFont& b) { return a.face_ == b.face_ && a.size_ == b.size_; }

 private:
  FontFaceRef face_;
  double size_;
};
using NSFont = CTFont;

// By family or PostScript name ("Lucida Grande", "LucidaGrande-Bold", "Helvetica"); nothing for unknown names.
std::optional<NSFont> NSFontWithName(std::string_view name, double size);
NSFont NSBoldSystemFontOfSize(double size);  // Lucida Grande Bold; size 0 means 13

// Sum of advances in points; remembered per face and text.
double CTTextAdvance(const CTFont& font, std::string_view text);

// What a font is looked up by. A width entry at the top level is carried along but no face is matched by it: only the
// traits dictionary counts, so adding one changes no measurement.
struct NSFontDescriptor {
  FontFaceRef face;
  double pointSize = 12;
  double widthTraitInTraits = 0;          // NSFontWidthTrait inside NSFontTraitsAttribute
  std::optional<double> widthAtTopLevel;  // NSFontWidthTrait added beside it
};
NSFontDescriptor NSFontDescriptorOfFont(const NSFont& font);
// Size 0 takes the descriptor's own.
NSFont NSFontWithDescriptor(const NSFontDescriptor& descriptor, double size);
// Same face, new size.
NSFont NSFontConvertToSize(const NSFont& font, double size);

}  // namespace zelkon
