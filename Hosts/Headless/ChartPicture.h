// The chart of a host as the bytes of a picture file.
#pragma once

#include <string>

#include "Hosts/Headless/PlugInHost.h"

namespace zelkon {

class CairoDevice;

enum class PictureFormat { png, svg, pdf };
// By the ending of a file's name, in any case. Throws ScenarioError for another ending.
PictureFormat pictureFormatOf(const std::string& path);

// The screen as composed, `scale` pixels per point. Throws FileError when there is not memory enough.
std::string screenPicture(PlugInHost& host, CairoDevice& device, double scale);
// The chart printed: vector drawing for SVG and PDF, pixels for PNG.
std::string printedPicture(PlugInHost& host, CairoDevice& device, double scale, PictureFormat format);

}  // namespace zelkon
