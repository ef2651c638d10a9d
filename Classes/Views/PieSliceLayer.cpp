#include "Classes/Views/PieSliceLayer.h"

#include <cmath>

namespace zelkon {

void PieSliceLayer::drawInContext(CGContext& context) {
  if (!std::isfinite(fraction_)) return;
  const double cx = CGRectGetMidX(bounds()), cy = CGRectGetMidY(bounds());
  // A whole disc starts on its rim: no seam runs out from the centre.
  if (fraction_ != 1.0) context.moveToPoint(cx, cy);
  context.addArc(cx, cy, radius_, 0, fraction_ * 6.283185307179586, 0);
  context.closePath();
  if (sliceColor_) context.setFillColorWithColor(sliceColor_);
  context.setLineWidth(sliceBorderWidth_);
  if (sliceBorderColor_) context.setStrokeColorWithColor(sliceBorderColor_);
  context.drawPath(CGPathDrawingMode::fillStroke);
}

}  // namespace zelkon
