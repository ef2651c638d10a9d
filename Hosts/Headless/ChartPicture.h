// The chart of a host as the bytes of a picture file.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Hosts/Headless/PictureFormat.h"
#include "Hosts/Headless/PlugInHost.h"

namespace zelkon {

class CairoDevice;

// A drawing that is done, as the bytes of its file. May be called once, on any thread, while other charts are drawn on
// the same device; the device must still be there. Throws FileError when there is not memory enough.
using PictureBytes = std::function<std::string()>;

// The screen as composed, `scale` pixels per point, as PNG, over the background where one is given. Throws FileError
// when there is not memory enough.
PictureBytes drawnScreen(PlugInHost& host, CairoDevice& device, double scale,
                         const std::optional<RGBA>& background = std::nullopt);
// The same at once: the screen as composed, `scale` pixels per point. Throws FileError when there is not memory enough.
std::string screenPicture(PlugInHost& host, CairoDevice& device, double scale);
// The chart printed, over the background where one is given: vector drawing for SVG and PDF, pixels for PNG.
std::string printedPicture(PlugInHost& host, CairoDevice& device, double scale, PictureFormat format,
                           const std::optional<RGBA>& background = std::nullopt);

}  // namespace zelkon
