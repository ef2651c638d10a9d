#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "Foundation/NSRunLoop.h"

namespace zelkon {
namespace {

struct RunLoop : testing::Test {
  NSRunLoop loop;
  std::string log;
  int first = 0, second = 0;  // their addresses are targets
  void perform(const void* target, double delay, char mark) {
    loop.performAfterDelay(target, delay, [this, mark] { log += mark; });
  }
};

TEST_F(RunLoop, NothingRunsBeforeATurn) {
  perform(&first, 0, 'a');
  EXPECT_EQ(log, "");
  loop.runDue(0);
  EXPECT_EQ(log, "a");
  loop.runDue(1);
  EXPECT_EQ(log, "a");
}

TEST_F(RunLoop, SameTimeRequestsRunInOrderOfScheduling) {
  perform(&first, 0.1, 'c');
  perform(&first, 0, 'a');
  perform(&second, 0, 'b');
  perform(&second, 0.1, 'd');
  loop.runDue(0.5);
  EXPECT_EQ(log, "abcd");
}

TEST_F(RunLoop, WaitsForTheDelay) {
  loop.runDue(10);
  perform(&first, 0.5, 'a');
  EXPECT_EQ(loop.nextDue(), 10.5);
  loop.runDue(10.4);
  EXPECT_EQ(log, "");
  loop.runDue(10.5);
  EXPECT_EQ(log, "a");
  EXPECT_EQ(loop.nextDue(), std::nullopt);
  EXPECT_EQ(loop.now(), 10.5);
}

TEST_F(RunLoop, RequestsMadeMeanwhileWaitForTheNextTurn) {
  loop.performAfterDelay(&first, 0, [this] {
    log += 'a';
    perform(&first, 0, 'b');
  });
  loop.runDue(0);
  EXPECT_EQ(log, "a");
  loop.runDue(0);
  EXPECT_EQ(log, "ab");
}

TEST_F(RunLoop, CancellingDropsTheRequestsOfThatTargetOnly) {
  perform(&first, 0, 'a');
  perform(&second, 0, 'b');
  perform(&first, 1, 'c');
  loop.cancelPreviousPerformRequests(&first);
  loop.cancelPreviousPerformRequests(&first);
  loop.runDue(2);
  EXPECT_EQ(log, "b");
}

TEST_F(RunLoop, CancellingReachesTheRunningTurn) {
  loop.performAfterDelay(&first, 0, [this] { loop.cancelPreviousPerformRequests(&second); });
  perform(&second, 0, 'b');
  perform(&first, 0, 'c');
  loop.runDue(0);
  EXPECT_EQ(log, "c");
}

TEST_F(RunLoop, KeepsTheTargetAliveUntilItHasRun) {
  auto alive = std::make_shared<int>(1);
  const std::weak_ptr<int> watch = alive;
  loop.performAfterDelay(
      &first, 0, [&] { log += watch.expired() ? 'x' : 'a'; }, std::move(alive));
  EXPECT_FALSE(watch.expired());
  loop.runDue(0);
  EXPECT_EQ(log, "a");
  EXPECT_TRUE(watch.expired());
}

TEST_F(RunLoop, CancellingLetsTheTargetGo) {
  auto alive = std::make_shared<int>(1);
  const std::weak_ptr<int> watch = alive;
  loop.performAfterDelay(
      &first, 0, [] {}, std::move(alive));
  loop.cancelPreviousPerformRequests(&first);
  EXPECT_TRUE(watch.expired());
}

TEST_F(RunLoop, ThrowingActionLeavesTheRestForTheNextTurn) {
  loop.performAfterDelay(&first, 0, [] { throw std::runtime_error("x"); });
  perform(&first, 0, 'b');
  EXPECT_THROW(loop.runDue(0), std::runtime_error);
  EXPECT_EQ(loop.nextDue(), 0);
  loop.runDue(0);
  EXPECT_EQ(log, "b");
}

}  // namespace
}  // namespace zelkon
