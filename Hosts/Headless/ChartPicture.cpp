#include "Hosts/Headless/ChartPicture.h"

#include <algorithm>
#include <cmath>

#include "Backends/Cairo/CairoDevice.h"
#include "Backends/Cairo/VectorDocument.h"
#include "Hosts/Headless/OutputFile.h"

namespace zelkon {
namespace {

FileError tooLarge() { return FileError("the picture is too large for the memory there is"); }

template <typename Paint>
PictureBytes pixels(CGSize size, CairoDevice& device, double scale, Paint paint) {
  const auto side = [&](double points) { return std::max(1, static_cast<int>(std::ceil(points * scale - 1e-6))); };
  const std::shared_ptr<Surface> surface = device.makeSurface(side(size.width), side(size.height));
  if (!surface) throw tooLarge();
  {
    const std::unique_ptr<CGContext> context = device.contextForSurface(surface, scale);
    paint(*context);
    context->flush();
  }
  return [surface, &device] {
    std::string bytes = device.encodePNG(*surface);
    if (bytes.empty()) throw tooLarge();
    return bytes;
  };
}

void fill(CGContext& context, const std::optional<RGBA>& background, CGSize size) {
  if (!background) return;
  context.saveGState();
  context.setFillColor(*background);
  // Whole points cover the last, partial row and column of pixels too.
  context.fillRect({{0, 0}, {std::ceil(size.width) + 1, std::ceil(size.height) + 1}});
  context.restoreGState();
}

}  // namespace

PictureBytes drawnScreen(PlugInHost& host, CairoDevice& device, double scale, const std::optional<RGBA>& background) {
  return pixels(host.size(), device, scale, [&](CGContext& context) {
    fill(context, background, host.size());
    host.compose(context, scale);
  });
}

std::string screenPicture(PlugInHost& host, CairoDevice& device, double scale) {
  return drawnScreen(host, device, scale)();
}

std::string printedPicture(PlugInHost& host, CairoDevice& device, double scale, PictureFormat format,
                           const std::optional<RGBA>& background) {
  const auto paint = [&](CGContext& context) {
    fill(context, background, host.size());
    host.print(context);
  };
  if (format == PictureFormat::png) return pixels(host.size(), device, scale, paint)();
  const std::unique_ptr<VectorDocument> document =
      format == PictureFormat::svg ? makeSVGDocument(device, host.size()) : makePDFDocument(device, host.size());
  if (!document) throw FileError("a chart without a size cannot be printed");
  paint(document->context());
  return document->finish();
}

}  // namespace zelkon
