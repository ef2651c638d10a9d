// A device that only measures: every code point has a known advance, so that the tests can say what comes out.
#pragma once

#include "CoreGraphics/GraphicsDevice.h"

namespace zelkon {

// At one point per em: 0.5 for everything, 0.25 for a space, 0.75 for "W", 1 for the ellipsis. Installed while it
// lives.
class FixedAdvanceDevice : public GraphicsDevice {
 public:
  explicit FixedAdvanceDevice(double unit = 0.5) : unit_(unit), earlier_(GraphicsDevice::install(this)) {}
  ~FixedAdvanceDevice() override { GraphicsDevice::install(earlier_); }
  FixedAdvanceDevice(const FixedAdvanceDevice&) = delete;
  FixedAdvanceDevice& operator=(const FixedAdvanceDevice&) = delete;

  double screenScale() const override { return 1; }
  std::shared_ptr<Surface> makeSurface(int, int) override { return nullptr; }
  std::unique_ptr<CGContext> contextForSurface(const std::shared_ptr<Surface>&, double) override { return nullptr; }
  std::shared_ptr<Surface> decodePNG(const uint8_t*, size_t) override { return nullptr; }
  std::vector<uint8_t> readPixels(const Surface&) override { return {}; }
  double advanceOfText(const FontFace&, std::string_view text) override {
    ++measurements;
    double units = 0;
    for (size_t i = 0; i < text.size(); ++i) {
      if ((static_cast<unsigned char>(text[i]) & 0xC0) == 0x80) continue;
      const bool ellipsis = text.compare(i, 3, "\xE2\x80\xA6") == 0;
      units += ellipsis ? 2 : text[i] == ' ' ? 0.5 : text[i] == 'W' ? 1.5 : 1;
    }
    return units * unit_;
  }

  int measurements = 0;

 private:
  double unit_;
  GraphicsDevice* earlier_;
};

}  // namespace zelkon
