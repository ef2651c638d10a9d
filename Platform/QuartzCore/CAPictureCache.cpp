#include "QuartzCore/CAPictureCache.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "CoreGraphics/DisplayList.h"
#include "CoreGraphics/GraphicsDevice.h"

namespace zelkon {

namespace {

// Larger pictures cost more memory than the time they save.
constexpr double maximumPixels = 4096.0 * 4096.0;

CAPictureCache::Picture makePicture(CGRect area, double scale, const std::function<void(CGContext&)>& paint) {
  GraphicsDevice* device = GraphicsDevice::current();
  if (device == nullptr || !(scale > 0)) return {};
  // On the pixel grid of the layer's own coordinates: where those lie on whole pixels, so does the picture.
  const double minX = std::floor(CGRectGetMinX(area) * scale), maxX = std::ceil(CGRectGetMaxX(area) * scale);
  const double minY = std::floor(CGRectGetMinY(area) * scale), maxY = std::ceil(CGRectGetMaxY(area) * scale);
  const double width = maxX - minX, height = maxY - minY;
  if (!(width > 0 && height > 0 && width * height <= maximumPixels)) return {};
  const std::shared_ptr<Surface> surface = device->makeSurface(static_cast<int>(width), static_cast<int>(height));
  if (!surface) return {};
  const std::unique_ptr<CGContext> context = device->contextForSurface(surface, scale);
  if (!context) return {};
  context->translateCTM(-minX / scale, -minY / scale);
  paint(*context);
  context->flush();
  return {std::make_shared<const CGImage>(surface),
          CGRectMake(minX / scale, minY / scale, width / scale, height / scale)};
}

}  // namespace

void CAPictureCache::beginFrame(double scale) {
  if (scale != scale_) purge();
  scale_ = scale;
  ++frame_;
  repaints_ = 0;
  // Whatever a frame that was cut short has left.
  lastEntries_ = std::exchange(entries_, {});
  lenders_.reset();
}

void CAPictureCache::endFrame() {
  lastEntries_.clear();
  lenders_.reset();
}

void CAPictureCache::purge() {
  entries_.clear();
  endFrame();
}

CAPictureCache::Entry& CAPictureCache::entryFor(const CALayer& layer) {
  if (const auto known = entries_.find(&layer); known != entries_.end()) return known->second;
  if (const auto last = lastEntries_.find(&layer);
      last != lastEntries_.end() && last->second.layer.lock().get() == &layer)
    return entries_.insert(lastEntries_.extract(last)).position->second;
  Entry& entry = entries_[&layer];
  entry.layer = layer.weak_from_this();
  return entry;
}

const CAPictureCache::Picture* CAPictureCache::picture(const CALayer& layer, CGRect area,
                                                       const std::function<void(CGContext&)>& paint) {
  Entry& entry = entryFor(layer);
  const unsigned long version = layer.subtreeVersion();
  const bool isNew = entry.version != version;
  if (!isNew && entry.picture.image) return &entry.picture;
  entry.version = version;
  entry.picture = {};
  const bool changedLastTime = entry.changedInFrame + 1 == frame_;
  if (isNew) entry.changedInFrame = frame_;
  ++repaints_;
  // What changes in every frame is not worth a picture.
  if (isNew && changedLastTime) return nullptr;
  Picture made = makePicture(area, scale_, paint);
  if (!made.image) return nullptr;
  entry.picture = std::move(made);
  entry.contents.reset();  // it is within the picture
  return &entry.picture;
}

void CAPictureCache::noteContents(const CALayer& layer) {
  Entry& entry = entryFor(layer);
  const CGImageRef& contents = layer.contents();
  if (entry.contents == contents && contents) return;
  if (contents && contents->recording() && !contents->hasPixels(scale_)) borrowPixels(*contents);
  entry.contents = contents;
  ++repaints_;
}

void CAPictureCache::borrowPixels(const CGImage& contents) {
  if (!lenders_) {
    lenders_.emplace();
    for (const Entries* entries : {&entries_, &lastEntries_})
      for (const auto& [layer, entry] : *entries)
        if (entry.contents && entry.contents->recording() && entry.contents->hasPixels(scale_))
          lenders_->emplace(entry.contents->recording()->hash(), entry.contents);
  }
  const auto [begin, end] = lenders_->equal_range(contents.recording()->hash());
  const auto equal = std::find_if(begin, end, [&](const auto& lender) {
    return lender.second->size() == contents.size() && *lender.second->recording() == *contents.recording();
  });
  if (equal != end) contents.sharePixelsOf(*equal->second);
}

}  // namespace zelkon
