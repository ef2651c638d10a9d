#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "AppKit/NSBundle.h"
#include "Classes/Utilities/PiePlotDrawingUtilities.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSException.h"
#include "Foundation/NSLog.h"
#include "Foundation/PlatformSession.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

// Catches the one failure that `action` gives.
template <typename Action>
AssertionFailure failureOf(Action action) {
  AssertionFailure seen{"", nullptr, "", 0, ""};
  const auto earlier = NSAssertionHandler::setHandler([&](const AssertionFailure& failure) { seen = failure; });
  EXPECT_THROW(action(), NSException);
  NSAssertionHandler::setHandler(earlier);
  return seen;
}

constexpr const char* utilitiesFile = "Classes/Utilities/PiePlotDrawingUtilities";

TEST(PiePlotDrawingUtilities, OneInstanceServesTheSession) {
  PiePlotDrawingUtilities* const instance = &PiePlotDrawingUtilities::sharedUtilities();
  EXPECT_EQ(&PiePlotDrawingUtilities::sharedUtilities(), instance);
  PlatformSession session;
  const PlatformSession::Scope scope(session);
  EXPECT_NE(&PiePlotDrawingUtilities::sharedUtilities(), instance);
}

TEST(PiePlotDrawingUtilities, RowsAreMultiplesOfSixteenAndNoPowersOfTwo) {
  const PiePlotDrawingUtilities utilities;
  EXPECT_EQ(utilities.optimalRowBytesForWidth(64, 4), 272u);
  EXPECT_EQ(utilities.optimalRowBytesForWidth(100, 4), 400u);
  EXPECT_EQ(utilities.optimalRowBytesForWidth(1, 4), 48u);
  EXPECT_EQ(utilities.optimalRowBytesForWidth(0, 4), 48u);
  EXPECT_EQ(utilities.optimalRowBytesForWidth(8, 4), 48u);
  EXPECT_EQ(utilities.optimalRowBytesForWidth(163, 4), 656u);
}

TEST(PiePlotDrawingUtilities, TheScreenColourSpaceIsMadeOnce) {
  PiePlotDrawingUtilities utilities;
  const CGColorSpaceRef space = utilities.getScreenColorspace();
  ASSERT_NE(space, nullptr);
  EXPECT_EQ(space->numberOfComponents(), 3);
  EXPECT_EQ(utilities.getScreenColorspace(), space);
}

TEST(PiePlotDrawingUtilities, ABitmapOf163PixelsHas656BytesARow) {
  PiePlotDrawingUtilities utilities;
  const auto context = utilities.createBitmapContextOfSize({163, 163});
  ASSERT_NE(context, nullptr);
  EXPECT_EQ(context->width(), 163u);
  EXPECT_EQ(context->height(), 163u);
  EXPECT_EQ(context->bytesPerRow(), 656u);
  EXPECT_EQ(context->alphaInfo(), CGImageAlphaInfo::premultipliedLast);
  EXPECT_EQ(context->colorSpace(), utilities.getScreenColorspace());
  EXPECT_EQ(context->data(), nullptr);
}

TEST(PiePlotDrawingUtilities, FractionsOfASizeAreCutOff) {
  PiePlotDrawingUtilities utilities;
  const auto context = utilities.createBitmapContextOfSize({64.9, 10.5});
  EXPECT_EQ(context->width(), 64u);
  EXPECT_EQ(context->height(), 10u);
}

TEST(PiePlotDrawingUtilities, TheBackingBufferIsTheCallers) {
  PiePlotDrawingUtilities utilities;
  PiePlotDrawingUtilities::BackingBuffer buffer;
  const auto context = utilities.createBitmapContextOfSize({8, 8}, &buffer);
  ASSERT_NE(buffer, nullptr);
  EXPECT_EQ(context->data(), buffer.get());
}

TEST(PiePlotDrawingUtilities, SizesThatNoBitmapHasGiveNothing) {
  PiePlotDrawingUtilities utilities;
  const double nan = std::nan(""), infinite = std::numeric_limits<double>::infinity();
  for (const CGSize size :
       {CGSize{0, 10}, CGSize{10, 0}, CGSize{-5, -5}, CGSize{nan, 10}, CGSize{infinite, 10}, CGSize{1e9, 1e9}}) {
    PiePlotDrawingUtilities::BackingBuffer buffer(new uint8_t[1]);
    EXPECT_EQ(utilities.createBitmapContextOfSize(size), nullptr);
    EXPECT_EQ(utilities.createBitmapContextOfSize(size, &buffer), nullptr);
    EXPECT_EQ(buffer, nullptr);
  }
}

TEST(PiePlotDrawingUtilities, SharedContextsAreKeptForWhatFitsAndMadeAnewForMore) {
  PiePlotDrawingUtilities utilities;
  EXPECT_EQ(utilities.sharedSize(), CGSizeMake(0, 0));
  utilities._createContextsForImageSize({100, 100});
  const auto bitmap = utilities.sharedBitmapContext();
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(bitmap->width(), 100u);
  EXPECT_EQ(bitmap->bytesPerRow(), 400u);
  EXPECT_EQ(bitmap->alphaInfo(), CGImageAlphaInfo::premultipliedFirst);
  ASSERT_NE(utilities.sharedCIContext(), nullptr);
  EXPECT_EQ(utilities.sharedCIContext()->target, bitmap);
  EXPECT_EQ(utilities.sharedCIContext()->outputColorSpace, utilities.getScreenColorspace());
  EXPECT_EQ(utilities.sharedCIContext()->workingColorSpace, utilities.getScreenColorspace());

  utilities._createContextsForImageSize({50, 50});
  EXPECT_EQ(utilities.sharedBitmapContext(), bitmap);
  EXPECT_EQ(utilities.sharedSize(), CGSizeMake(100, 100));

  utilities._createContextsForImageSize({100, 120});
  EXPECT_NE(utilities.sharedBitmapContext(), bitmap);
  EXPECT_EQ(utilities.sharedSize(), CGSizeMake(100, 120));

  utilities._killSharedBitmapCache();
  EXPECT_EQ(utilities.sharedBitmapContext(), nullptr);
  EXPECT_EQ(utilities.sharedCIContext(), nullptr);
  EXPECT_EQ(utilities.sharedSize(), CGSizeMake(0, 0));
}

TEST(PiePlotDrawingUtilities, SharedContextsThatCannotBeMadeFailAndLeaveNone) {
  PiePlotDrawingUtilities utilities;
  utilities._createContextsForImageSize({10, 10});
  const AssertionFailure failure = failureOf([&] { utilities._createContextsForImageSize({1e9, 1e9}); });
  EXPECT_EQ(failure.text, "Invalid parameter not satisfying: success == YES");
  EXPECT_EQ(failure.operation, "-[PiePlotDrawingUtilities _createContextsForImageSize:]");
  EXPECT_EQ(failure.file, utilitiesFile);
  EXPECT_EQ(failure.line, 123);
  EXPECT_EQ(utilities.sharedBitmapContext(), nullptr);
  EXPECT_EQ(utilities.sharedSize(), CGSizeMake(0, 0));
}

TEST(PiePlotDrawingUtilities, AMissingPictureFailsAtItsPath) {
  const PlainDevice device;
  NSBundle::mainBundle().setLoader([](const std::string&) { return std::nullopt; });
  PiePlotDrawingUtilities utilities;
  const AssertionFailure failure = failureOf([&] { utilities.cgImageNamed("shadow_none.png"); });
  EXPECT_EQ(failure.text, "Invalid parameter not satisfying: nil != path");
  EXPECT_EQ(failure.operation, "-[PiePlotDrawingUtilities cgImageNamed:]");
  EXPECT_EQ(failure.object, &utilities);
  EXPECT_EQ(failure.file, utilitiesFile);
  EXPECT_EQ(failure.line, 165);
}

TEST(PiePlotDrawingUtilities, AFileThatIsNoPictureFailsAtItsImage) {
  const PlainDevice device;
  NSBundle::mainBundle().setLoader([](const std::string&) { return std::vector<uint8_t>(40, 7); });
  PiePlotDrawingUtilities utilities;
  const AssertionFailure failure = failureOf([&] { utilities.cgImageNamed("shadow_left.png"); });
  EXPECT_EQ(failure.text, "Invalid parameter not satisfying: NULL != image");
  EXPECT_EQ(failure.file, utilitiesFile);
  EXPECT_EQ(failure.line, 175);
}

TEST(PiePlotDrawingUtilities, TheThreePicturesAreThereAtTwiceTheSizeTheyAreShownAtAndReadOnEveryCall) {
  const PlainDevice device;
  int reads = 0;
  NSBundle::mainBundle().setLoader([&](const std::string& name) {
    ++reads;
    return ViewHost::resource(name);
  });
  PiePlotDrawingUtilities& utilities = PiePlotDrawingUtilities::sharedUtilities();
  for (const char* cap : {"shadow_left.png", "shadow_right.png"}) {
    const CGImageRef image = utilities.cgImageNamed(cap);
    EXPECT_EQ(image->width(), 2 * 98);
    EXPECT_EQ(image->height(), 2 * 17);
  }
  const CGImageRef center = utilities.cgImageNamed("shadow_center.png");
  EXPECT_EQ(center->height(), 2 * 17);
  EXPECT_NE(utilities.cgImageNamed("shadow_center.png"), center);
  EXPECT_EQ(reads, 4);
  NSBundle::mainBundle().setLoader(ViewHost::resource);
}

}  // namespace
}  // namespace zelkon
