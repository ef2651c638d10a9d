#include "Backends/Canvas/CanvasSurface.h"

#include <utility>

namespace zelkon {

CanvasSurface::CanvasSurface(std::shared_ptr<CanvasCommands> commands, int id, int pixelWidth, int pixelHeight,
                             Kind kind)
    : commands_(std::move(commands)), id_(id), width_(pixelWidth), height_(pixelHeight), kind_(kind) {}

CanvasSurface::~CanvasSurface() {
  if (!isScreen()) commands_->add(0, CanvasOp::release, {static_cast<double>(id_)});
}

}  // namespace zelkon
