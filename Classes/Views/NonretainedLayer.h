// A layer as a value that does not own it. An animation that carried its layer as an owned value would keep it, and
// with it itself, for ever: animations that stay after their end are owned by the layer.
#pragma once

#include <memory>

#include "QuartzCore/CALayer.h"

namespace zelkon {

class NonretainedLayer : public Object {
 public:
  explicit NonretainedLayer(std::weak_ptr<CALayer> layer) : layer_(std::move(layer)) {}
  std::string className() const override { return "NSConcreteValue"; }
  CALayerRef nonretainedObjectValue() const { return layer_.lock(); }  // null once the layer is gone

 private:
  std::weak_ptr<CALayer> layer_;
};

}  // namespace zelkon
