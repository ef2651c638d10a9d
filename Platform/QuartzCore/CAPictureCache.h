// Flattened subtrees, kept from frame to frame for as long as the subtree does not change.
#pragma once

#include <functional>
#include <map>
#include <optional>

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
  void purge();
  int repaints() const { return repaints_; }

  // The picture of the layer's subtree, which covers `area` of its own coordinates; `paint` makes it in a context of
  // those coordinates. Null when painting it directly is better (a subtree that changes frame after frame, no device,
  // too large); the caller then paints it, which is counted here too.
  const Picture* picture(const CALayer& layer, CGRect area, const std::function<void(CGContext&)>& paint);
  // A group is painted that cannot be kept.
  void noteRepaint() { ++repaints_; }
  // The contents of a layer are painted from pixels: counted when they are others than in the last frame. New ones that
  // are drawn like some of the last frame get the pixels of those: what is laid out anew mostly draws its parts as they
  // were.
  void noteContents(const CALayer& layer);

 private:
  struct Entry {
    std::weak_ptr<const CALayer> layer;  // an address may be used again
    unsigned long version = 0, changedInFrame = 0;
    CGImageRef contents;
    Picture picture;
  };
  using Entries = std::map<const CALayer*, Entry>;
  Entry& entryFor(const CALayer& layer);
  void borrowPixels(const CGImage& contents);

  Entries entries_, lastEntries_;  // of this frame, and those of the last one that this one has not used
  // Recorded contents of the last frame that have pixels, by their hashes; filled when this frame has others.
  std::optional<std::multimap<size_t, CGImageRef>> lenders_;
  double scale_ = 0;
  unsigned long frame_ = 1;
  int repaints_ = 0;
};

}  // namespace zelkon
