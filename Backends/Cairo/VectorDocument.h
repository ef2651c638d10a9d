// Pages for printing and for files: one page of a size in points that stays lines and text.
#pragma once

#include <memory>
#include <string>

#include "CoreGraphics/CGContext.h"

namespace zelkon {

class CairoDevice;

class VectorDocument {
 public:
  virtual ~VectorDocument() = default;
  // User space in points, y up, origin at the bottom left of the page. Owned by the document; gone after finish().
  virtual CGContext& context() = 0;
  // Ends the document and gives the bytes of its file; empty when it could not be made. The same drawing gives the same
  // bytes every time. May be called once.
  virtual std::string finish() = 0;
};

// The device shapes the text and has to outlive the document. Null for a size that is not positive and finite.
std::unique_ptr<VectorDocument> makePDFDocument(CairoDevice& device, CGSize size);
std::unique_ptr<VectorDocument> makeSVGDocument(CairoDevice& device, CGSize size);

}  // namespace zelkon
