// What the platform asks of a drawing backend. The host installs one in each session; sessions on different threads
// need devices of their own.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "CoreGraphics/CGContext.h"

namespace zelkon {

class GraphicsDevice {
 public:
  virtual ~GraphicsDevice() = default;
  // Pixels per point of new bitmaps and of the screen.
  virtual double screenScale() const = 0;
  // Transparent pixels; null when they cannot be had.
  virtual std::shared_ptr<Surface> makeSurface(int pixelWidth, int pixelHeight) = 0;
  // A context over the surface: user space in points, y up, origin at the bottom left, `scale` pixels per point.
  virtual std::unique_ptr<CGContext> contextForSurface(const std::shared_ptr<Surface>& surface, double scale) = 0;
  // Null when the bytes are not a PNG picture.
  virtual std::shared_ptr<Surface> decodePNG(const uint8_t* bytes, size_t count) = 0;
  // 8-bit premultiplied R,G,B,A, first row at the top, rows of 4 * width bytes. Empty when they cannot be read.
  virtual std::vector<uint8_t> readPixels(const Surface& surface) = 0;
  // Sum of advances of the text in that face at 1 point per em: widths are linear in the size.
  virtual double advanceOfText(const FontFace& face, std::string_view text) = 0;

  // The session's; null until the host has installed one.
  static GraphicsDevice* current();
  // Not owned, and must outlive the session or be replaced before it goes; returns the earlier one.
  static GraphicsDevice* install(GraphicsDevice* device);
  // How often install was called in this session: what was measured before the number moved on may hold no longer.
  static unsigned long installations();
};

}  // namespace zelkon
