#include <cmath>

#include "Backends/Cairo/CairoDevice.h"
#include "Backends/Cairo/SVGContext.h"
#include "Backends/Cairo/VectorDocument.h"

namespace zelkon {

namespace {

class SVGDocument : public VectorDocument {
 public:
  SVGDocument(const std::shared_ptr<CairoText>& text, CGSize size) : context_(size, text) {}
  CGContext& context() override { return context_; }
  std::string finish() override { return context_.document(); }

 private:
  SVGContext context_;
};

}  // namespace

std::unique_ptr<VectorDocument> makeSVGDocument(CairoDevice& device, CGSize size) {
  if (!(size.width > 0 && size.height > 0) || !std::isfinite(size.width) || !std::isfinite(size.height)) return nullptr;
  return std::make_unique<SVGDocument>(device.text(), size);
}

}  // namespace zelkon
