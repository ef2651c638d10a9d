#include "Hosts/Headless/PictureFormat.h"

#include <cctype>
#include <string>

namespace zelkon {

std::optional<PictureFormat> pictureFormatOf(std::string_view path) {
  const size_t dot = path.rfind('.');
  std::string ending(dot == std::string_view::npos ? "" : path.substr(dot + 1));
  for (char& c : ending) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (ending == "png") return PictureFormat::png;
  if (ending == "svg") return PictureFormat::svg;
  if (ending == "pdf") return PictureFormat::pdf;
  return std::nullopt;
}

}  // namespace zelkon
