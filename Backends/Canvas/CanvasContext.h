// A context that puts its drawing into the device's command buffer.
#pragma once

#include <memory>
#include <vector>

#include "Backends/Canvas/CanvasCommands.h"
#include "Backends/Canvas/CanvasSurface.h"
#include "CoreGraphics/CGContext.h"

namespace zelkon {

// One context at a time per surface: they share the canvas's own state.
class CanvasContext : public CGContext {
 public:
  // `isMoving`: what is drawn now will be drawn again at once.
  CanvasContext(std::shared_ptr<CanvasCommands> commands, std::shared_ptr<CanvasSurface> surface, double scale,
                bool isMoving);
  // Ends whatever groups and saves are still open.
  ~CanvasContext() override;

  // Shows what was drawn on a screen. Elsewhere nothing needs to cross yet: the buffer keeps the order.
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
  void add(CanvasOp op, std::initializer_list<double> arguments = {}) { commands_->add(id_, op, arguments); }
  // User space to pixels, y down.
  CGAffineTransform toPixels() const;
  // The path, with edges on whole pixels when it is a rectangle along the surface's axes.
  CGPath onWholePixels(const CGPath& path) const;
  bool showsPixelForPixel(const CGImage& image, CGRect rect) const;
  // Whether it begins in the surface's top left pixel and covers whole pixels.
  bool liesInCorner(CGRect rect) const;
  // Whether painting the image's recording is better than painting its pixels.
  bool replaysBest(const CGImage& image, CGRect rect, bool isFirstTime) const;
  void replayImage(const CGImage& image, CGRect rect);

  std::shared_ptr<CanvasCommands> commands_;
  std::shared_ptr<CanvasSurface> surface_;
  double scale_;
  bool isMoving_;
  int id_;
  bool replaysPicture_ = false;  // what is being drawn is the recording of an image, in the place of its pixels
  std::vector<CGRect> extents_;  // of the surface and of each open group, in pixels, y down
};

// The number that the page knows a face by.
int canvasFace(const FontFace& face);

}  // namespace zelkon
