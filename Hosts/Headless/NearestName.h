// What someone may have meant who wrote a name that there is not.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelkon {

// `; did you mean "size"?` with the name that differs least, whatever its capitals, in at most every third character;
// nothing when none is so near.
std::string didYouMean(std::string_view word, const std::vector<std::string_view>& names);

}  // namespace zelkon
