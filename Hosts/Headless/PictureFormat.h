// The kinds of picture files.
#pragma once

#include <optional>
#include <string_view>

namespace zelkon {

enum class PictureFormat { png, svg, pdf };
// By the ending of a file's name, in any case; nothing for another ending.
std::optional<PictureFormat> pictureFormatOf(std::string_view path);

}  // namespace zelkon
