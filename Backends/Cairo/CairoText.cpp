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

struct CairoText::Pango {
  ObjectHandle<PangoFontMap> map{pango_cairo_font_map_new()};
  ObjectHandle<PangoContext> context;
  ObjectHandle<PangoLayout> layout;
};

CairoText::CairoText() : pango_(std::make_unique<Pango>()) {
  if (!pango_->map) NSRaise(NSInternalInconsistencyException, "Pango has no backend of the name in PANGOCAIRO_BACKEND");
  pango_->context.reset(pango_font_map_create_context(pango_->map.get()));
  PangoContext* context = pango_->context.get();
  pango_context_set_language(context, pango_language_from_string("en"));
  pango_context_set_round_glyph_positions(context, FALSE);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  pango_cairo_context_set_font_options(context, options);
  cairo_font_options_destroy(options);
  pango_->layout.reset(pango_layout_new(context));
  pango_layout_set_single_paragraph_mode(pango_->layout.get(), TRUE);
}

CairoText::~CairoText() = default;

void CairoText::requireFonts() const {
  if (!PANGO_IS_FC_FONT_MAP(pango_->map.get())) return;
  const FcFontSet* fonts =
      FcConfigGetFonts(pango_fc_font_map_get_config(PANGO_FC_FONT_MAP(pango_->map.get())), FcSetSystem);
  if (!fonts || fonts->nfont == 0) NSRaise(NSInternalInconsistencyException, "fontconfig finds no fonts");
}

const CairoText::Substitute& CairoText::substituteFor(const FontFace& face) {
  const std::string key = face.family + (face.bold ? "\n1" : "\n0");
  auto known = substitutes_.find(key);
  if (known != substitutes_.end()) return known->second;
  Substitute substitute{face.family, face.bold, 1};
  if (!isInstalled(pango_->context.get(), face.family.c_str())) {
    if (face.family == "Helvetica") {
      substitute.family = "Liberation Sans";
    } else {
      substitute.family = "DejaVu Sans";
      if (face.family == "Lucida Grande") substitute.widthFactor = face.bold ? 0.915 : 0.971;
    }
  }
  return substitutes_.emplace(key, std::move(substitute)).first->second;
}

PangoLayout* CairoText::layoutOf(const FontFace& face, std::string_view text, double size) {
  const Substitute& substitute = substituteFor(face);
  PangoFontDescription* description = pango_font_description_new();
  pango_font_description_set_family_static(description, substitute.family.c_str());
  pango_font_description_set_weight(description, substitute.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_absolute_size(description, size * PANGO_SCALE);
  PangoLayout* layout = pango_->layout.get();
  pango_layout_set_font_description(layout, description);
  pango_font_description_free(description);
  const std::string valid = wellFormed(text);
  pango_layout_set_text(layout, valid.data(), static_cast<int>(valid.size()));
  return layout;
}

double CairoText::advanceOf(const FontFace& face, std::string_view text) {
  if (text.empty()) return 0;
  std::string key = face.family;
  key += face.bold ? "\n1" : "\n0";
  key += text;
  auto known = advances_.find(key);
  if (known != advances_.end()) return known->second;
  PangoRectangle logical;
  PangoLayout* layout = layoutOf(face, text, measuringSize);
  pango_layout_line_get_extents(pango_layout_get_line_readonly(layout, 0), nullptr, &logical);
  const double advance = logical.width / (measuringSize * PANGO_SCALE) * substituteFor(face).widthFactor;
  if (advances_.size() >= rememberedAdvances) advances_.clear();
  advances_.emplace(std::move(key), advance);
  return advance;
}

void CairoText::draw(cairo_t* cr, const CGTextRun& run, bool asOutlines) {
  if (!run.face || run.text.empty() || !(run.size > 0) || !isDrawable(cr, run.size)) return;
  const double shapedSize = std::clamp(run.size, smallestShapedSize, largestShapedSize);
  const double scale = run.size / shapedSize;
  PangoLayout* layout = layoutOf(*run.face, run.text, shapedSize);
  cairo_save(cr);
  cairo_new_path(cr);
  cairo_translate(cr, run.origin.x, run.origin.y);
  if (asOutlines) moveOriginToPixelRow(cr);
  cairo_scale(cr, substituteFor(*run.face).widthFactor * scale, -scale);
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
  PangoLayoutLine* line = pango_layout_get_line_readonly(layoutOf(face, text, measuringSize), 0);
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
