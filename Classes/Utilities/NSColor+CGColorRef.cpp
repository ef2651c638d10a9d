#include <algorithm>
#include <memory>
#include <new>

#include "Classes/Utilities/NSColor+CGColorRef.h"
#include "Foundation/NSException.h"

namespace zelkon {

CGColorRef NSColorGetCGColor(const NSColor& color) {
  try {
    const size_t count = static_cast<size_t>(color.numberOfComponents());
    const CGColorSpaceRef space = color.colorSpace();
    const std::unique_ptr<double[]> buffer(new (std::nothrow) double[count]());
    if (!buffer) NSRaise(NSMallocException, "Unable to malloc color components");
    std::copy_n(color.components().begin(), count, buffer.get());
    return std::make_shared<const CGColor>(space, std::vector<double>(buffer.get(), buffer.get() + count));
  } catch (const NSException&) {
    return kCGColorClear();
  }
}

}  // namespace zelkon
