// The entries of a chart of amounts over time, read from a page's array.
#pragma once

#include <functional>

#include "Classes/Plotting/PlotEntryList.h"

namespace zelkon {

// Reads elements up to the first undefined or null one. An entry needs "humanX", "humanY" and "y" with text in them, or
// it is left out. `checkAmount` hears of each "y" with text whether it begins with a finite number, and must raise when
// it does not. An array that offers a table is not read value by value: the list then keeps the table and makes each
// entry when asked for it, anew each time.
PlotEntryListRef ScriptEntries(const Value& array, const std::function<void(bool)>& checkAmount);

}  // namespace zelkon
