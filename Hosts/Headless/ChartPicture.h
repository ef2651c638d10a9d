// The chart of a host as the bytes of a picture file.
#pragma once

#include <functional>
#include <string>

#include "Hosts/Headless/PictureFormat.h"
#include "Hosts/Headless/PlugInHost.h"

namespace zelkon {

class CairoDevice;

// A drawing that is done, as the bytes of its file. May be called once, on any thread, while other charts are drawn on
// the same device; the device must still be there. Throws FileError when there is not memory enough.
using PictureBytes = std::function<std::string()>;

// The screen as composed, `scale` pixels per point, as PNG. Throws FileError when there is not memory enough.
PictureBytes drawnScreen(PlugInHost& host, CairoDevice& device, double scale);
// The same at once: the screen as composed, `scale` pixels per point. Throws FileError when there is not memory enough.
std::string screenPicture(PlugInHost& host, CairoDevice& device, double scale);
// The chart printed: vector drawing for SVG and PDF, pixels for PNG.
std::string printedPicture(PlugInHost& host, CairoDevice& device, double scale, PictureFormat format);

}  // namespace zelkon
