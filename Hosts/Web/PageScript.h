// The page's side of the script bridge: the window that the plug-in calls, and the arguments of the page's calls, read
// from the block in which JavaScript wrote them down before the module was entered.
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

// The window object of the page behind one view. Page functions hear nothing while it is silent.
class PageWindow : public WebScriptObject {
 public:
  explicit PageWindow(int plot) : plot_(plot) {}
  Value webScriptValueAtIndex(size_t) override { return Value::undefined(); }
  Value valueForKey(std::string_view) override { return {}; }
  void setValue(const Value&, std::string_view) override {}
  Value callWebScriptMethod(std::string_view name, const ValueArray& arguments) override;

  void setSilent(bool silent) { silent_ = silent; }
  // Whether the page has heard that the chart is displayed; a view that takes over from another one inherits it.
  bool hasAnnouncedDisplay() const { return announced_; }
  void setHasAnnouncedDisplay(bool announced) { announced_ = announced; }

 private:
  int plot_;
  bool silent_ = false, announced_ = false;
};

// The arguments of one call. Raises NSInvalidArgumentException when the block is not well formed.
ValueArray ReadScriptArguments(const uint8_t* block, size_t size);

}  // namespace zelkon
