#include "QuartzCore/CACompositor.h"

#include "QuartzCore/CAPictureCache.h"
#include "QuartzCore/CAPreparedTree.h"
#include "QuartzCore/CATreePainter.h"

namespace zelkon {

struct CACompositor::Cache {
  CAPictureCache pictures;
};

CACompositor::CACompositor() : cache_(std::make_unique<Cache>()) {}
CACompositor::~CACompositor() = default;

void CACompositor::compose(const CALayerRef& root, CGContext& context, double scale, double time) {
  cache_->pictures.beginFrame(scale);
  if (root) {
    const CAPreparedTree tree(*root, time);
    CATreePainter(context, scale, &cache_->pictures).paint(tree);
  }
  cache_->pictures.endFrame();
}

void CACompositor::purge() { cache_->pictures.purge(); }
int CACompositor::repaintsOfLastFrame() const { return cache_->pictures.repaints(); }

}  // namespace zelkon
