// Flattened subtrees, kept from frame to frame for as long as the subtree does not change.
#pragma once

#include <functional>
#include <map>

#include "QuartzCore/CALayer.h"

namespace zelkon {

class CAPictureCache {
 public:
  struct Picture {
    CGImageRef image;
    CGRect rect;  // where it lies in the layer's own coordinates
  };

  void beginFrame(double scale);  // a new scale drops everything
  void endFrame();                // drops what the frame did not use
  void purge() { entries_.clear(); }
  int repaints() const { return repaints_; }

  // The picture of the layer's subtree, which covers `area` of its own coordinates; `paint` makes it in a context of
  // those coordinates. Null when painting it directly is better (a subtree that changes frame after frame, no device,
  // too large); the caller then paints it, which is counted here too.
  const Picture* picture(const CALayer& layer, CGRect area, const std::function<void(CGContext&)>& paint);
  // A group is painted that cannot be kept.
  void noteRepaint() { ++repaints_; }
  // The contents of a layer are painted from pixels: counted when they are others than in the last frame.
  void noteContents(const CALayer& layer);

 private:
  struct Entry {
    std::weak_ptr<const CALayer> layer;  // an address may be used again
    unsigned long version = 0, contentsVersion = 0;
    unsigned long usedInFrame = 0, changedInFrame = 0;
    std::weak_ptr<const CGImage> contents;
    Picture picture;
  };
  Entry& entryFor(const CALayer& layer);

  std::map<const CALayer*, Entry> entries_;
  double scale_ = 0;
  unsigned long frame_ = 1;
  int repaints_ = 0;
};

}  // namespace zelkon
