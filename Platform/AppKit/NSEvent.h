// A mouse event as a window delivers it.
#pragma once

#include "CoreGraphics/CGGeometry.h"

namespace zelkon {

struct NSEvent {
  enum class Type { mouseDown, mouseEntered, mouseMoved, mouseExited };
  Type type = Type::mouseMoved;
  CGPoint locationInWindow;  // points, y up from the window's lower left corner
};

}  // namespace zelkon
