#include "Hosts/Common/PageWindow.h"

namespace zelkon {

Value PageWindow::callWebScriptMethod(std::string_view name, const ValueArray& arguments) {
  const bool announces = name == displayFunction_;
  if (!call_ || (isSilent_ && (!announces || hasAnnounced_))) return {};
  hasAnnounced_ |= announces;
  // The page may end the chart meanwhile.
  const PageFunction call = call_;
  call(name, arguments);
  return {};
}

}  // namespace zelkon
