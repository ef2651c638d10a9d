#include <cairo-pdf.h>

#include <cmath>

#include "Backends/Cairo/CairoContext.h"
#include "Backends/Cairo/CairoDevice.h"
#include "Backends/Cairo/CairoHandles.h"
#include "Backends/Cairo/VectorDocument.h"

namespace zelkon {

namespace {

// Cairo would write the time of day; files of the same chart are to be the same.
constexpr const char* creationDate = "2001-01-01T00:00:00Z";
// For the few things that no page description can say, such as adding light.
constexpr double fallbackPixelsPerInch = 288;

cairo_status_t appendBytes(void* closure, const unsigned char* data, unsigned length) {
  static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

class PDFDocument : public VectorDocument {
 public:
  PDFDocument(const std::shared_ptr<CairoText>& text, CGSize size)
      : surface_(cairo_pdf_surface_create_for_stream(appendBytes, &bytes_, size.width, size.height)) {
    cairo_pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_CREATE_DATE, creationDate);
    cairo_surface_set_fallback_resolution(surface_.get(), fallbackPixelsPerInch, fallbackPixelsPerInch);
    context_ = std::make_unique<CairoContext>(surface_.get(), size.height, 1, CairoContext::Target::document, text);
  }

  CGContext& context() override { return *context_; }

  std::string finish() override {
    context_.reset();
    cairo_surface_finish(surface_.get());
    if (cairo_surface_status(surface_.get()) != CAIRO_STATUS_SUCCESS) return {};
    return std::move(bytes_);
  }

 private:
  std::string bytes_;  // outlives the surface, which writes into it
  CairoSurfaceHandle surface_;
  std::unique_ptr<CairoContext> context_;
};

}  // namespace

std::unique_ptr<VectorDocument> makePDFDocument(CairoDevice& device, CGSize size) {
  if (!(size.width > 0 && size.height > 0) || !std::isfinite(size.width) || !std::isfinite(size.height)) return nullptr;
  return std::make_unique<PDFDocument>(device.text(), size);
}

}  // namespace zelkon
