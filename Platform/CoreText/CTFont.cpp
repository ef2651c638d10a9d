#include "CoreText/CTFont.h"

#include <map>
#include <string>
#include <unordered_map>

#include "CoreGraphics/GraphicsDevice.h"
#include "CoreText/UTF8.h"

namespace zelkon {

namespace {

constexpr double defaultFontSize = 12;
constexpr double systemFontSize = 13;
// Layout without a device is approximate: about the mean advance of Latin text.
constexpr double approximateAdvance = 0.5;

struct TextHash {
  using is_transparent = void;
  size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};

// Advances at one point per em, as the device of the day measured them. Labels ask for the same few texts over and
// over; what is long or rare is measured anew.
class AdvanceMemo {
 public:
  double advance(const FontFaceRef& face, std::string_view text) {
    if (installation_ != GraphicsDevice::installations()) clear();
    if (text.size() > longestRemembered) return measure(*face, text);
    auto& [held, advances] = faces_[face.get()];
    held = face;
    if (const auto found = advances.find(text); found != advances.end()) return found->second;
    const double measured = measure(*face, text);
    if (++count_ > mostRemembered) {
      clear();
      return measured;
    }
    advances.emplace(text, measured);
    return measured;
  }

 private:
  static constexpr size_t longestRemembered = 256;
  static constexpr size_t mostRemembered = 20000;
  using Advances = std::unordered_map<std::string, double, TextHash, std::equal_to<>>;
  struct Face {
    FontFaceRef held;  // keeps the address from being taken by another face
    Advances advances;
  };

  static double measure(const FontFace& face, std::string_view text) {
    if (text.empty()) return 0;
    const bool wellFormed = UTF8IsWellFormed(text);
    const std::string mended = wellFormed ? std::string() : UTF8WithReplacements(text);
    if (!wellFormed) text = mended;
    if (GraphicsDevice* device = GraphicsDevice::current()) return device->advanceOfText(face, text);
    double sum = 0;
    for (size_t offset = 0; offset < text.size(); offset += UTF8CodePointAt(text, offset).length)
      sum += approximateAdvance;
    return sum;
  }

  void clear() {
    faces_.clear();
    count_ = 0;
    installation_ = GraphicsDevice::installations();
  }

  std::map<const FontFace*, Face> faces_;
  size_t count_ = 0;
  unsigned long installation_ = 0;
};

}  // namespace

std::optional<NSFont> NSFontWithName(std::string_view name, double size) {
  if (!(size > 0)) size = defaultFontSize;
  if (name == "Lucida Grande" || name == "LucidaGrande") return NSFont(FontFaceLucidaGrande(), size);
  if (name == "Lucida Grande Bold" || name == "LucidaGrande-Bold") return NSFont(FontFaceLucidaGrandeBold(), size);
  if (name == "Helvetica") return NSFont(FontFaceHelvetica(), size);
  return std::nullopt;
}

NSFont NSBoldSystemFontOfSize(double size) { return {FontFaceLucidaGrandeBold(), size > 0 ? size : systemFontSize}; }

double CTTextAdvance(const CTFont& font, std::string_view text) {
  static AdvanceMemo memo;
  return memo.advance(font.face(), text) * font.pointSize();
}

NSFontDescriptor NSFontDescriptorOfFont(const NSFont& font) { return {font.face(), font.pointSize(), 0, std::nullopt}; }

NSFont NSFontWithDescriptor(const NSFontDescriptor& descriptor, double size) {
  return {descriptor.face, size != 0 ? size : descriptor.pointSize};
}

NSFont NSFontConvertToSize(const NSFont& font, double size) { return font.withSize(size); }

}  // namespace zelkon
