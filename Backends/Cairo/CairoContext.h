// Drawing onto a Cairo surface: pixels, or the page of a document.
#pragma once

#include <memory>
#include <vector>

#include "Backends/Cairo/CairoText.h"
#include "CoreGraphics/CGContext.h"

typedef struct _cairo_surface cairo_surface_t;

namespace zelkon {

class CairoSurface;
class DisplayList;

class CairoContext : public CGContext {
 public:
  enum class Target {
    pixels,   // pictures are painted as pixels, text as outlines
    document  // pictures that are recordings are replayed, text stays text
  };
  // User space in points, y up, origin at the bottom left of `height` pixels, `scale` pixels per point. The surface is
  // kept alive by Cairo; `owner` (may be null) is kept alive along with it.
  CairoContext(cairo_surface_t* surface, double height, double scale, Target target, std::shared_ptr<CairoText> text,
               std::shared_ptr<const void> owner = nullptr);
  ~CairoContext() override;

  bool prefersRecordings() const override { return target_ == Target::document; }
  void flush() override;

 protected:
  void doSave() override;
  void doRestore() override;
  void doConcat(const CGAffineTransform& t) override;
  void doClip(const CGPath& path, bool evenOdd) override;
  void doFill(const CGPath& path, bool evenOdd, const RGBA& color, CGBlendMode blend) override;
  void doStroke(const CGPath& path, const CGStrokeStyle& style, const RGBA& color, CGBlendMode blend) override;
  void doGradient(const CGGradientRef& gradient, const CGGradientPlacement& placement, double alpha,
                  CGBlendMode blend) override;
  void doImage(const CGImageRef& image, CGRect rect, double alpha, CGBlendMode blend) override;
  void doText(const CGTextRun& run, const RGBA& color, CGBlendMode blend) override;
  void doClear(CGRect rect) override;
  void doBeginGroup(const CGGroupEffects& effects, CGRect bounds) override;
  void doEndGroup() override;

 private:
  struct Group;
  struct DeviceRect {
    double x1, y1, x2, y2;
  };
  Group& top() { return *groups_.back(); }
  const Group& top() const { return *groups_.back(); }
  // What the clip lets through, in the pixels of the surface.
  DeviceRect clipInDevice() const;
  DeviceRect groupExtent(const CGGroupEffects& effects, CGRect bounds) const;
  // Whether a pixel of a picture falls on one pixel of the target.
  bool isOneToOne(int pixelWidth, int pixelHeight, CGRect pixelsRect) const;
  void replayImage(const CGImage& image, CGRect rect, double alpha, CGBlendMode blend);
  void paintPixels(const CairoSurface& pixels, CGRect pixelsRect, CGRect rect, double alpha, CGBlendMode blend);
  void paintShadow(Group& group, const CGShadow& shadow);

  Target target_;
  double scale_;
  std::shared_ptr<CairoText> text_;
  std::shared_ptr<const void> owner_;
  std::vector<std::unique_ptr<Group>> groups_;  // the surface itself first
};

}  // namespace zelkon
