// The plug-in's resources, built into the program so that the command needs no files beside it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zelkon {

// Bytes of the named file of Resources/, or nothing.
std::optional<std::vector<uint8_t>> resourceNamed(const std::string& name);

}  // namespace zelkon
