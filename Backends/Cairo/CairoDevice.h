// The native drawing device.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "CoreGraphics/GraphicsDevice.h"

namespace zelkon {

class CairoText;

class CairoDevice : public GraphicsDevice {
 public:
  // `scale`: pixels per point of the screen and of new bitmaps. Raises NSInternalInconsistencyException where Pango
  // cannot be used.
  explicit CairoDevice(double scale = 1);
  ~CairoDevice() override;

  double screenScale() const override { return scale_; }
  void setScreenScale(double scale) { scale_ = scale; }
  // Null above 32767 pixels a side or 1 GiB.
  std::shared_ptr<Surface> makeSurface(int pixelWidth, int pixelHeight) override;
  std::unique_ptr<CGContext> contextForSurface(const std::shared_ptr<Surface>& surface, double scale) override;
  // Small pictures are kept and given again for the same bytes: nobody may draw on them.
  std::shared_ptr<Surface> decodePNG(const uint8_t* bytes, size_t count) override;
  std::vector<uint8_t> readPixels(const Surface& surface) override;
  double advanceOfText(const FontFace& face, std::string_view text) override;

  // Raises NSInternalInconsistencyException where there are no fonts.
  void requireFonts() const;
  // The bytes of a PNG file of a surface of this device; empty when memory is short.
  std::string encodePNG(const Surface& surface);
  // The shaper that documents of this device draw their text with.
  const std::shared_ptr<CairoText>& text() const { return text_; }

 private:
  double scale_;
  std::shared_ptr<CairoText> text_;
  std::unordered_map<std::string, std::shared_ptr<Surface>> decoded_;  // by the bytes of the file
};

}  // namespace zelkon
