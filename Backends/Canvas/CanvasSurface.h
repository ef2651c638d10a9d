// Pixels of the browser backend: a canvas of the page, known by its number.
#pragma once

#include <memory>

#include "Backends/Canvas/CanvasCommands.h"
#include "CoreGraphics/CGImage.h"

namespace zelkon {

class CanvasSurface : public Surface {
 public:
  enum class Kind { offscreen, screen };
  CanvasSurface(std::shared_ptr<CanvasCommands> commands, int id, int pixelWidth, int pixelHeight, Kind kind);
  // Lets the page drop the canvas once everything drawn so far has been replayed. A screen belongs to the page.
  ~CanvasSurface() override;
  CanvasSurface(const CanvasSurface&) = delete;
  CanvasSurface& operator=(const CanvasSurface&) = delete;

  int pixelWidth() const override { return width_; }
  int pixelHeight() const override { return height_; }
  int id() const { return id_; }
  bool isScreen() const { return kind_ == Kind::screen; }

 private:
  std::shared_ptr<CanvasCommands> commands_;
  int id_, width_, height_;
  Kind kind_;
};

}  // namespace zelkon
