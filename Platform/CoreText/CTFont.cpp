#include "CoreText/CTFont.h"

#include <functional>
#include <map>
#include <string>

#include "CoreGraphics/GraphicsDevice.h"
#include "CoreText/UTF8.h"
#include "Foundation/PlatformSession.h"

namespace zelkon {

namespace {

constexpr double defaultFontSize = 12;
constexpr double systemFontSize = 13;
// Layout without a device is approximate: about the mean advance of Latin text.
constexpr double approximateAdvance = 0.5;

// Advances at one point per em, as the device of the day measured them. Labels ask for the same few texts over and
// over; what is long or rare is measured anew.
class AdvanceMemo {
 public:
  double advance(const FontFaceRef& face, std::string_view text) {
    if (installation_ != GraphicsDevice::installations()) clear();
    if (text.size() > longestRemembered) return measure(*face, text);
    const size_t hash = std::hash<std::string_view>()(text) ^ std::hash<const FontFace*>()(face.get());
    const auto [begin, end] = advances_.equal_range(hash);
    for (auto known = begin; known != end; ++known)
      if (known->second.face == face && known->second.text == text) return known->second.advance;
    const double measured = measure(*face, text);
    if (advances_.size() == mostRemembered) {
      clear();
      return measured;
    }
    advances_.emplace(hash, Advance{face, std::string(text), measured});
    return measured;
  }

 private:
  static constexpr size_t longestRemembered = 256;
  static constexpr size_t mostRemembered = 20000;
  struct Advance {
    FontFaceRef face;
    std::string text;
    double advance;
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
    advances_.clear();
    installation_ = GraphicsDevice::installations();
  }

  std::multimap<size_t, Advance> advances_;  // by the hash of face and text
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
  auto& memo = PlatformSession::part<AdvanceMemo>(PlatformSession::Key::textAdvances);
  return memo.advance(font.face(), text) * font.pointSize();
}

NSFontDescriptor NSFontDescriptorOfFont(const NSFont& font) { return {font.face(), font.pointSize(), 0, std::nullopt}; }

NSFont NSFontWithDescriptor(const NSFontDescriptor& descriptor, double size) {
  return {descriptor.face, size != 0 ? size : descriptor.pointSize};
}

NSFont NSFontConvertToSize(const NSFont& font, double size) { return font.withSize(size); }

}  // namespace zelkon
