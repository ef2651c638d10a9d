// The drawing device of a page.
#pragma once

#include <memory>

#include "Backends/Canvas/CanvasCommands.h"
#include "Backends/Canvas/CanvasSurface.h"
#include "CoreGraphics/GraphicsDevice.h"

namespace zelkon {

class CanvasDevice : public GraphicsDevice {
 public:
  explicit CanvasDevice(double screenScale = 1);
  double screenScale() const override { return screenScale_; }
  // For surfaces made from now on; what is not a positive number changes nothing.
  void setScreenScale(double scale);

  std::shared_ptr<Surface> makeSurface(int pixelWidth, int pixelHeight) override;
  // The canvas that the page has bound under that number, given the size with the next replay; a new size clears it.
  std::shared_ptr<Surface> screenSurface(int id, int pixelWidth, int pixelHeight);
  std::unique_ptr<CGContext> contextForSurface(const std::shared_ptr<Surface>& surface, double scale) override {
    return makeContext(surface, scale, false);
  }
  // For one frame of something that moves: as further frames follow at once, every picture is worth its pixels.
  std::unique_ptr<CGContext> contextForMovingFrame(const std::shared_ptr<Surface>& surface, double scale) {
    return makeContext(surface, scale, true);
  }
  // Only pictures that the page has decoded beforehand: decoding is not synchronous there.
  std::shared_ptr<Surface> decodePNG(const uint8_t* bytes, size_t count) override;
  std::vector<uint8_t> readPixels(const Surface& surface) override;
  double advanceOfText(const FontFace& face, std::string_view text) override;
  // Carries out everything drawn so far.
  void flush() { commands_->flush(); }

 private:
  std::unique_ptr<CGContext> makeContext(const std::shared_ptr<Surface>& surface, double scale, bool isMoving);

  std::shared_ptr<CanvasCommands> commands_;
  double screenScale_;
};

}  // namespace zelkon
