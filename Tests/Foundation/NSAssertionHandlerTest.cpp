#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSException.h"
#include "Foundation/NSLog.h"
#include "Foundation/PlatformSession.h"

namespace zelkon {
namespace {

struct AssertionHandler : testing::Test {
  std::vector<std::string> lines;
  LogSink earlier = NSSetLogSink([this](std::string_view line) { lines.emplace_back(line); });
  ~AssertionHandler() override {
    NSSetLogSink(earlier);
    NSAssertionHandler::setHandler({});
  }
  static void fail() {
    NSParameterAssert(false, "NULL != renderContext", "-[BarPlot generatePlot]", nullptr, "Classes/Plotting/BarPlot",
                      42);
  }
};

TEST_F(AssertionHandler, LogsAndRaises) {
  try {
    fail();
    FAIL() << "nothing was raised";
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.name(), "NSInternalInconsistencyException");
    EXPECT_EQ(exception.reason(), "Invalid parameter not satisfying: NULL != renderContext");
  }
  EXPECT_EQ(lines,
            std::vector<std::string>{"*** Assertion failure in -[BarPlot generatePlot], Classes/Plotting/BarPlot:42"});
}

TEST_F(AssertionHandler, SatisfiedParameterDoesNothing) {
  NSParameterAssert(true, "x", "-[A b]", nullptr, "A", 1);
  EXPECT_TRUE(lines.empty());
}

TEST_F(AssertionHandler, ReplacedHandlerSeesTheFailureAndTheExceptionFollows) {
  std::vector<AssertionFailure> seen;
  NSAssertionHandler::setHandler([&](const AssertionFailure& failure) { seen.push_back(failure); });
  EXPECT_THROW(fail(), NSException);
  ASSERT_EQ(seen.size(), 1U);
  EXPECT_EQ(seen[0].operation, "-[BarPlot generatePlot]");
  EXPECT_EQ(seen[0].object, nullptr);
  EXPECT_EQ(seen[0].file, "Classes/Plotting/BarPlot");
  EXPECT_EQ(seen[0].line, 42);
  EXPECT_TRUE(lines.empty());
}

TEST_F(AssertionHandler, ReplacedHandlerMayRaiseItself) {
  NSAssertionHandler::setHandler([](const AssertionFailure&) { throw 7; });
  EXPECT_THROW(fail(), int);
}

TEST_F(AssertionHandler, BelongsToTheSessionOfTheThread) {
  bool called = false;
  NSAssertionHandler::setHandler([&](const AssertionFailure&) { called = true; });
  std::thread([this] {
    PlatformSession session;
    const PlatformSession::Scope scope(session);
    NSSetLogSink([this](std::string_view line) { lines.emplace_back(line); });
    EXPECT_THROW(fail(), NSException);
  }).join();
  EXPECT_FALSE(called);
  EXPECT_EQ(lines.size(), 1U);
}

TEST_F(AssertionHandler, EmptyFunctionRestoresTheDefault) {
  NSAssertionHandler::setHandler([](const AssertionFailure&) {});
  EXPECT_TRUE(NSAssertionHandler::setHandler({}));
  EXPECT_THROW(fail(), NSException);
  EXPECT_EQ(lines.size(), 1U);
}

TEST(NSException, DescribesItselfByReasonOrName) {
  EXPECT_EQ(NSException("Name", "why").description(), "why");
  EXPECT_EQ(NSException("Name", "").description(), "Name");
  EXPECT_STREQ(NSException("Name", "why").what(), "why");
  EXPECT_STREQ(NSUndefinedKeyException, "NSUnknownKeyException");
}

TEST(NSException, RaisesNameAndReason) {
  try {
    NSRaise(NSRangeException, "beyond bounds");
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.name(), "NSRangeException");
    EXPECT_EQ(exception.reason(), "beyond bounds");
  }
}

TEST(NSLog, FormatsSixDecimals) {
  EXPECT_EQ(NSFormatDouble(100), "100.000000");
  EXPECT_EQ(NSFormatDouble(-3.5), "-3.500000");
  EXPECT_EQ(NSFormatDouble(0.0000004), "0.000000");
  EXPECT_EQ(NSFormatDouble(1e300).size(), 308U);
}

TEST(NSLog, SinkCanBeReplacedAndRestored) {
  std::string seen;
  const LogSink earlier = NSSetLogSink([&](std::string_view line) { seen = line; });
  NSLog("hello");
  EXPECT_EQ(seen, "hello");
  EXPECT_TRUE(NSSetLogSink({}));
  testing::internal::CaptureStderr();
  NSLog("to the standard error");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "to the standard error\n");
  EXPECT_EQ(seen, "hello");
  NSSetLogSink(earlier);
}

}  // namespace
}  // namespace zelkon
