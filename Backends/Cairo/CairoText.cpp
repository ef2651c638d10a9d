#include "Backends/Cairo/CairoText.h"

#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>
#include <pango/pangofc-fontmap.h>

#include <algorithm>
#include <cmath>

#include "Foundation/NSException.h"

namespace zelkon {

namespace {

constexpr double measuringSize = 1000;  // large, so that rounding to Pango's units does not show
// Sizes outside are drawn by scaling: Pango counts in whole 1024ths of a unit and in 32 bits.
constexpr double smallestShapedSize = 1, largestShapedSize = 10000;
constexpr size_t rememberedAdvances = 20000;  // then the table starts over

struct ObjectDeleter {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using ObjectHandle = std::unique_ptr<T, ObjectDeleter>;

// A font matrix out of range puts Cairo's context into an error for good; nothing could be seen of such text.
bool isDrawable(cairo_t* cr, double size) {
  double x = size, y = 0;
  cairo_user_to_device_distance(cr, &x, &y);
  const double em = std::hypot(x, y);
  return em > 1e-3 && em < 1e6;
}

// Moves the origin of user space onto a row of pixels where text runs along the rows: off them it would look soft, and
// browsers place theirs so too.
void moveOriginToPixelRow(cairo_t* cr) {
  cairo_matrix_t matrix;
  cairo_get_matrix(cr, &matrix);
  if (matrix.yx != 0) return;
  matrix.y0 = std::floor(matrix.y0 + 0.5);
  cairo_set_matrix(cr, &matrix);
}

bool isInstalled(PangoContext* context, const char* family) {
  PangoFontFamily** families = nullptr;
  int count = 0;
  pango_context_list_families(context, &families, &count);
  bool found = false;
  for (int i = 0; i < count && !found; ++i)
    found = g_ascii_strcasecmp(pango_font_family_get_name(families[i]), family) == 0;
  g_free(families);
  return found;
}

}  // namespace

// One face, as what is installed in its place. Each has a map of fonts of its own: in a shared one, what stands for a
// character that no font has would depend on the face that asked for it first.
struct CairoText::Shaper {
  std::string family;
  bool bold;
  double widthFactor = 1;  // on advances and glyphs
  ObjectHandle<PangoFontMap> map{pango_cairo_font_map_new()};
  ObjectHandle<PangoContext> context{pango_font_map_create_context(map.get())};
  ObjectHandle<PangoLayout> layout;

  explicit Shaper(const FontFace& face);
  // A layout of one line of the text, valid until the next call.
  PangoLayout* layoutOf(std::string_view text, double size);
};

CairoText::Shaper::Shaper(const FontFace& face) : family(face.family), bold(face.bold) {
  pango_context_set_language(context.get(), pango_language_from_string("en"));
  pango_context_set_round_glyph_positions(context.get(), FALSE);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  pango_cairo_context_set_font_options(context.get(), options);
  cairo_font_options_destroy(options);
  layout.reset(pango_layout_new(context.get()));
  pango_layout_set_single_paragraph_mode(layout.get(), TRUE);

  if (isInstalled(context.get(), family.c_str())) return;
  if (family == "Lucida Grande") widthFactor = bold ? 0.915 : 0.971;
  family = family == "Helvetica" ? "Liberation Sans" : "DejaVu Sans";
}

PangoLayout* CairoText::Shaper::layoutOf(std::string_view text, double size) {
  PangoFontDescription* description = pango_font_description_new();
  pango_font_description_set_family_static(description, family.c_str());
  pango_font_description_set_weight(description, bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_absolute_size(description, size * PANGO_SCALE);
  pango_layout_set_font_description(layout.get(), description);
  pango_font_description_free(description);
  const std::string valid = wellFormed(text);
  pango_layout_set_text(layout.get(), valid.data(), static_cast<int>(valid.size()));
  return layout.get();
}

// Begins to look for the fonts.
struct CairoText::Fonts {
  ObjectHandle<PangoFontMap> map{pango_cairo_font_map_new()};
};

CairoText::CairoText() : fonts_(std::make_unique<Fonts>()) {
  if (!fonts_->map) NSRaise(NSInternalInconsistencyException, "Pango has no backend of the name in PANGOCAIRO_BACKEND");
}
CairoText::~CairoText() = default;

void CairoText::requireFonts() const {
  PangoFontMap* map = fonts_->map.get();
  if (!PANGO_IS_FC_FONT_MAP(map)) return;
  const FcFontSet* fonts = FcConfigGetFonts(pango_fc_font_map_get_config(PANGO_FC_FONT_MAP(map)), FcSetSystem);
  if (!fonts || fonts->nfont == 0) NSRaise(NSInternalInconsistencyException, "fontconfig finds no fonts");
}

CairoText::Shaper& CairoText::shaperFor(const FontFace& face) {
  std::unique_ptr<Shaper>& shaper = shapers_[face.family + (face.bold ? "\n1" : "\n0")];
  if (!shaper) shaper = std::make_unique<Shaper>(face);
  return *shaper;
}

double CairoText::advanceOf(const FontFace& face, std::string_view text) {
  if (text.empty()) return 0;
  std::string key = face.family;
  key += face.bold ? "\n1" : "\n0";
  key += text;
  auto known = advances_.find(key);
  if (known != advances_.end()) return known->second;
  PangoRectangle logical;
  Shaper& shaper = shaperFor(face);
  PangoLayout* layout = shaper.layoutOf(text, measuringSize);
  pango_layout_line_get_extents(pango_layout_get_line_readonly(layout, 0), nullptr, &logical);
  const double advance = logical.width / (measuringSize * PANGO_SCALE) * shaper.widthFactor;
  if (advances_.size() >= rememberedAdvances) advances_.clear();
  advances_.emplace(std::move(key), advance);
  return advance;
}

void CairoText::draw(cairo_t* cr, const CGTextRun& run, bool asOutlines) {
  if (!run.face || run.text.empty() || !(run.size > 0) || !isDrawable(cr, run.size)) return;
  const double shapedSize = std::clamp(run.size, smallestShapedSize, largestShapedSize);
  const double scale = run.size / shapedSize;
  Shaper& shaper = shaperFor(*run.face);
  PangoLayout* layout = shaper.layoutOf(run.text, shapedSize);
  cairo_save(cr);
  cairo_new_path(cr);
  cairo_translate(cr, run.origin.x, run.origin.y);
  if (asOutlines) moveOriginToPixelRow(cr);
  cairo_scale(cr, shaper.widthFactor * scale, -scale);
  cairo_move_to(cr, 0, 0);
  PangoLayoutLine* line = pango_layout_get_line_readonly(layout, 0);
  if (asOutlines) {
    pango_cairo_layout_line_path(cr, line);
    cairo_fill(cr);
  } else {
    pango_cairo_show_layout_line(cr, line);
  }
  cairo_new_path(cr);
  cairo_restore(cr);
}

bool CairoText::readsFromRight(const FontFace& face, std::string_view text) {
  PangoLayoutLine* line = pango_layout_get_line_readonly(shaperFor(face).layoutOf(text, measuringSize), 0);
  return pango_layout_line_get_resolved_direction(line) == PANGO_DIRECTION_RTL;
}

std::string CairoText::wellFormed(std::string_view text) {
  if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr)) return std::string(text);
  gchar* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
  std::string result = valid;
  g_free(valid);
  return result;
}

}  // namespace zelkon
