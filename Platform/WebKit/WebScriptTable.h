// The elements of a page's array read for a few properties each, for arrays so long that reading value by value would
// hold the page.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Foundation/Value.h"

namespace zelkon {

// Holds the array's first elements, one row each: elements that have properties, and whose properties can all be read
// without raising. Cells lie row after row, in each row in the order of the properties asked for.
class WebScriptTable {
 public:
  enum class Kind : uint8_t { null, no, yes, number, emptyText, text, object };
  virtual ~WebScriptTable() = default;
  virtual size_t rowCount() const = 0;
  // What each cell holds: rowCount() times the number of properties. Stays with the table.
  virtual const Kind* kinds() const = 0;
  // For each row the number that its last property's text scans to; not a number where that would have to be found out.
  // Stays with the table.
  virtual const double* amounts() const = 0;
  // What valueForKey answers for the element's property.
  virtual Value value(size_t row, size_t column) const = 0;
};

}  // namespace zelkon
