#include "Backends/Cairo/SVGContext.h"

#include <algorithm>
#include <cmath>

#include "Backends/Cairo/CairoPainting.h"
#include "Backends/Cairo/CairoSurface.h"
#include "Backends/Cairo/GradientRegion.h"
#include "Backends/Cairo/SVGFormat.h"
#include "CoreGraphics/DisplayList.h"

namespace zelkon {

namespace {

std::string rectangle(CGRect r) {
  return svgAttribute("x", r.origin.x) + svgAttribute("y", r.origin.y) + svgAttribute("width", r.size.width) +
         svgAttribute("height", r.size.height);
}

std::string reference(const char* name, const std::string& id) {
  return std::string(" ") + name + "=\"url(#" + id + ")\"";
}

std::string opacity(const char* name, double alpha) { return alpha == 1 ? std::string{} : svgAttribute(name, alpha); }

const char* blendStyle(CGBlendMode blend) {
  switch (blend) {
    case CGBlendMode::overlay:
      return "mix-blend-mode:overlay";
    case CGBlendMode::plusLighter:
      return "mix-blend-mode:plus-lighter";
    default:
      return "";
  }
}

const char* familiesOf(const FontFace& face) {
  return face.family == "Helvetica"
             ? "Helvetica, 'Liberation Sans', Arial, sans-serif"
             : "'Lucida Grande', 'Lucida Sans Unicode', 'Lucida Sans', 'DejaVu Sans', Verdana, sans-serif";
}

bool isInvertible(const CGAffineTransform& t) {
  const double determinant = t.a * t.d - t.b * t.c;
  return determinant != 0 && std::isfinite(determinant);
}

CGPath pathOfRect(CGRect rect) {
  CGPath path;
  path.addRect(rect);
  return path;
}

}  // namespace

SVGContext::SVGContext(CGSize size, std::shared_ptr<CairoText> text) : size_(size), text_(std::move(text)) {
  Group page;
  page.states.push_back({{1, 0, 0, -1, 0, size.height}, "", CGRectMake(0, 0, size.width, size.height)});
  groups_.push_back(std::move(page));
}

SVGContext::~SVGContext() = default;

// ---- the document ----

std::string SVGContext::document() const {
  const std::string width = svgNumber(size_.width), height = svgNumber(size_.height);
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"" +
      width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " + height + "\">\n";
  if (!definitions_.empty()) text += "<defs>\n" + definitions_ + "</defs>\n";
  text += groups_.front().body;
  if (!groups_.front().openClip.empty()) text += "</g>\n";
  return text + "</svg>\n";
}

std::string SVGContext::define(const std::string& before, const std::string& after) {
  const auto [known, isNew] = idOfDefinition_.try_emplace(before + '\n' + after);
  if (isNew) {
    known->second = "d" + std::to_string(idOfDefinition_.size());
    definitions_ += before + " id=\"" + known->second + "\"" + after + "\n";
  }
  return known->second;
}

void SVGContext::closeClip(Group& group) {
  if (!group.openClip.empty()) group.body += "</g>\n";
  group.openClip.clear();
}

void SVGContext::add(const std::string& element, CGBlendMode blend) {
  Group& group = top();
  if (blend == CGBlendMode::destinationIn) {
    closeClip(group);
    group.body = "<g" + reference("mask", maskDefinition(element, true)) + ">\n" + group.body + "</g>\n";
    return;
  }
  if (group.openClip != state().clip) {
    closeClip(group);
    group.openClip = state().clip;
    if (!group.openClip.empty()) group.body += "<g" + reference("clip-path", group.openClip) + ">\n";
  }
  const std::string style = blendStyle(blend);
  group.body += style.empty() ? element : "<g style=\"" + style + "\">" + element + "</g>\n";
}

std::string SVGContext::maskDefinition(const std::string& content, bool byAlpha) {
  return define("<mask", std::string(byAlpha ? " style=\"mask-type:alpha\"" : "") + " maskUnits=\"userSpaceOnUse\"" +
                             rectangle(CGRectMake(0, 0, size_.width, size_.height)) + ">" + content + "</mask>");
}

// ---- state ----

void SVGContext::doSave() { top().states.push_back(state()); }

void SVGContext::doRestore() {
  if (top().states.size() > 1) top().states.pop_back();
}

void SVGContext::doConcat(const CGAffineTransform& t) { state().toPage = CGAffineTransformConcat(t, state().toPage); }

void SVGContext::doClip(const CGPath& path, bool evenOdd) {
  const CGPath onPage = path.transformed(state().toPage);
  std::string content;
  if (!onPage.isEmpty())
    content = "<path d=\"" + svgPathData(onPage) + "\"" + (evenOdd ? " clip-rule=\"evenodd\"" : "") + "/>";
  const std::string outer = state().clip.empty() ? std::string{} : reference("clip-path", state().clip);
  state().clip = define("<clipPath", outer + ">" + content + "</clipPath>");
  const CGRect box = CGRectIntersection(state().clipBox, onPage.boundingBox());
  state().clipBox = onPage.isEmpty() || CGRectIsNull(box) ? CGRectZero : box;
}

// ---- painting ----

std::string SVGContext::paint(const char* name, const RGBA& color) {
  return std::string(" ") + name + "=\"" + svgColor(brightened(color, top().brightness)) + "\"" +
         opacity((std::string(name) + "-opacity").c_str(), color.alpha);
}

void SVGContext::doFill(const CGPath& path, bool evenOdd, const RGBA& color, CGBlendMode blend) {
  const CGPath onPage = path.transformed(state().toPage);
  add("<path d=\"" + svgPathData(onPage) + "\"" + (evenOdd ? " fill-rule=\"evenodd\"" : "") + paint("fill", color) +
          "/>\n",
      blend);
}

void SVGContext::doStroke(const CGPath& path, const CGStrokeStyle& style, const RGBA& color, CGBlendMode blend) {
  if (!(style.width > 0) || !isInvertible(state().toPage)) return;
  const CGAffineTransform& t = state().toPage;
  const double scale = std::hypot(t.a, t.b);
  const bool keepsShape = std::abs(std::hypot(t.c, t.d) - scale) < 1e-9 && std::abs(t.a * t.c + t.b * t.d) < 1e-9;
  const std::string data = svgPathData(keepsShape ? path.transformed(t) : path);
  add("<path d=\"" + data + "\"" + (keepsShape ? std::string{} : " transform=\"" + svgTransform(t) + "\"") +
          " fill=\"none\"" + paint("stroke", color) +
          svgAttribute("stroke-width", keepsShape ? style.width * scale : style.width) +
          " stroke-miterlimit=\"10\"/>\n",
      blend);
}

std::string SVGContext::gradientDefinition(const CGGradient& gradient, const CGGradientPlacement& placement) {
  const bool radial = placement.radius > 0;
  std::string text = " gradientUnits=\"userSpaceOnUse\"";
  if (radial) {
    text += svgAttribute("cx", placement.start.x) + svgAttribute("cy", placement.start.y) +
            svgAttribute("r", placement.radius);
  } else {
    text += svgAttribute("x1", placement.start.x) + svgAttribute("y1", placement.start.y) +
            svgAttribute("x2", placement.end.x) + svgAttribute("y2", placement.end.y);
  }
  text += " gradientTransform=\"" + svgTransform(state().toPage) + "\">";
  for (const CGGradientStop& stop : gradient.stops())
    text += "<stop" + svgAttribute("offset", stop.location) +
            paint("stop-color", {stop.color.red, stop.color.green, stop.color.blue, 1}) +
            opacity("stop-opacity", stop.color.alpha) + "/>";
  const std::string name = radial ? "radialGradient" : "linearGradient";
  return define("<" + name, text + "</" + name + ">");
}

void SVGContext::doGradient(const CGGradientRef& gradient, const CGGradientPlacement& placement, double alpha,
                            CGBlendMode blend) {
  if (!gradient || gradient->stops().empty() || !isInvertible(state().toPage) || CGRectIsEmpty(state().clipBox)) return;
  const CGAffineTransform& t = state().toPage;
  const CGRect visible = CGRectApplyAffineTransform(state().clipBox, CGAffineTransformInvert(t));
  const CGPath region = gradientRegion(placement, visible);
  if (region.isEmpty()) return;
  add("<path d=\"" + svgPathData(region.transformed(t)) + "\"" +
          reference("fill", gradientDefinition(*gradient, placement)) + opacity("fill-opacity", alpha) + "/>\n",
      blend);
}

void SVGContext::doText(const CGTextRun& run, const RGBA& color, CGBlendMode blend) {
  if (!run.face || run.text.empty() || !(run.size > 0)) return;
  const CGAffineTransform place = CGAffineTransformConcat({1, 0, 0, -1, run.origin.x, run.origin.y}, state().toPage);
  const bool onlyMoved = CGAffineTransform{place.a, place.b, place.c, place.d, 0, 0} == CGAffineTransformIdentity;
  std::string text = "<text";
  if (onlyMoved)
    text += svgAttribute("x", place.tx) + svgAttribute("y", place.ty);
  else
    text += " transform=\"" + svgTransform(place) + "\"";
  text += std::string(" font-family=\"") + familiesOf(*run.face) + "\"" + svgAttribute("font-size", run.size);
  if (run.face->bold) text += " font-weight=\"bold\"";
  // The run's left end is its origin also where its text runs from the right.
  if (text_->readsFromRight(*run.face, run.text)) text += " direction=\"rtl\" text-anchor=\"end\"";
  // Whatever face the reader has, the run takes the room that the layout gave it.
  text += svgAttribute("textLength", text_->advanceOf(*run.face, run.text) * run.size);
  text += " lengthAdjust=\"spacingAndGlyphs\" xml:space=\"preserve\"" + paint("fill", color) + ">";
  add(text + svgEscaped(CairoText::wellFormed(run.text)) + "</text>\n", blend);
}

// ---- images ----

void SVGContext::doImage(const CGImageRef& image, CGRect rect, double alpha, CGBlendMode blend) {
  if (!image || image->width() <= 0 || image->height() <= 0) return;
  rect = CGRectStandardize(rect);
  if (image->recording()) return replayImage(*image, rect, alpha, blend);
  const std::shared_ptr<Surface> surface = image->surface(1);
  const auto* pixels = dynamic_cast<const CairoSurface*>(surface.get());
  if (!pixels) return;
  const std::string id =
      define("<image", svgAttribute("width", image->width()) + svgAttribute("height", image->height()) +
                           " preserveAspectRatio=\"none\" xlink:href=\"data:image/png;base64," +
                           svgBase64(pixels->encodePNG()) + "\"/>");
  const CGAffineTransform upright{
      rect.size.width / image->width(), 0, 0, -rect.size.height / image->height(), rect.origin.x, CGRectGetMaxY(rect)};
  std::string element = "<use xlink:href=\"#" + id + "\" transform=\"" +
                        svgTransform(CGAffineTransformConcat(upright, state().toPage)) + "\"" +
                        opacity("opacity", alpha);
  if (top().brightness != 1) element += " style=\"filter:brightness(" + svgNumber(top().brightness) + ")\"";
  add(element + "/>\n", blend);
}

void SVGContext::replayImage(const CGImage& image, CGRect rect, double alpha, CGBlendMode blend) {
  saveGState();
  CGGroupEffects effects;
  effects.alpha = alpha;
  effects.blend = blend;
  doBeginGroup(effects, rect);
  saveGState();
  doClip(pathOfRect(rect), false);
  concatCTM({rect.size.width / image.width(), 0, 0, rect.size.height / image.height(), rect.origin.x, rect.origin.y});
  drawDisplayList(*image.recording());
  restoreGState();
  doEndGroup();
  restoreGState();
}

void SVGContext::doClear(CGRect rect) {
  if (top().body.empty()) return;
  closeClip(top());
  // Everything but the rectangle stays; the clip in force limits what is taken away.
  std::string hole = "<path d=\"" + svgPathData(pathOfRect(rect).transformed(state().toPage)) + "\"/>";
  if (!state().clip.empty()) hole = "<g" + reference("clip-path", state().clip) + ">" + hole + "</g>";
  const std::string all = "<rect" + rectangle(CGRectMake(0, 0, size_.width, size_.height)) + " fill=\"#ffffff\"/>";
  top().body = "<g" + reference("mask", maskDefinition(all + hole, false)) + ">\n" + top().body + "</g>\n";
}

// ---- groups ----

void SVGContext::doBeginGroup(const CGGroupEffects& effects, CGRect) {
  Group group;
  group.effects = effects;
  group.brightness = top().brightness * effects.brightness;
  // The clip in force holds for the finished group; inside, what lies beyond it can still cast a shadow.
  group.states.push_back({state().toPage, "",
                          effects.shadow
                              ? NSInsetRect(CGRectMake(0, 0, size_.width, size_.height), -size_.width, -size_.height)
                              : state().clipBox});
  groups_.push_back(std::move(group));
}

std::string SVGContext::shadowFilter(const CGShadow& shadow) {
  const double reach = 3 * shadow.sigma + std::max(std::abs(shadow.offset.width), std::abs(shadow.offset.height));
  const CGRect region = NSInsetRect(CGRectMake(0, 0, size_.width, size_.height), -reach, -reach);
  return define("<filter", " filterUnits=\"userSpaceOnUse\"" + rectangle(region) +
                               " color-interpolation-filters=\"sRGB\"><feOffset in=\"SourceAlpha\"" +
                               svgAttribute("dx", shadow.offset.width) + svgAttribute("dy", -shadow.offset.height) +
                               "/><feGaussianBlur" + svgAttribute("stdDeviation", shadow.sigma) +
                               " result=\"shape\"/><feFlood flood-color=\"" +
                               svgColor(brightened(shadow.color, top().brightness)) + "\"" +
                               opacity("flood-opacity", shadow.color.alpha) +
                               "/><feComposite operator=\"in\" in2=\"shape\"/></filter>");
}

void SVGContext::doEndGroup() {
  if (groups_.size() < 2) return;
  Group group = std::move(groups_.back());
  groups_.pop_back();
  closeClip(group);
  const CGGroupEffects& effects = group.effects;
  if (group.body.empty() && effects.blend != CGBlendMode::destinationIn) return;
  std::string open = "<g" + opacity("opacity", effects.alpha);
  if (group.body.find("mix-blend-mode") != std::string::npos) open += " style=\"isolation:isolate\"";
  if (effects.shadow) {
    // The shadow is a filtered copy under the drawing, so that the drawing itself stays lines and text.
    const std::string id = "g" + std::to_string(++groupIds_);
    add("<use xlink:href=\"#" + id + "\"" + reference("filter", shadowFilter(*effects.shadow)) + "/>\n");
    open = "<g id=\"" + id + "\"" + open.substr(2);
  }
  add(open == "<g" ? group.body : open + ">\n" + group.body + "</g>\n", effects.blend);
}

}  // namespace zelkon
