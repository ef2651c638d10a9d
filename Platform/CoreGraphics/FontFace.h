// A typeface as layout sees it: its names and the vertical metrics that hold whatever face draws the glyphs, so that
// layout is the same on every machine.
#pragma once

#include <memory>
#include <string>

namespace zelkon {

struct FontFace {
  std::string family;          // "Lucida Grande", "Helvetica"
  std::string postScriptName;  // "LucidaGrande", "LucidaGrande-Bold", "Helvetica"
  bool bold = false;
  double ascent = 0;   // fraction of the em, positive
  double descent = 0;  // fraction of the em, positive
  double leading = 0;
  // Some families without leading get an extra fifth of the line height between Core Text lines.
  bool extraLinePitch = false;
};
using FontFaceRef = std::shared_ptr<const FontFace>;

FontFaceRef FontFaceLucidaGrande();      // ascent 1980/2048, descent 432/2048
FontFaceRef FontFaceLucidaGrandeBold();  // the same
FontFaceRef FontFaceHelvetica();         // ascent 1577/2048, descent 471/2048, extra pitch

}  // namespace zelkon
