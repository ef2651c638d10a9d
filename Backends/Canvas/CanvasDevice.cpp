#include "Backends/Canvas/CanvasDevice.h"

#include <cassert>
#include <cmath>

#include "Backends/Canvas/CanvasContext.h"
#include "Backends/Canvas/CanvasImports.h"

namespace zelkon {

CanvasDevice::CanvasDevice(double screenScale) : commands_(std::make_shared<CanvasCommands>()), screenScale_(1) {
  setScreenScale(screenScale);
}

void CanvasDevice::setScreenScale(double scale) {
  if (scale > 0 && std::isfinite(scale)) screenScale_ = scale;
}

std::shared_ptr<Surface> CanvasDevice::makeSurface(int pixelWidth, int pixelHeight) {
  const int id = zkCanvasMake(pixelWidth, pixelHeight);
  if (id == 0) return nullptr;
  return std::make_shared<CanvasSurface>(commands_, id, pixelWidth, pixelHeight, CanvasSurface::Kind::offscreen);
}

std::shared_ptr<Surface> CanvasDevice::screenSurface(int id, int pixelWidth, int pixelHeight) {
  commands_->add(0, CanvasOp::resize,
                 {static_cast<double>(id), static_cast<double>(pixelWidth), static_cast<double>(pixelHeight)});
  return std::make_shared<CanvasSurface>(commands_, id, pixelWidth, pixelHeight, CanvasSurface::Kind::screen);
}

std::unique_ptr<CGContext> CanvasDevice::makeContext(const std::shared_ptr<Surface>& surface, double scale,
                                                     bool isMoving) {
  auto own = std::dynamic_pointer_cast<CanvasSurface>(surface);
  assert(own && "a surface of another backend");
  if (!own || !(scale > 0)) return nullptr;
  return std::make_unique<CanvasContext>(commands_, std::move(own), scale, isMoving);
}

std::shared_ptr<Surface> CanvasDevice::decodePNG(const uint8_t* bytes, size_t count) {
  int size[2] = {0, 0};
  const int id = zkCanvasDecode(bytes, count, size);
  if (id == 0) return nullptr;
  return std::make_shared<CanvasSurface>(commands_, id, size[0], size[1], CanvasSurface::Kind::offscreen);
}

std::vector<uint8_t> CanvasDevice::readPixels(const Surface& surface) {
  const auto* own = dynamic_cast<const CanvasSurface*>(&surface);
  assert(own && "a surface of another backend");
  if (own == nullptr) return {};
  flush();
  std::vector<uint8_t> pixels(size_t{4} * static_cast<size_t>(own->pixelWidth()) *
                              static_cast<size_t>(own->pixelHeight()));
  if (zkCanvasRead(own->id(), pixels.data(), pixels.size()) == 0) pixels.clear();
  return pixels;
}

double CanvasDevice::advanceOfText(const FontFace& face, std::string_view text) {
  if (text.empty()) return 0;
  return zkCanvasMeasure(canvasFace(face), text.data(), text.size());
}

}  // namespace zelkon
