// Paths of lines and cubic Béziers. Arcs become Béziers when they are added.
#pragma once

#include <optional>
#include <vector>

#include "CoreGraphics/CGGeometry.h"

namespace zelkon {

struct CGPathElement {
  enum class Type : unsigned char { move, line, curve, close };
  Type type;
  CGPoint points[3];  // move, line: [0] the end; curve: control, control, end
  friend bool operator==(const CGPathElement&, const CGPathElement&) = default;
};

class CGPath {
 public:
  void moveTo(CGPoint p);
  // Without a current point: nothing is added.
  void addLineTo(CGPoint p);
  void addCurveTo(CGPoint control1, CGPoint control2, CGPoint end);
  // Line from the current point (if any) to the arc's start, else a move. Angles in radians; clockwise false runs with
  // growing angles; an end below the start has 2 pi added until it is not. More than a full turn keeps going. A
  // negative or non-finite radius or angle adds nothing.
  void addArc(CGPoint center, double radius, double startAngle, double endAngle, bool clockwise);
  // Line to the first tangent point, then the shorter arc. Degenerate corners give a line to `corner`.
  void addArcToPoint(CGPoint corner, CGPoint toward, double radius);
  void addRect(CGRect rect);
  void addEllipseInRect(CGRect rect);
  // Rectangle with rounded corners; the radius is limited to half the shorter side.
  void addRoundedRect(CGRect rect, double radius);
  void close();
  void append(const CGPath& path);

  bool isEmpty() const { return elements_.empty(); }
  std::optional<CGPoint> currentPoint() const { return current_; }
  const std::vector<CGPathElement>& elements() const { return elements_; }
  // Whether there is anything but moves and every coordinate is finite; nothing else may reach a backend.
  bool isPaintable() const;
  // When it is one closed rectangle along the axes whose first side is horizontal, as addRect adds it.
  std::optional<CGRect> rect() const;
  CGRect boundingBox() const;  // of all points, control points included; CGRectNull when empty
  CGPath transformed(const CGAffineTransform& t) const;
  friend bool operator==(const CGPath& a, const CGPath& b) { return a.elements_ == b.elements_; }

 private:
  std::vector<CGPathElement> elements_;
  std::optional<CGPoint> current_;
  CGPoint subpathStart_;
};

}  // namespace zelkon
