// Shaping, measuring and drawing of single runs of text with Pango. Faces that are not installed are replaced by a
// relative, drawn with a horizontal factor that gives it the mean width of the face asked for.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "CoreGraphics/CGContext.h"

typedef struct _cairo cairo_t;

namespace zelkon {

class CairoText {
 public:
  // Raises NSInternalInconsistencyException where Pango has no backend of the name that the environment asks for.
  CairoText();
  ~CairoText();
  CairoText(const CairoText&) = delete;
  CairoText& operator=(const CairoText&) = delete;

  // Raises NSInternalInconsistencyException where there are no fonts: texts would be rows of boxes. Waits until they
  // are found, which begins with this object and goes on beside it.
  void requireFonts() const;

  // Sum of advances at 1 point per em.
  double advanceOf(const FontFace& face, std::string_view text);
  // The run in the source and operator set, baseline origin in the user space of `cr`, y up. `asOutlines` fills the
  // glyphs' outlines at their exact places along the line, with the baseline of upright text on the nearest row of
  // pixels; otherwise glyphs are shown as text, which documents keep as text.
  void draw(cairo_t* cr, const CGTextRun& run, bool asOutlines);
  // Whether the text as a whole reads from right to left.
  bool readsFromRight(const FontFace& face, std::string_view text);
  // The text with everything that is not well-formed UTF-8 replaced.
  static std::string wellFormed(std::string_view text);

 private:
  struct Fonts;
  struct Shaper;
  // Valid as long as this object.
  Shaper& shaperFor(const FontFace& face);

  std::unique_ptr<Fonts> fonts_;
  std::unordered_map<std::string, std::unique_ptr<Shaper>> shapers_;
  std::unordered_map<std::string, double> advances_;
};

}  // namespace zelkon
