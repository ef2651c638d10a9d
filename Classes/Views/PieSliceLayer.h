// One wedge of the pie. Every slice has the same bounds, position and radius and draws itself from angle 0; where it
// ends up around the circle is the business of its transform.
#pragma once

#include "QuartzCore/CALayer.h"

namespace zelkon {

class PieSliceLayer : public CALayer {
 public:
  static std::shared_ptr<PieSliceLayer> layer() { return std::make_shared<PieSliceLayer>(); }
  std::string className() const override { return "PieSliceLayer"; }

  // Plain stores: none marks the layer for display. Who changes a slice on screen asks for the redraw.
  double fraction() const { return fraction_; }  // share of the full circle; not clamped
  void setFraction(double fraction) { fraction_ = fraction; }
  const CGColorRef& sliceColor() const { return sliceColor_; }  // null leaves the context's fill colour
  void setSliceColor(CGColorRef color) { sliceColor_ = std::move(color); }
  const CGColorRef& sliceBorderColor() const { return sliceBorderColor_; }  // null leaves the context's stroke colour
  void setSliceBorderColor(CGColorRef color) { sliceBorderColor_ = std::move(color); }
  double sliceBorderWidth() const { return sliceBorderWidth_; }  // points
  void setSliceBorderWidth(double width) { sliceBorderWidth_ = width; }
  const CATransform3D& baseTransform() const { return baseTransform_; }  // the resting transform, kept at layout
  void setBaseTransform(const CATransform3D& transform) { baseTransform_ = transform; }
  double radius() const { return radius_; }  // points
  void setRadius(double radius) { radius_ = radius; }

  unsigned autoresizingMask() const override { return kCALayerWidthSizable | kCALayerHeightSizable; }
  bool needsDisplayOnBoundsChange() const override { return true; }
  bool drawsItself() const override { return true; }
  // The wedge, centred in the bounds, counter-clockwise from three o'clock; nothing for a share that is not finite.
  void drawInContext(CGContext& context) override;

 private:
  double fraction_ = 0;
  CGColorRef sliceColor_, sliceBorderColor_;
  double sliceBorderWidth_ = 0;
  CATransform3D baseTransform_{};  // sixteen zeros until the layout sets it
  double radius_ = 0;
};

}  // namespace zelkon
