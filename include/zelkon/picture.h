// How a chart becomes a picture, and pictures as files.
#pragma once

#include <optional>
#include <string>

#include "zelkon/error.h"

namespace zelkon::plot {

enum class Format { png, svg, pdf };

// Components from 0 to 1, sRGB.
struct Color {
  double red = 0, green = 0, blue = 0, alpha = 1;
};

struct Picture {
  Format format = Format::png;  // PNG as on a screen; SVG and PDF as printed, with text as text
  double width = 600;           // points, above 0 and up to 32,000
  double height = 400;
  double scale = 1;                 // pixels per point, above 0 and up to 16; SVG and PDF have no pixels
  std::string locale = "en_US";     // of numbers, amounts and month names, such as "de_DE"
  std::optional<Color> background;  // under the chart; without one a PNG and an SVG are transparent
};

// Writes the bytes to the file, whole or not at all: an earlier file of that name stays until the new one is complete.
// Throws Error for a file that cannot be written. Any thread.
void save(const std::string& path, const std::string& bytes);

}  // namespace zelkon::plot
