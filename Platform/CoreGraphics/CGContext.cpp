#include "CoreGraphics/CGContext.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>

#include "CoreGraphics/DisplayList.h"

namespace zelkon {

namespace {

bool allFinite(std::initializer_list<double> numbers) {
  return std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); });
}

bool isFinite(CGRect r) { return allFinite({r.origin.x, r.origin.y, r.size.width, r.size.height}); }

bool isFinite(const CGAffineTransform& t) { return allFinite({t.a, t.b, t.c, t.d, t.tx, t.ty}); }

bool isInvertible(const CGAffineTransform& t) {
  const double determinant = t.a * t.d - t.b * t.c;
  return determinant != 0 && std::isfinite(determinant);
}

// Miter joins reach up to ten half widths beyond the path.
constexpr double miterLimit = 10;

}  // namespace

// ---- state ----

void CGContext::saveGState() {
  stack_.push_back({state_, false});
  doSave();
}

void CGContext::restoreGState() {
  if (stack_.empty() || stack_.back().group) return;
  state_ = stack_.back().state;
  stack_.pop_back();
  doRestore();
}

void CGContext::concatCTM(const CGAffineTransform& t) {
  if (t == CGAffineTransformIdentity || !isFinite(t)) return;
  state_.ctm = CGAffineTransformConcat(t, state_.ctm);
  doConcat(t);
}

void CGContext::translateCTM(double tx, double ty) { concatCTM(CGAffineTransformMakeTranslation(tx, ty)); }
void CGContext::scaleCTM(double sx, double sy) { concatCTM(CGAffineTransformMakeScale(sx, sy)); }

void CGContext::setFillColor(const RGBA& color) { state_.fill = color; }
void CGContext::setStrokeColor(const RGBA& color) { state_.stroke = color; }

void CGContext::setFillColorWithColor(const CGColorRef& color) {
  if (color) state_.fill = color->rgba();
}

void CGContext::setStrokeColorWithColor(const CGColorRef& color) {
  if (color) state_.stroke = color->rgba();
}

void CGContext::setLineWidth(double width) { state_.lineWidth = width; }
void CGContext::setAlpha(double alpha) { state_.alpha = alpha > 0 ? std::min(alpha, 1.0) : 0; }
void CGContext::setBlendMode(CGBlendMode mode) { state_.blend = mode; }

void CGContext::setShadow(CGSize offset, double blur) {
  static const CGColorRef defaultColor = CGColorCreateGenericGray(0, 1.0 / 3);
  setShadowWithColor(offset, blur, defaultColor);
}

void CGContext::setShadowWithColor(CGSize offset, double blur, const CGColorRef& color) {
  if (!color || !allFinite({offset.width, offset.height, blur}))
    state_.shadow.reset();
  else
    state_.shadow = CGShadow{offset, std::max(blur, 0.0) / 2, color->rgba()};
}

bool CGContext::isClippedOrGrouped() const {
  return state_.clipped || std::any_of(stack_.begin(), stack_.end(), [](const Saved& saved) { return saved.group; });
}

std::vector<CGAffineTransform> CGContext::savedTransforms() const {
  std::vector<CGAffineTransform> transforms;
  for (const Saved& saved : stack_) transforms.push_back(saved.state.ctm);
  return transforms;
}

RGBA CGContext::withAlpha(RGBA color) const {
  color.alpha *= state_.alpha;
  return color;
}

CGShadow CGContext::shadowInContextSpace(const CGShadow& shadow) const {
  const double scale = std::sqrt(std::abs(base_.a * base_.d - base_.b * base_.c));
  return {CGSizeApplyAffineTransform(shadow.offset, base_), shadow.sigma * scale, shadow.color};
}

CGRect CGContext::clipBounds() const {
  if (CGRectIsNull(state_.clipBounds) || !isInvertible(state_.ctm)) return CGRectZero;
  return CGRectApplyAffineTransform(state_.clipBounds, CGAffineTransformInvert(state_.ctm));
}

// ---- path building ----

bool CGContext::bringPathHere() {
  if (pathCTM_ == state_.ctm) return true;
  if (!path_.isEmpty()) {
    if (!isInvertible(state_.ctm)) return false;
    path_ = path_.transformed(CGAffineTransformConcat(pathCTM_, CGAffineTransformInvert(state_.ctm)));
  }
  pathCTM_ = state_.ctm;
  return true;
}

CGPath CGContext::takePath() {
  CGPath path;
  if (bringPathHere()) std::swap(path, path_);
  path_ = {};
  return path;
}

void CGContext::beginPath() { path_ = {}; }

void CGContext::moveToPoint(double x, double y) {
  if (bringPathHere()) path_.moveTo({x, y});
}

void CGContext::addLineToPoint(double x, double y) {
  if (bringPathHere()) path_.addLineTo({x, y});
}

void CGContext::addArc(double x, double y, double radius, double startAngle, double endAngle, int clockwise) {
  if (bringPathHere()) path_.addArc({x, y}, radius, startAngle, endAngle, clockwise != 0);
}

void CGContext::addArcToPoint(double x1, double y1, double x2, double y2, double radius) {
  if (bringPathHere()) path_.addArcToPoint({x1, y1}, {x2, y2}, radius);
}

void CGContext::addRect(CGRect rect) {
  if (bringPathHere()) path_.addRect(rect);
}

void CGContext::addEllipseInRect(CGRect rect) {
  if (bringPathHere()) path_.addEllipseInRect(rect);
}

void CGContext::addPath(const CGPath& path) {
  if (bringPathHere()) path_.append(path);
}

void CGContext::closePath() { path_.close(); }

// ---- clipping ----

void CGContext::clipToPath(const CGPath& path, bool evenOdd) {
  state_.clipped = true;
  if (!path.isPaintable()) {
    state_.clipBounds = CGRectNull;
    doClip({}, evenOdd);
    return;
  }
  const CGRect box = CGRectApplyAffineTransform(path.boundingBox(), state_.ctm);
  state_.clipBounds = CGRectIntersection(state_.clipBounds, box);
  doClip(path, evenOdd);
}

void CGContext::clip() { clipToPath(takePath(), false); }
void CGContext::eoClip() { clipToPath(takePath(), true); }

void CGContext::clipToRect(CGRect rect) {
  beginPath();
  addRect(rect);
  clip();
}

// ---- painting ----

template <typename Paint>
void CGContext::paintWithShadow(CGRect bounds, Paint paint) {
  if (!state_.shadow) {
    paint(state_.blend);
    return;
  }
  CGGroupEffects effects;
  effects.blend = state_.blend;
  effects.shadow = shadowInContextSpace(*state_.shadow);
  // The box of finite coordinates may still be too large for a number.
  doBeginGroup(effects, isFinite(bounds) ? bounds : clipBounds());
  paint(CGBlendMode::normal);
  doEndGroup();
}

void CGContext::fill(const CGPath& path, bool evenOdd) {
  if (!path.isPaintable()) return;
  paintWithShadow(path.boundingBox(), [&](CGBlendMode blend) { doFill(path, evenOdd, withAlpha(state_.fill), blend); });
}

void CGContext::stroke(const CGPath& path) {
  if (!path.isPaintable() || !(state_.lineWidth > 0) || !std::isfinite(state_.lineWidth)) return;
  const double reach = state_.lineWidth / 2 * miterLimit;
  paintWithShadow(NSInsetRect(path.boundingBox(), -reach, -reach),
                  [&](CGBlendMode blend) { doStroke(path, {state_.lineWidth}, withAlpha(state_.stroke), blend); });
}

void CGContext::drawPath(CGPathDrawingMode mode) {
  const CGPath path = takePath();
  if (mode != CGPathDrawingMode::stroke) fill(path, mode == CGPathDrawingMode::eoFill);
  if (mode == CGPathDrawingMode::stroke || mode == CGPathDrawingMode::fillStroke) stroke(path);
}

void CGContext::fillRect(CGRect rect) {
  beginPath();
  if (CGRectIsEmpty(rect)) return;
  addRect(rect);
  fillPath();
}

void CGContext::fillEllipseInRect(CGRect rect) {
  beginPath();
  if (CGRectIsEmpty(rect)) return;
  addEllipseInRect(rect);
  fillPath();
}

void CGContext::clearRect(CGRect rect) {
  if (isFinite(rect) && !CGRectIsEmpty(rect)) doClear(CGRectStandardize(rect));
}

void CGContext::drawGradient(const CGGradientRef& gradient, const CGGradientPlacement& placement) {
  if (!gradient || gradient->stops().empty()) return;
  if (!allFinite({placement.start.x, placement.start.y, placement.end.x, placement.end.y, placement.radius})) return;
  paintWithShadow(clipBounds(), [&](CGBlendMode blend) { doGradient(gradient, placement, state_.alpha, blend); });
}

void CGContext::drawLinearGradient(const CGGradientRef& gradient, CGPoint start, CGPoint end, unsigned options) {
  if (start != end) drawGradient(gradient, {start, end, 0, options});
}

void CGContext::drawRadialGradient(const CGGradientRef& gradient, CGPoint center, double radius, unsigned options) {
  if (radius > 0) drawGradient(gradient, {center, center, radius, options});
}

void CGContext::drawImage(CGRect rect, const CGImageRef& image) {
  if (!image || !isFinite(rect) || CGRectIsEmpty(rect)) return;
  const CGRect place = CGRectStandardize(rect);
  paintWithShadow(place, [&](CGBlendMode blend) { doImage(image, place, state_.alpha, blend); });
}

void CGContext::showTextRun(const CGTextRun& run) {
  if (!run.face || run.text.empty() || !(run.size > 0) || !allFinite({run.size, run.origin.x, run.origin.y})) return;
  // No glyph is wider than two ems or leaves the line by more than one.
  const double width = run.size * 2 * (static_cast<double>(run.text.size()) + 1);
  const CGRect bounds = CGRectMake(run.origin.x - run.size, run.origin.y - run.size, width, run.size * 3);
  paintWithShadow(bounds, [&](CGBlendMode blend) { doText(run, withAlpha(state_.fill), blend); });
}

// ---- groups ----

void CGContext::enterGroup(const CGGroupEffects& effects, CGRect bounds) {
  CGGroupEffects placed = effects;
  if (placed.shadow) placed.shadow = shadowInContextSpace(*placed.shadow);
  stack_.push_back({state_, true});
  state_.alpha = 1;
  state_.blend = CGBlendMode::normal;
  state_.shadow.reset();
  doBeginGroup(placed, isFinite(bounds) ? bounds : clipBounds());
}

void CGContext::leaveGroup() {
  if (stack_.empty() || !stack_.back().group) return;
  state_ = stack_.back().state;
  stack_.pop_back();
  doEndGroup();
}

void CGContext::beginGroup(const CGGroupEffects& effects, CGRect bounds) {
  enterGroup(effects, bounds);
  saveGState();
}

void CGContext::endGroup() {
  if (std::none_of(stack_.begin(), stack_.end(), [](const Saved& saved) { return saved.group; })) return;
  while (!stack_.back().group) restoreGState();
  leaveGroup();
}

void CGContext::beginTransparencyLayer() {
  CGGroupEffects effects;
  effects.alpha = state_.alpha;
  effects.blend = state_.blend;
  effects.shadow = state_.shadow;
  // What lies outside the clip is not seen itself but casts a shadow that may be.
  beginGroup(effects, effects.shadow && isInvertible(state_.ctm)
                          ? CGRectApplyAffineTransform(unboundedRect, CGAffineTransformInvert(state_.ctm))
                          : clipBounds());
}

void CGContext::endTransparencyLayer() { endGroup(); }

void CGContext::drawDisplayList(const DisplayList& list) {
  saveGState();
  const CGAffineTransform outerBase = base_;
  base_ = state_.ctm;
  list.replay(*this);
  base_ = outerBase;
  restoreGState();
}

}  // namespace zelkon
