// Numbers, paths, colours and texts as SVG writes them.
#pragma once

#include <string>
#include <string_view>

#include "CoreGraphics/CGColor.h"
#include "CoreGraphics/CGPath.h"

namespace zelkon {

// Up to three decimals, without trailing zeros; what is not finite is 0.
std::string svgNumber(double value);
// ` name="value"`
std::string svgAttribute(const char* name, double value);
std::string svgPathData(const CGPath& path);
std::string svgTransform(const CGAffineTransform& t);  // matrix(...)
std::string svgColor(const RGBA& color);               // #rrggbb, without the alpha
// The text for an attribute or an element, without the characters that XML cannot hold. Expects well-formed UTF-8.
std::string svgEscaped(std::string_view text);
std::string svgBase64(std::string_view bytes);

}  // namespace zelkon
