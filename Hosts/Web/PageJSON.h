// Values on their way to the page, as JSON.
#pragma once

#include <string>

#include "Foundation/Value.h"

namespace zelkon {

// Numbers with all their digits; what JSON has no word for (undefined, infinities, objects) becomes null.
std::string PageJSON(const Value& value);

}  // namespace zelkon
