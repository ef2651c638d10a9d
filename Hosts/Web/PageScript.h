// The arguments of the page's calls, read from the block in which JavaScript wrote them down before the module was
// entered.
//
// The block, little endian, 8-byte aligned:
//   u32 tags, numbers, references, strings    how many of each follow
//   f64 numbers[], u32 references[], u32 ends of strings[], u8 tags[], u8 text[], and for a table
//   f64 amounts[], u8 kinds[]
// Tags come in the order in which the page's objects were read. A number takes the next number, a string the next
// reference (which string), an array the next one (how many elements), a thrown one the next
// reference (the string that says what was thrown). A record is followed by one tag for each key.
// A table, of which a block holds at most one, takes the next three references (how many rows, the page's number for
// it, how many elements follow the rows: one or none). It is followed by the objects among its cells and by that
// element; PageTable.h says what amounts and kinds are.
#pragma once

#include <cstdint>
#include <memory>

#include "WebKit/WebScriptObject.h"

namespace zelkon {

// The arguments of one call. Raises NSInvalidArgumentException when the block is not well formed.
ValueArray ReadScriptArguments(const uint8_t* block, size_t size);

}  // namespace zelkon
