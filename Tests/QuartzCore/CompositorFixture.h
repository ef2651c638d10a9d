// A compositor over the layers of the fixture, and the commands that it paints.
#pragma once

#include "QuartzCore/CACompositor.h"
#include "QuartzCore/Commands.h"
#include "QuartzCore/LayerFixture.h"

namespace zelkon {

inline const CGColorRef red = CGColorCreateGenericRGB(1, 0, 0, 1);
inline const CGColorRef blue = CGColorCreateGenericRGB(0, 0, 1, 1);

class CACompositorTest : public LayerFixture {
 protected:
  CALayerRef addFilled(CGRect frame, const CGColorRef& color) {
    const CALayerRef layer = addLayer(frame);
    layer->setBackgroundColor(color);
    return layer;
  }
  Lines composed(double seconds = 0) {
    CATransaction::flush();
    RecordingContext context;
    compositor.compose(root, context, 1, start + seconds);
    return CommandPrinter::print(*context.snapshot());
  }
  CACompositor compositor;
};

}  // namespace zelkon
