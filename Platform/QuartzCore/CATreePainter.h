// Paints a prepared tree into a context.
#pragma once

#include "QuartzCore/CAPictureCache.h"
#include "QuartzCore/CAPreparedTree.h"

namespace zelkon {

class CATreePainter {
 public:
  // `pictures` may be null: everything is then painted directly.
  CATreePainter(CGContext& context, double scale, CAPictureCache* pictures)
      : context_(context), scale_(scale), pictures_(pictures) {}
  // The context's user space is the superlayer's of the root.
  void paint(const CAPreparedTree& tree);

 private:
  struct Open {
    size_t index;
    int groups;
    bool clipped;
    bool clippedToMask;
    bool moving;
  };
  // The subtree without its place, its opacity and its way of mixing: what its picture holds.
  void paintFlattened(const std::vector<CAPreparedLayer>& layers, size_t index);
  void paintRange(const std::vector<CAPreparedLayer>& layers, size_t begin, size_t end);
  // Saves the state; false when the layer is done with already.
  bool enter(const std::vector<CAPreparedLayer>& layers, size_t index, bool placed);
  void paintGenerator(const CIGaussianGradient& generator, CGRect bounds);
  void leave(const std::vector<CAPreparedLayer>& layers);
  bool paintPicture(const std::vector<CAPreparedLayer>& layers, size_t index, bool moving);
  // The mask when it is nothing but a generator whose edges cut no pixel: with all that is painted clipped to it, it
  // can be painted over that without a group of its own. Null otherwise.
  const CAPreparedLayer* maskOnPixels(const CAPreparedLayer& prepared) const;
  bool liesOnPixels() const;

  CGContext& context_;
  double scale_;
  CAPictureCache* pictures_;
  std::vector<Open> open_;
};

}  // namespace zelkon
