// Devices and what was measured with them, in two sessions at a time.
#include <gtest/gtest.h>

#include "CoreText/CTFont.h"
#include "CoreText/NSAttributedString.h"
#include "Foundation/PlatformSession.h"
#include "Tests/CoreText/FixedAdvanceDevice.h"

namespace zelkon {
namespace {

TEST(TextSession, EachHasItsOwnDeviceAndRemembersItsOwnWidths) {
  FixedAdvanceDevice outer(1);
  const NSFont font(FontFaceHelvetica(), 10);
  EXPECT_EQ(CTTextAdvance(font, "abc"), 30);
  {
    PlatformSession session;
    const PlatformSession::Scope scope(session);
    EXPECT_EQ(GraphicsDevice::current(), nullptr);
    EXPECT_EQ(CTTextAdvance(font, "abc"), 15) << "about half the size a character without a device";
    FixedAdvanceDevice inner(0.25);
    EXPECT_EQ(CTTextAdvance(font, "abc"), 7.5);
    EXPECT_EQ(CTTextAdvance(font, "abc"), 7.5);
    EXPECT_EQ(inner.measurements, 1);
  }
  EXPECT_EQ(GraphicsDevice::current(), &outer);
  EXPECT_EQ(CTTextAdvance(font, "abc"), 30);
  EXPECT_EQ(outer.measurements, 1) << "still remembered";
}

}  // namespace
}  // namespace zelkon
