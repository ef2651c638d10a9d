// A device that paints nothing: every character is 0.6 of the font size wide, and a PNG is what begins like one. It is
// installed while it lives.
#pragma once

#include <cstring>
#include <memory>
#include <vector>

#include "CoreGraphics/DisplayList.h"
#include "CoreGraphics/GraphicsDevice.h"

namespace zelkon {

struct PlainSurface : Surface {
  int width, height;
  PlainSurface(int w, int h) : width(w), height(h) {}
  int pixelWidth() const override { return width; }
  int pixelHeight() const override { return height; }
};

class PlainDevice : public GraphicsDevice {
 public:
  PlainDevice() : earlier_(install(this)) {}
  ~PlainDevice() override { install(earlier_); }
  double screenScale() const override { return 1; }
  std::shared_ptr<Surface> makeSurface(int width, int height) override {
    return std::make_shared<PlainSurface>(width, height);
  }
  std::unique_ptr<CGContext> contextForSurface(const std::shared_ptr<Surface>&, double) override {
    return std::make_unique<RecordingContext>();
  }
  std::shared_ptr<Surface> decodePNG(const uint8_t* bytes, size_t count) override {
    if (count < 24 || std::memcmp(bytes, "\x89PNG\r\n\x1a\n", 8) != 0) return nullptr;
    return std::make_shared<PlainSurface>(bytes[18] * 256 + bytes[19], bytes[22] * 256 + bytes[23]);
  }
  std::vector<uint8_t> readPixels(const Surface& surface) override {
    return std::vector<uint8_t>(static_cast<size_t>(4 * surface.pixelWidth() * surface.pixelHeight()));
  }
  double advanceOfText(const FontFace&, std::string_view text) override {
    double advance = 0;
    for (const char c : text)
      if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) advance += 0.6;
    return advance;
  }

 private:
  GraphicsDevice* earlier_;
};

}  // namespace zelkon
