#include "AppKit/NSGraphicsContext.h"

#include <utility>
#include <vector>

namespace zelkon {

namespace {

std::shared_ptr<NSGraphicsContext> current;
std::vector<std::shared_ptr<NSGraphicsContext>> saved;

}  // namespace

NSGraphicsContext::NSGraphicsContext(CGContext* port, bool flipped, bool drawingToScreen)
    : port_(port), flipped_(flipped), drawingToScreen_(drawingToScreen) {}

std::shared_ptr<NSGraphicsContext> NSGraphicsContext::graphicsContextWithGraphicsPort(CGContext* port, bool flipped) {
  return std::make_shared<NSGraphicsContext>(port, flipped, false);
}

std::shared_ptr<NSGraphicsContext> NSGraphicsContext::currentContext() { return current; }

void NSGraphicsContext::setCurrentContext(std::shared_ptr<NSGraphicsContext> context) { current = std::move(context); }

void NSGraphicsContext::saveGraphicsState() {
  saved.push_back(current);
  if (current && current->port_ != nullptr) current->port_->saveGState();
}

void NSGraphicsContext::restoreGraphicsState() {
  if (saved.empty()) return;
  current = std::move(saved.back());
  saved.pop_back();
  if (current && current->port_ != nullptr) current->port_->restoreGState();
}

}  // namespace zelkon
