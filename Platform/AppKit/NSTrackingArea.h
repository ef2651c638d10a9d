// A place in a view over which its owner hears of the mouse.
#pragma once

#include <memory>

#include "CoreGraphics/CGGeometry.h"

namespace zelkon {

class NSView;

enum NSTrackingAreaOptions : unsigned {
  NSTrackingMouseEnteredAndExited = 0x01,
  NSTrackingMouseMoved = 0x02,
  NSTrackingActiveInKeyWindow = 0x20,
  NSTrackingInVisibleRect = 0x200,
};
struct NSTrackingArea {
  CGRect rect;  // ignored with NSTrackingInVisibleRect
  unsigned options;
  std::weak_ptr<NSView> owner;
};
using NSTrackingAreaRef = std::shared_ptr<NSTrackingArea>;

}  // namespace zelkon
