// Paints a layer tree as it looks at a time. It prepares (presentation values, transforms, which groups need a surface
// of their own) and then paints, writing nothing to the layers. Flattened results of subtrees that did not change are
// kept.
#pragma once

#include <memory>

#include "CoreGraphics/CGContext.h"
#include "QuartzCore/CALayer.h"

namespace zelkon {

class CACompositor {
 public:
  CACompositor();
  ~CACompositor();
  // Paints the tree as the superlayer of `root` would see it (its frame applies) into `context`, whose user space is in
  // points, y up, `scale` pixels per point, and which the caller has cleared.
  void compose(const CALayerRef& root, CGContext& context, double scale, double time);
  // Drops everything kept: after a change of scale, or to free memory.
  void purge();
  // Number of subtrees painted anew and of contents new to the last compose; 0 when nothing changed.
  int repaintsOfLastFrame() const;

 private:
  struct Cache;
  std::unique_ptr<Cache> cache_;
};

}  // namespace zelkon
