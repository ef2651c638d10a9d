// Where AppKit's drawing goes: a context that says whether it is the screen, and a stack of current ones.
#pragma once

#include <memory>

#include "CoreGraphics/CGContext.h"

namespace zelkon {

class NSGraphicsContext {
 public:
  // Wraps only; `port` (not owned, may be null) must outlive the wrapper's use.
  NSGraphicsContext(CGContext* port, bool flipped, bool drawingToScreen);
  static std::shared_ptr<NSGraphicsContext> graphicsContextWithGraphicsPort(CGContext* port, bool flipped);
  CGContext* graphicsPort() const { return port_; }
  bool isDrawingToScreen() const { return drawingToScreen_; }
  bool isFlipped() const { return flipped_; }

  // The session's.
  static std::shared_ptr<NSGraphicsContext> currentContext();
  static void setCurrentContext(std::shared_ptr<NSGraphicsContext> context);
  // Remember and bring back the current context, saving and restoring its graphics state.
  static void saveGraphicsState();
  static void restoreGraphicsState();

 private:
  CGContext* port_;
  bool flipped_, drawingToScreen_;
};

}  // namespace zelkon
