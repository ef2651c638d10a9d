// The drawing surface: a non-virtual interface with the platform's vocabulary over a small virtual core. State stack,
// path building, colours, shadows and transparency layers live here once; a backend only paints.
//
// User space is in points, y up. Shadow offsets and blurs are in base space: the space of the context when it was made,
// or of the recording that is being replayed; they do not follow the CTM.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CoreGraphics/CGColor.h"
#include "CoreGraphics/CGGeometry.h"
#include "CoreGraphics/CGGradient.h"
#include "CoreGraphics/CGImage.h"
#include "CoreGraphics/CGPath.h"
#include "CoreGraphics/FontFace.h"

namespace zelkon {

enum class CGBlendMode : unsigned char { normal, overlay, copy, destinationIn, plusLighter };
enum class CGPathDrawingMode { fill = 0, eoFill = 1, stroke = 2, fillStroke = 3 };

struct CGShadow {
  CGSize offset;  // base space, positive height is up
  double sigma;   // standard deviation of the gaussian, base-space units
  RGBA color;
  friend bool operator==(const CGShadow&, const CGShadow&) = default;
};

// How a finished group is put onto what lies beneath it.
struct CGGroupEffects {
  double alpha = 1;
  CGBlendMode blend = CGBlendMode::normal;
  std::optional<CGShadow> shadow;  // cast by the group's alpha, under it
  double brightness = 1;           // factor on the plain colour components, clamped to 1
  friend bool operator==(const CGGroupEffects&, const CGGroupEffects&) = default;
};

struct CGStrokeStyle {
  double width = 1;  // butt caps, miter joins, miter limit 10
  friend bool operator==(const CGStrokeStyle&, const CGStrokeStyle&) = default;
};

// A run of text in one font, baseline origin in user space; drawn by the backend's shaper, one direction.
struct CGTextRun {
  FontFaceRef face;
  double size = 12;  // points per em
  std::string text;  // UTF-8, no line breaks
  CGPoint origin;    // left end of the baseline
  friend bool operator==(const CGTextRun&, const CGTextRun&) = default;
};

class CGContext {
 public:
  virtual ~CGContext() = default;

  void saveGState();
  void restoreGState();  // more restores than saves: nothing
  void concatCTM(const CGAffineTransform& t);
  void translateCTM(double tx, double ty);
  void scaleCTM(double sx, double sy);
  const CGAffineTransform& ctm() const { return state_.ctm; }  // user space to the space of the context as made

  void setFillColor(const RGBA& color);
  void setStrokeColor(const RGBA& color);
  void setFillColorWithColor(const CGColorRef& color);  // null: nothing changes
  void setStrokeColorWithColor(const CGColorRef& color);
  const RGBA& fillColor() const { return state_.fill; }
  const RGBA& strokeColor() const { return state_.stroke; }
  void setLineWidth(double width);
  double lineWidth() const { return state_.lineWidth; }
  void setAlpha(double alpha);
  void setBlendMode(CGBlendMode mode);
  // Blur: twice the gaussian's standard deviation. Default colour black at alpha 1/3.
  void setShadow(CGSize offset, double blur);
  void setShadowWithColor(CGSize offset, double blur, const CGColorRef& color);  // null colour: shadow off

  // Path building; points are taken through the CTM in force when they are added.
  void beginPath();
  void moveToPoint(double x, double y);
  void addLineToPoint(double x, double y);
  void addArc(double x, double y, double radius, double startAngle, double endAngle, int clockwise);
  void addArcToPoint(double x1, double y1, double x2, double y2, double radius);
  void addRect(CGRect rect);
  void addEllipseInRect(CGRect rect);
  void addPath(const CGPath& path);
  void closePath();
  bool isPathEmpty() const { return path_.isEmpty(); }

  // Painting and clipping consume the path.
  void drawPath(CGPathDrawingMode mode);
  void fillPath() { drawPath(CGPathDrawingMode::fill); }
  void strokePath() { drawPath(CGPathDrawingMode::stroke); }
  void clip();
  void eoClip();
  void clipToRect(CGRect rect);

  void fillRect(CGRect rect);
  void fillEllipseInRect(CGRect rect);
  void clearRect(CGRect rect);  // transparent black, within the clip
  void drawLinearGradient(const CGGradientRef& gradient, CGPoint start, CGPoint end, unsigned options);
  void drawRadialGradient(const CGGradientRef& gradient, CGPoint center, double radius, unsigned options);
  // Stretches the image to the rectangle, its first row at the top.
  void drawImage(CGRect rect, const CGImageRef& image);
  // One run in the fill colour.
  void showTextRun(const CGTextRun& run);

  // Everything until the end is drawn into a group that is composited with the alpha, blend mode, clip and shadow of
  // the time of begin. Also saves and restores the state.
  void beginTransparencyLayer();
  void endTransparencyLayer();
  // The same with effects of the caller's own choosing; `bounds` (user space) is all that the group may cover.
  void beginGroup(const CGGroupEffects& effects, CGRect bounds);
  void endGroup();

  // Replays a recording in the present user space; shadows in it follow the CTM in force now. Inside a save/restore.
  // The alpha, blend mode and shadow in force do not apply: a caller that wants them opens a group.
  void drawDisplayList(const DisplayList& list);

  // Whether pixels are final here (screen, bitmap) or a picture is replayed as drawing (PDF, SVG, recordings).
  virtual bool prefersRecordings() const { return false; }
  virtual void flush() {}

 protected:
  // The first user space is the space of the context as made; backends keep their own device transform.
  CGContext() = default;
  CGContext(const CGContext&) = delete;
  CGContext& operator=(const CGContext&) = delete;

  // Whether anything confines drawing: a clip, or a group that has not ended.
  bool isClippedOrGrouped() const;
  // The CTM at each save that has not been restored yet, outermost first.
  std::vector<CGAffineTransform> savedTransforms() const;

  // ---- what a backend paints; geometry in the user space in force (the backend tracks save, restore and concat) ----
  // Coordinates and widths are finite, paths have more than moves in them (a clip path may be empty: nothing is left).
  virtual void doSave() = 0;
  virtual void doRestore() = 0;
  virtual void doConcat(const CGAffineTransform& t) = 0;
  virtual void doClip(const CGPath& path, bool evenOdd) = 0;
  virtual void doFill(const CGPath& path, bool evenOdd, const RGBA& color, CGBlendMode blend) = 0;
  virtual void doStroke(const CGPath& path, const CGStrokeStyle& style, const RGBA& color, CGBlendMode blend) = 0;
  virtual void doGradient(const CGGradientRef& gradient, const CGGradientPlacement& placement, double alpha,
                          CGBlendMode blend) = 0;
  virtual void doImage(const CGImageRef& image, CGRect rect, double alpha, CGBlendMode blend) = 0;
  virtual void doText(const CGTextRun& run, const RGBA& color, CGBlendMode blend) = 0;
  virtual void doClear(CGRect rect) = 0;
  // The shadow's offset and sigma arrive in the space of the context as made (points, y up). Saves and restores inside
  // a group are balanced, and whatever changes the CTM or clip there stands between a save and its restore. Bounds are
  // finite; without a known extent they reach a million points in each direction.
  virtual void doBeginGroup(const CGGroupEffects& effects, CGRect bounds) = 0;
  virtual void doEndGroup() = 0;

 private:
  friend class DisplayList;
  static constexpr CGRect unboundedRect{{-1e6, -1e6}, {2e6, 2e6}};
  struct State {
    CGAffineTransform ctm;
    RGBA fill, stroke;
    double lineWidth = 1, alpha = 1;
    CGBlendMode blend = CGBlendMode::normal;
    std::optional<CGShadow> shadow;  // in base space
    bool clipped = false;
    CGRect clipBounds = unboundedRect;  // in the space of the context as made
  };
  struct Saved {
    State state;
    bool group;  // saved by the beginning of a group
  };
  RGBA withAlpha(RGBA color) const;
  CGShadow shadowInContextSpace(const CGShadow& shadow) const;
  // The user-space extent of the clip, for groups that know nothing narrower.
  CGRect clipBounds() const;
  // Runs `paint(blend)` inside a shadow-casting group when a shadow is set.
  template <typename Paint>
  void paintWithShadow(CGRect bounds, Paint paint);
  // Expresses the path in the present user space; false when that cannot be done.
  bool bringPathHere();
  CGPath takePath();
  void clipToPath(const CGPath& path, bool evenOdd);
  void fill(const CGPath& path, bool evenOdd);
  void stroke(const CGPath& path);
  void drawGradient(const CGGradientRef& gradient, const CGGradientPlacement& placement);
  // A group without the save of its own that beginGroup adds.
  void enterGroup(const CGGroupEffects& effects, CGRect bounds);
  void leaveGroup();

  State state_;
  std::vector<Saved> stack_;
  // The path in the user space of pathCTM_. While the CTM stays as it is, no coordinate is ever converted.
  CGPath path_;
  CGAffineTransform pathCTM_;
  CGAffineTransform base_;  // base space to the space of the context as made
};

}  // namespace zelkon
