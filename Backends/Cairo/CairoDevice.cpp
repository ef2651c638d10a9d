#include "Backends/Cairo/CairoDevice.h"

#include <cassert>

#include "Backends/Cairo/CairoContext.h"
#include "Backends/Cairo/CairoSurface.h"

namespace zelkon {

namespace {

// In bytes of the file, and how many: those of the charts themselves are few and small.
constexpr size_t largestKeptPicture = 4096, mostKeptPictures = 16;

const CairoSurface* ownSurface(const Surface* surface) {
  const auto* own = dynamic_cast<const CairoSurface*>(surface);
  assert(own && "a surface of another backend");
  return own;
}

}  // namespace

CairoDevice::CairoDevice(double scale) : scale_(scale), text_(std::make_shared<CairoText>()) {}
CairoDevice::~CairoDevice() = default;

std::shared_ptr<Surface> CairoDevice::makeSurface(int pixelWidth, int pixelHeight) {
  return CairoSurface::create(pixelWidth, pixelHeight);
}

std::unique_ptr<CGContext> CairoDevice::contextForSurface(const std::shared_ptr<Surface>& surface, double scale) {
  const CairoSurface* own = ownSurface(surface.get());
  if (!own) return nullptr;
  return std::make_unique<CairoContext>(own->handle(), own->pixelHeight(), scale, CairoContext::Target::pixels, text_,
                                        surface);
}

std::shared_ptr<Surface> CairoDevice::decodePNG(const uint8_t* bytes, size_t count) {
  if (!bytes || count > largestKeptPicture) return CairoSurface::decodePNG(bytes, count);
  const std::string picture(reinterpret_cast<const char*>(bytes), count);
  if (const auto kept = decoded_.find(picture); kept != decoded_.end()) return kept->second;
  std::shared_ptr<Surface> surface = CairoSurface::decodePNG(bytes, count);
  if (!surface) return nullptr;
  if (decoded_.size() >= mostKeptPictures) decoded_.clear();
  decoded_.emplace(picture, surface);
  return surface;
}

std::vector<uint8_t> CairoDevice::readPixels(const Surface& surface) {
  const CairoSurface* own = ownSurface(&surface);
  return own ? own->readPixels() : std::vector<uint8_t>{};
}

double CairoDevice::advanceOfText(const FontFace& face, std::string_view text) { return text_->advanceOf(face, text); }

void CairoDevice::requireFonts() const { text_->requireFonts(); }

std::string CairoDevice::encodePNG(const Surface& surface) {
  const CairoSurface* own = ownSurface(&surface);
  return own ? own->encodePNG() : std::string{};
}

}  // namespace zelkon
