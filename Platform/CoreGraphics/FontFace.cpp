#include "CoreGraphics/FontFace.h"

namespace zelkon {

namespace {

constexpr double unitsPerEm = 2048;

FontFaceRef makeLucidaGrande(const char* postScriptName, bool bold) {
  return std::make_shared<const FontFace>(
      FontFace{"Lucida Grande", postScriptName, bold, 1980 / unitsPerEm, 432 / unitsPerEm, 0, false});
}

}  // namespace

FontFaceRef FontFaceLucidaGrande() {
  static const FontFaceRef face = makeLucidaGrande("LucidaGrande", false);
  return face;
}

FontFaceRef FontFaceLucidaGrandeBold() {
  static const FontFaceRef face = makeLucidaGrande("LucidaGrande-Bold", true);
  return face;
}

FontFaceRef FontFaceHelvetica() {
  static const FontFaceRef face = std::make_shared<const FontFace>(
      FontFace{"Helvetica", "Helvetica", false, 1577 / unitsPerEm, 471 / unitsPerEm, 0, true});
  return face;
}

}  // namespace zelkon
