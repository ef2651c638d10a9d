// A layer tree as it looks at one time, laid out flat for painting: what is seen, where, and what stands still. Made
// anew for each frame, nothing in it is written afterwards.
#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "QuartzCore/CALayer.h"

namespace zelkon {

class CAPreparedTree;

struct CAPreparedLayer {
  const CALayer* layer;            // alive as long as the tree is not changed
  const CALayerProperties* shown;  // the model, or values animated
  size_t end = 0;                  // index behind the last layer of the subtree
  size_t sublayerCount = 0;        // visible ones
  CGAffineTransform toSuperlayer;
  CGRect painted;         // what the subtree covers in the layer's own coordinates, the layer's own shadow left out
  CGRect shadowed;        // the same with the shadow
  double alpha = 1;       // opacity, and how much is left while it is being hidden
  bool moves = false;     // its place in the superlayer is animated
  bool changes = false;   // something inside its own picture is animated
  double brightness = 1;  // product of the exposures
  const CIGaussianGradient* generator = nullptr;  // stands in for all content inside the bounds
  std::shared_ptr<const CAPreparedTree> mask;     // null without one; empty when the mask shows nothing

  bool hasShadow() const;
  bool overlays() const;  // its compositing filter
  // Whether all that it shows is its generator, which takes the opacity as it is painted.
  bool isOnlyGenerator() const;
  // Whether it has to be finished by itself before it meets what lies beneath in `context`.
  bool isGroup(const CGContext& context) const;
};

class CAPreparedTree {
 public:
  // `maskDepth`: masks of masks are followed this far down.
  CAPreparedTree(const CALayer& root, double time, int maskDepth = 8);
  CAPreparedTree(const CAPreparedTree&) = delete;
  CAPreparedTree& operator=(const CAPreparedTree&) = delete;
  // Each layer before its sublayers, those in drawing order. Empty when the root shows nothing.
  const std::vector<CAPreparedLayer>& layers() const { return layers_; }

 private:
  bool append(const CALayer& layer, double time, int maskDepth);
  void measure(CAPreparedLayer& prepared, CGRect sublayers) const;
  std::vector<CAPreparedLayer> layers_;
  std::deque<CALayerProperties> animated_;
};

}  // namespace zelkon
