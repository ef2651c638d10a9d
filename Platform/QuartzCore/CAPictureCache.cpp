#include "QuartzCore/CAPictureCache.h"

#include <cmath>

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
}

void CAPictureCache::endFrame() {
  for (auto entry = entries_.begin(); entry != entries_.end();)
    entry = entry->second.usedInFrame == frame_ ? std::next(entry) : entries_.erase(entry);
}

CAPictureCache::Entry& CAPictureCache::entryFor(const CALayer& layer) {
  Entry& entry = entries_[&layer];
  if (entry.usedInFrame != 0 && entry.layer.lock().get() != &layer) entry = Entry();
  entry.layer = layer.weak_from_this();
  entry.usedInFrame = frame_;
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
  Entry& current = entries_[&layer];  // painting may have added entries
  current.picture = std::move(made);
  return &current.picture;
}

void CAPictureCache::noteContents(const CALayer& layer) {
  Entry& entry = entryFor(layer);
  const CGImageRef& contents = layer.contents();
  if (entry.contents.lock() == contents && contents) return;
  entry.contents = contents;
  ++repaints_;
}

}  // namespace zelkon
