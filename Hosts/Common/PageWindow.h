// The window object of the page behind one view: the functions of the page that the view calls.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "WebKit/WebScriptObject.h"

namespace zelkon {

// Carries a view's call out in the page. Must not throw.
using PageFunction = std::function<void(std::string_view name, const ValueArray& arguments)>;

class PageWindow : public WebScriptObject {
 public:
  explicit PageWindow(PageFunction call) : call_(std::move(call)) {}
  Value webScriptValueAtIndex(size_t) override { return Value::undefined(); }
  Value valueForKey(std::string_view) override { return {}; }
  void setValue(const Value&, std::string_view) override {}
  Value callWebScriptMethod(std::string_view name, const ValueArray& arguments) override;

  // The function that tells the page that the chart is displayed; the other calls are of the pointer's doing.
  void setDisplayFunction(std::string name) { displayFunction_ = std::move(name); }
  // A silent window lets only the display function through, and that only as long as the page has not been called so
  // before: a view that takes over from another one repeats nothing and owes what the other one owed.
  void setSilent(bool silent) { isSilent_ = silent; }
  bool hasAnnouncedDisplay() const { return hasAnnounced_; }
  void setHasAnnouncedDisplay(bool announced) { hasAnnounced_ = announced; }
  // From now on nothing reaches the page.
  void close() { call_ = nullptr; }

 private:
  PageFunction call_;
  std::string displayFunction_;
  bool isSilent_ = false, hasAnnounced_ = false;
};

}  // namespace zelkon
