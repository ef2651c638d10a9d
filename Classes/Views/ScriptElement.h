// How the elements of a page's array are read. A page may put anything into its arrays.
#pragma once

#include <string_view>

#include "Foundation/Value.h"

namespace zelkon {

// The element at the index of what the page passed as an array. Undefined past the end; null for a null element and for
// a null array. Raises NSInvalidArgumentException when the page passed something that has no elements.
Value ScriptElementAtIndex(const Value& array, size_t index);

// The element's property; null when it has none by that name or is null itself. Raises NSUndefinedKeyException for
// numbers, strings and other elements without properties.
Value ScriptElementValueForKey(const Value& element, std::string_view key);

}  // namespace zelkon
