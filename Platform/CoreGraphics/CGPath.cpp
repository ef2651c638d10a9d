#include "CoreGraphics/CGPath.h"

#include <algorithm>
#include <limits>

namespace zelkon {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double turn = 2 * pi;
constexpr double quadrant = pi / 2;

bool isFinite(CGPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); }

CGPoint pointOnCircle(CGPoint center, double radius, double angle) {
  return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
}

// Adds the curves of an arc whose start is the path's current point: one per quadrant and one for what is left.
void addArcCurves(CGPath& path, CGPoint center, double radius, double start, double sweep, CGPoint end) {
  const double direction = sweep < 0 ? -1 : 1;
  double left = std::abs(sweep);
  double angle = start;
  while (left > 1e-9) {
    const double step = left > quadrant + 1e-9 ? quadrant : left;
    const double next = angle + direction * step;
    const double handle = direction * radius * 4 / 3 * std::tan(step / 4);
    const CGPoint from = pointOnCircle(center, radius, angle);
    left -= step;
    const CGPoint to = left > 1e-9 ? pointOnCircle(center, radius, next) : end;
    path.addCurveTo({from.x - handle * std::sin(angle), from.y + handle * std::cos(angle)},
                    {to.x + handle * std::sin(next), to.y - handle * std::cos(next)}, to);
    angle = next;
  }
}

// The signed angle from start to end in the direction of drawing.
double sweepOf(double start, double end, bool clockwise) {
  double sweep = end - start;
  // Further turns cover the same disc; a sweep of no sensible size must not be walked quadrant by quadrant.
  if (std::abs(sweep) >= 5 * turn) sweep = std::fmod(sweep, turn) + std::copysign(4 * turn, sweep);
  if (clockwise && sweep > 0) {
    sweep -= turn * (std::floor(sweep / turn + 1e-12) + 1);
    if (sweep < -turn) sweep += turn;
  } else if (!clockwise && sweep < 0) {
    sweep += turn * std::ceil(-sweep / turn - 1e-12);
  }
  return sweep;
}

}  // namespace

void CGPath::moveTo(CGPoint p) {
  elements_.push_back({CGPathElement::Type::move, {p, {}, {}}});
  current_ = subpathStart_ = p;
}

void CGPath::addLineTo(CGPoint p) {
  if (!current_) return;
  elements_.push_back({CGPathElement::Type::line, {p, {}, {}}});
  current_ = p;
}

void CGPath::addCurveTo(CGPoint control1, CGPoint control2, CGPoint end) {
  if (!current_) return;
  elements_.push_back({CGPathElement::Type::curve, {control1, control2, end}});
  current_ = end;
}

void CGPath::addArc(CGPoint center, double radius, double startAngle, double endAngle, bool clockwise) {
  if (!(radius >= 0) || !std::isfinite(radius) || !std::isfinite(endAngle - startAngle)) return;
  const CGPoint start = pointOnCircle(center, radius, startAngle);
  if (current_)
    addLineTo(start);
  else
    moveTo(start);
  if (radius == 0) return;
  const double sweep = sweepOf(startAngle, endAngle, clockwise);
  addArcCurves(*this, center, radius, startAngle, sweep, pointOnCircle(center, radius, startAngle + sweep));
}

void CGPath::addArcToPoint(CGPoint corner, CGPoint toward, double radius) {
  if (!current_) return;
  const CGPoint back{current_->x - corner.x, current_->y - corner.y};
  const CGPoint ahead{toward.x - corner.x, toward.y - corner.y};
  const double backLength = std::hypot(back.x, back.y), aheadLength = std::hypot(ahead.x, ahead.y);
  if (!(radius > 0) || !std::isfinite(radius) || !(backLength > 0) || !(aheadLength > 0) ||
      !std::isfinite(backLength) || !std::isfinite(aheadLength)) {
    addLineTo(corner);
    return;
  }
  const CGPoint u{back.x / backLength, back.y / backLength};
  const CGPoint v{ahead.x / aheadLength, ahead.y / aheadLength};
  const double cross = u.x * v.y - u.y * v.x;
  if (std::abs(cross) < 1e-12) {
    addLineTo(corner);
    return;
  }
  const double angle = std::atan2(std::abs(cross), u.x * v.x + u.y * v.y);
  const double distance = radius / std::tan(angle / 2);
  const CGPoint first{corner.x + distance * u.x, corner.y + distance * u.y};
  const CGPoint second{corner.x + distance * v.x, corner.y + distance * v.y};
  // The centre lies square to the incoming line, on the side to which the corner turns.
  const double side = cross < 0 ? 1 : -1;
  const CGPoint center{first.x + side * radius * u.y, first.y - side * radius * u.x};
  addLineTo(first);
  addArcCurves(*this, center, radius, std::atan2(first.y - center.y, first.x - center.x), side * (pi - angle), second);
}

void CGPath::addRect(CGRect rect) {
  if (CGRectIsNull(rect)) return;
  const double x = rect.origin.x, y = rect.origin.y, w = rect.size.width, h = rect.size.height;
  moveTo({x, y});
  addLineTo({x + w, y});
  addLineTo({x + w, y + h});
  addLineTo({x, y + h});
  close();
}

void CGPath::addEllipseInRect(CGRect rect) {
  if (CGRectIsNull(rect)) return;
  constexpr double k = 0.5522847498307936;  // 4/3 tan(pi/8)
  const double rx = CGRectGetWidth(rect) / 2, ry = CGRectGetHeight(rect) / 2;
  const double x = CGRectGetMidX(rect), y = CGRectGetMidY(rect);
  moveTo({x + rx, y});
  addCurveTo({x + rx, y + k * ry}, {x + k * rx, y + ry}, {x, y + ry});
  addCurveTo({x - k * rx, y + ry}, {x - rx, y + k * ry}, {x - rx, y});
  addCurveTo({x - rx, y - k * ry}, {x - k * rx, y - ry}, {x, y - ry});
  addCurveTo({x + k * rx, y - ry}, {x + rx, y - k * ry}, {x + rx, y});
  close();
}

void CGPath::addRoundedRect(CGRect rect, double radius) {
  const double limit = std::min(CGRectGetWidth(rect), CGRectGetHeight(rect)) / 2;
  const double r = std::min(radius, limit);
  if (!(r > 0) || CGRectIsNull(rect)) {
    addRect(rect);
    return;
  }
  const double minX = CGRectGetMinX(rect), maxX = CGRectGetMaxX(rect);
  const double minY = CGRectGetMinY(rect), maxY = CGRectGetMaxY(rect);
  moveTo({minX + r, minY});
  addLineTo({maxX - r, minY});
  addArcCurves(*this, {maxX - r, minY + r}, r, -quadrant, quadrant, {maxX, minY + r});
  addLineTo({maxX, maxY - r});
  addArcCurves(*this, {maxX - r, maxY - r}, r, 0, quadrant, {maxX - r, maxY});
  addLineTo({minX + r, maxY});
  addArcCurves(*this, {minX + r, maxY - r}, r, quadrant, quadrant, {minX, maxY - r});
  addLineTo({minX, minY + r});
  addArcCurves(*this, {minX + r, minY + r}, r, pi, quadrant, {minX + r, minY});
  close();
}

void CGPath::close() {
  if (elements_.empty() || elements_.back().type == CGPathElement::Type::close) return;
  elements_.push_back({CGPathElement::Type::close, {}});
  current_ = subpathStart_;
}

void CGPath::append(const CGPath& path) {
  elements_.insert(elements_.end(), path.elements_.begin(), path.elements_.end());
  if (!path.current_) return;
  current_ = path.current_;
  subpathStart_ = path.subpathStart_;
}

bool CGPath::isPaintable() const {
  bool draws = false;
  for (const CGPathElement& element : elements_) {
    for (const CGPoint& point : element.points)
      if (!isFinite(point)) return false;
    draws = draws || element.type != CGPathElement::Type::move;
  }
  return draws;
}

std::optional<CGRect> CGPath::rect() const {
  using Type = CGPathElement::Type;
  constexpr Type types[] = {Type::move, Type::line, Type::line, Type::line, Type::close};
  if (!std::equal(elements_.begin(), elements_.end(), std::begin(types), std::end(types),
                  [](const CGPathElement& element, Type type) { return element.type == type; }))
    return std::nullopt;
  const CGPoint a = elements_[0].points[0], b = elements_[1].points[0], c = elements_[2].points[0],
                d = elements_[3].points[0];
  if (a.y != b.y || b.x != c.x || c.y != d.y || d.x != a.x) return std::nullopt;
  return boundingBox();
}

CGRect CGPath::boundingBox() const {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  double minX = infinity, minY = infinity, maxX = -infinity, maxY = -infinity;
  for (const CGPathElement& element : elements_) {
    if (element.type == CGPathElement::Type::close) continue;
    const int count = element.type == CGPathElement::Type::curve ? 3 : 1;
    for (int i = 0; i < count; ++i) {
      minX = std::min(minX, element.points[i].x);
      minY = std::min(minY, element.points[i].y);
      maxX = std::max(maxX, element.points[i].x);
      maxY = std::max(maxY, element.points[i].y);
    }
  }
  if (!(minX <= maxX && minY <= maxY)) return CGRectNull;
  return CGRectMake(minX, minY, maxX - minX, maxY - minY);
}

CGPath CGPath::transformed(const CGAffineTransform& t) const {
  CGPath result = *this;
  for (CGPathElement& element : result.elements_) {
    if (element.type == CGPathElement::Type::close) continue;
    const int count = element.type == CGPathElement::Type::curve ? 3 : 1;
    for (int i = 0; i < count; ++i) element.points[i] = CGPointApplyAffineTransform(element.points[i], t);
  }
  if (current_) result.current_ = CGPointApplyAffineTransform(*current_, t);
  result.subpathStart_ = CGPointApplyAffineTransform(subpathStart_, t);
  return result;
}

}  // namespace zelkon
