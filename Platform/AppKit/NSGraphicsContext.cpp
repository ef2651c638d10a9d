#include "AppKit/NSGraphicsContext.h"

#include <utility>
#include <vector>

#include "Foundation/PlatformSession.h"

namespace zelkon {

namespace {

struct Contexts {
  std::shared_ptr<NSGraphicsContext> current;
  std::vector<std::shared_ptr<NSGraphicsContext>> saved;
};

Contexts& contexts() { return PlatformSession::part<Contexts>(PlatformSession::Key::graphicsContexts); }

}  // namespace

NSGraphicsContext::NSGraphicsContext(CGContext* port, bool flipped, bool drawingToScreen)
    : port_(port), flipped_(flipped), drawingToScreen_(drawingToScreen) {}

std::shared_ptr<NSGraphicsContext> NSGraphicsContext::graphicsContextWithGraphicsPort(CGContext* port, bool flipped) {
  return std::make_shared<NSGraphicsContext>(port, flipped, false);
}

std::shared_ptr<NSGraphicsContext> NSGraphicsContext::currentContext() { return contexts().current; }

void NSGraphicsContext::setCurrentContext(std::shared_ptr<NSGraphicsContext> context) {
  contexts().current = std::move(context);
}

void NSGraphicsContext::saveGraphicsState() {
  auto& [current, saved] = contexts();
  saved.push_back(current);
  if (current && current->port_ != nullptr) current->port_->saveGState();
}

void NSGraphicsContext::restoreGraphicsState() {
  auto& [current, saved] = contexts();
  if (saved.empty()) return;
  current = std::move(saved.back());
  saved.pop_back();
  if (current && current->port_ != nullptr) current->port_->restoreGState();
}

}  // namespace zelkon
