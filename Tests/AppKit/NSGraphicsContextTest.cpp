#include <gtest/gtest.h>

#include "AppKit/NSGraphicsContext.h"
#include "CoreGraphics/DisplayList.h"
#include "Foundation/PlatformSession.h"

namespace zelkon {
namespace {

TEST(NSGraphicsContext, ContextsOverAPortAreNotTheScreen) {
  RecordingContext port;
  const auto context = NSGraphicsContext::graphicsContextWithGraphicsPort(&port, true);
  EXPECT_FALSE(context->isDrawingToScreen());
  EXPECT_TRUE(context->isFlipped());
  EXPECT_EQ(context->graphicsPort(), &port);
  EXPECT_TRUE(NSGraphicsContext(nullptr, false, true).isDrawingToScreen());
  EXPECT_EQ(port.ctm(), CGAffineTransformIdentity);
}

TEST(NSGraphicsContext, RestoringBringsBackTheContextAndItsState) {
  RecordingContext first, second;
  const auto outer = NSGraphicsContext::graphicsContextWithGraphicsPort(&first, false);
  NSGraphicsContext::setCurrentContext(outer);
  first.setLineWidth(2);
  NSGraphicsContext::saveGraphicsState();
  NSGraphicsContext::setCurrentContext(NSGraphicsContext::graphicsContextWithGraphicsPort(&second, false));
  first.setLineWidth(5);
  NSGraphicsContext::saveGraphicsState();
  NSGraphicsContext::setCurrentContext(nullptr);
  NSGraphicsContext::restoreGraphicsState();
  EXPECT_EQ(NSGraphicsContext::currentContext()->graphicsPort(), &second);
  NSGraphicsContext::restoreGraphicsState();
  EXPECT_EQ(NSGraphicsContext::currentContext(), outer);
  EXPECT_EQ(first.lineWidth(), 2);
  NSGraphicsContext::restoreGraphicsState();  // unmatched: nothing
  EXPECT_EQ(NSGraphicsContext::currentContext(), outer);
  NSGraphicsContext::setCurrentContext(nullptr);
}

TEST(NSGraphicsContext, EachSessionHasItsOwnCurrentOne) {
  RecordingContext port;
  const auto context = NSGraphicsContext::graphicsContextWithGraphicsPort(&port, false);
  NSGraphicsContext::setCurrentContext(context);
  NSGraphicsContext::saveGraphicsState();
  {
    PlatformSession session;
    const PlatformSession::Scope scope(session);
    EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
    NSGraphicsContext::restoreGraphicsState();  // nothing was saved here
    NSGraphicsContext::setCurrentContext(nullptr);
  }
  EXPECT_EQ(NSGraphicsContext::currentContext(), context);
}

}  // namespace
}  // namespace zelkon
