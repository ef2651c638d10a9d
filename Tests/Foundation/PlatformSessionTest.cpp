#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "Foundation/Locale.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSLog.h"
#include "Foundation/NSNotificationCenter.h"
#include "Foundation/NSRunLoop.h"
#include "Foundation/PlatformSession.h"

namespace zelkon {
namespace {

using Scope = PlatformSession::Scope;

TEST(PlatformSession, AScopeMakesASessionCurrentAndItsEndTheOneBefore) {
  NSRunLoop* const outside = &NSRunLoop::mainRunLoop();
  PlatformSession session, inner;
  NSRunLoop* own = nullptr;
  {
    const Scope scope(session);
    own = &NSRunLoop::mainRunLoop();
    EXPECT_NE(own, outside);
    {
      const Scope nested(inner);
      EXPECT_NE(&NSRunLoop::mainRunLoop(), own);
    }
    EXPECT_EQ(&NSRunLoop::mainRunLoop(), own);
  }
  EXPECT_EQ(&NSRunLoop::mainRunLoop(), outside);
  const Scope again(session);
  EXPECT_EQ(&NSRunLoop::mainRunLoop(), own) << "a session keeps its own from one scope to the next";
}

TEST(PlatformSession, AnExceptionEndsTheScopeItLeaves) {
  NSRunLoop* const outside = &NSRunLoop::mainRunLoop();
  PlatformSession session;
  try {
    const Scope scope(session);
    throw 1;
  } catch (int) {
    EXPECT_EQ(&NSRunLoop::mainRunLoop(), outside);
  }
}

TEST(PlatformSession, DelayedPerformsAndTheTimeBelongToASession) {
  NSRunLoop::mainRunLoop().performAfterDelay(this, 1, [] {});
  NSRunLoop::mainRunLoop().runDue(0.5);
  PlatformSession session;
  const Scope scope(session);
  EXPECT_EQ(NSRunLoop::mainRunLoop().now(), 0);
  EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDue().has_value());
}

TEST(PlatformSession, ObserversBelongToASession) {
  int heard = 0;
  NSNotificationCenter::defaultCenter().addObserver(
      this, [&](const NSNotification&) { ++heard; }, "n", nullptr);
  {
    PlatformSession session;
    const Scope scope(session);
    NSNotificationCenter::defaultCenter().post("n", nullptr);
    EXPECT_EQ(NSNotificationCenter::defaultCenter().observerCount(), 0u);
  }
  EXPECT_EQ(heard, 0);
  NSNotificationCenter::defaultCenter().post("n", nullptr);
  EXPECT_EQ(heard, 1);
}

TEST(PlatformSession, LogHandlerAndLocaleBelongToASession) {
  struct FourMonths : LocaleServices {
    std::string formatNumber(double, const std::optional<std::string>&, int) const override { return "four"; }
    std::optional<int> monthNamed(std::string_view) const override { return std::nullopt; }
    int monthsPerYear() const override { return 4; }
  };
  std::vector<std::string> lines;
  NSSetLogSink([&](std::string_view line) { lines.push_back("outer " + std::string(line)); });
  NSAssertionHandler::setHandler([&](const AssertionFailure& failure) { lines.push_back("outer " + failure.text); });
  LocaleServices::install(std::make_shared<FourMonths>());
  const auto failOnce = [] {
    try {
      NSAssertionHandler::handleFailure({"-[A b]", nullptr, "A", 1, "text"});
    } catch (const std::exception&) {
    }
  };
  {
    PlatformSession session;
    const Scope scope(session);
    NSSetLogSink([&](std::string_view line) { lines.push_back("inner " + std::string(line)); });
    NSLog("line");
    failOnce();
    EXPECT_EQ(NSCalendar::monthsPerYear(), 12);
  }
  NSLog("line");
  failOnce();
  EXPECT_EQ(NSCalendar::monthsPerYear(), 4);
  EXPECT_EQ(lines, (std::vector<std::string>{"inner line", "inner *** Assertion failure in -[A b], A:1", "outer line",
                                             "outer text"}));
}

TEST(PlatformSession, WhatGoesWithASessionFindsItCurrent) {
  std::vector<std::string> lines;
  auto session = std::make_unique<PlatformSession>();
  {
    const Scope scope(*session);
    NSSetLogSink([&](std::string_view line) { lines.emplace_back(line); });
    // The run loop holds it, and it comes back to the run loop and the log when it goes.
    const std::shared_ptr<int> held(new int(0), [](const int* number) {
      NSRunLoop::mainRunLoop().cancelPreviousPerformRequests(number);
      NSNotificationCenter::defaultCenter().removeObserver(number);
      NSLog("gone");
      delete number;
    });
    NSRunLoop::mainRunLoop().performAfterDelay(
        held.get(), 1, [] {}, held);
  }
  EXPECT_TRUE(lines.empty());
  session.reset();
  EXPECT_EQ(lines, std::vector<std::string>{"gone"});
}

TEST(PlatformSession, TheEndOfASessionLeavesTheCurrentOneAlone) {
  auto session = std::make_unique<PlatformSession>();
  NSRunLoop* const outside = &NSRunLoop::mainRunLoop();
  {
    const Scope scope(*session);
    NSRunLoop::mainRunLoop();
  }
  session.reset();
  EXPECT_EQ(&NSRunLoop::mainRunLoop(), outside);
}

TEST(PlatformSession, SessionsOnTwoThreadsAtATimeAreTwo) {
  const auto linesOf = [](const std::string& name, std::promise<void>& ready, std::future<void> other) {
    PlatformSession session;
    const Scope scope(session);
    std::vector<std::string> lines;
    NSSetLogSink([&](std::string_view line) { lines.emplace_back(line); });
    ready.set_value();
    other.wait();
    for (int i = 0; i < 100; ++i) NSLog(name);
    return lines;
  };
  std::promise<void> first, second;
  auto a = std::async(std::launch::async, [&] { return linesOf("a", first, second.get_future()); });
  auto b = std::async(std::launch::async, [&] { return linesOf("b", second, first.get_future()); });
  EXPECT_EQ(a.get(), std::vector<std::string>(100, "a"));
  EXPECT_EQ(b.get(), std::vector<std::string>(100, "b"));
}

TEST(PlatformSessionDeathTest, WithoutASessionThePlatformEndsTheProgramAndSaysWhy) {
  EXPECT_DEATH(std::thread([] { NSRunLoop::mainRunLoop(); }).join(), "no PlatformSession is current on this thread");
}

}  // namespace
}  // namespace zelkon
