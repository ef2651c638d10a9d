// The pieces that a layer itself paints, in its own coordinates. `scale` is the pixels per point of the target: the
// edges of layers whose edges are not smoothed are placed on whole pixels.
#pragma once

#include "CoreGraphics/CGContext.h"
#include "QuartzCore/CALayerProperties.h"

namespace zelkon {

void CALayerPaintBackground(CGContext& context, const CALayerProperties& p, double scale);
void CALayerPaintContents(CGContext& context, const CALayerProperties& p, double scale);
void CALayerPaintBorder(CGContext& context, const CALayerProperties& p, double scale);
// Clips to the bounds, rounded by the corner radius.
void CALayerClipToBounds(CGContext& context, const CALayerProperties& p, double scale);
// Whether the clip to the bounds can take anything off the contents.
bool CALayerContentsNeedClip(const CALayerProperties& p);
// Where the contents lie.
CGRect CALayerContentsRect(const CALayerProperties& p);
// Whether the contents are painted by replaying what was drawn instead of by pixels.
bool CALayerReplaysContents(const CGContext& context, const CGImage& image);

}  // namespace zelkon
