#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>

#include "Hosts/Headless/OrderedPipeline.h"

namespace zelkon {
namespace {

struct Nothing {};
using Plain = OrderedPipeline<Nothing>;

// How long a job of that number takes: some much longer than others.
void takeAWhile(int number) {
  std::minstd_rand random(static_cast<unsigned>(number));
  std::this_thread::sleep_for(std::chrono::microseconds(random() % 7 == 0 ? 2000 : random() % 100));
}

class OrderedPipelineOn : public testing::TestWithParam<size_t> {};

TEST_P(OrderedPipelineOn, HandsResultsOnInTheOrderOfTheJobs) {
  std::vector<int> handedOn;
  Plain pipeline(GetParam(), 8);
  for (int i = 0; i < 300; ++i)
    EXPECT_TRUE(pipeline.add([&, i](Nothing&) {
      takeAWhile(i);
      return [&, i] {
        handedOn.push_back(i);
        return true;
      };
    }));
  pipeline.finish();
  ASSERT_EQ(handedOn.size(), 300u);
  for (int i = 0; i < 300; ++i) EXPECT_EQ(handedOn[static_cast<size_t>(i)], i);
}

TEST_P(OrderedPipelineOn, HasNoMoreInFlightThanItMay) {
  std::atomic<int> inFlight = 0, most = 0;
  Plain pipeline(GetParam(), 5);
  for (int i = 0; i < 200; ++i) {
    pipeline.add([&, i](Nothing&) {
      takeAWhile(i);
      return [&] {
        --inFlight;
        return true;
      };
    });
    most = std::max(most.load(), ++inFlight);
  }
  pipeline.finish();
  EXPECT_EQ(inFlight, 0);
  EXPECT_LE(most, 5);
}

TEST_P(OrderedPipelineOn, HandsOnWhatIsDoneWithoutWaitingForMore) {
  Plain pipeline(GetParam(), 8);
  std::atomic<int> handedOn = 0;
  for (int i = 1; i <= 3; ++i) {
    pipeline.add([&](Nothing&) {
      return [&] {
        ++handedOn;
        return true;
      };
    });
    for (int wait = 0; handedOn < i && wait < 5000; ++wait) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(handedOn, i);
  }
}

TEST_P(OrderedPipelineOn, StopsWhenNoMoreIsWanted) {
  std::atomic<int> begun = 0, handedOn = 0;
  int added = 0;
  Plain pipeline(GetParam(), 4);
  while (added < 10000 && pipeline.add([&](Nothing&) {
    ++begun;
    return [&] { return ++handedOn < 10; };
  }))
    ++added;
  pipeline.finish();
  EXPECT_EQ(handedOn, 10);
  EXPECT_LE(begun, 10 + 4);
  EXPECT_FALSE(pipeline.add([&](Nothing&) { return [] { return true; }; }));
}

TEST_P(OrderedPipelineOn, ThrowsWhatAJobThrowsInItsPlace) {
  int handedOn = 0;
  Plain pipeline(GetParam(), 4);
  EXPECT_THROW(
      {
        for (int i = 0; i < 100; ++i)
          pipeline.add([&, i](Nothing&) -> Plain::HandOn {
            takeAWhile(i);
            if (i == 20) throw std::runtime_error("20");
            return [&] { return ++handedOn > 0; };
          });
        pipeline.finish();
      },
      std::runtime_error);
  EXPECT_EQ(handedOn, 20);
}

TEST_P(OrderedPipelineOn, ThrowsWhatHandingOnThrows) {
  Plain pipeline(GetParam(), 4);
  EXPECT_THROW(
      {
        for (int i = 0; i < 100; ++i)
          pipeline.add([i](Nothing&) {
            return [i] {
              if (i == 20) throw std::runtime_error("20");
              return true;
            };
          });
        pipeline.finish();
      },
      std::runtime_error);
}

struct Refusing {
  Refusing() { throw std::runtime_error("no context"); }
};

TEST_P(OrderedPipelineOn, ThrowsWhatMakingAContextThrows) {
  OrderedPipeline<Refusing> pipeline(GetParam(), 4);
  EXPECT_THROW(
      {
        pipeline.add([](Refusing&) { return [] { return true; }; });
        pipeline.finish();
      },
      std::runtime_error);
}

// Knows its thread, and counts itself.
struct Counted {
  static inline std::atomic<int> alive = 0;
  std::thread::id thread = std::this_thread::get_id();
  Counted() { ++alive; }
  ~Counted() {
    --alive;
    EXPECT_EQ(std::this_thread::get_id(), thread);
  }
};

TEST_P(OrderedPipelineOn, GivesEachThreadAContextOfItsOwn) {
  {
    OrderedPipeline<Counted> pipeline(GetParam(), 8);
    for (int i = 0; i < 100; ++i)
      pipeline.add([i](Counted& context) {
        takeAWhile(i);
        EXPECT_EQ(context.thread, std::this_thread::get_id());
        return [] { return true; };
      });
    pipeline.finish();
    EXPECT_LE(Counted::alive, static_cast<int>(GetParam()));
  }
  EXPECT_EQ(Counted::alive, 0);
}

TEST_P(OrderedPipelineOn, WithoutAJobThereIsNothingToWaitFor) {
  Plain pipeline(GetParam(), 4);
  pipeline.finish();
}

INSTANTIATE_TEST_SUITE_P(Threads, OrderedPipelineOn, testing::Values(1, 2, 7));

TEST(OrderedPipeline, WorksOnSeveralThreadsAtOnce) {
  std::atomic<int> busy = 0;
  bool met = false;
  Plain pipeline(2, 4);
  for (int i = 0; i < 2; ++i)
    pipeline.add([&](Nothing&) {
      ++busy;
      for (int wait = 0; busy < 2 && wait < 5000; ++wait) std::this_thread::sleep_for(std::chrono::milliseconds(1));
      return [&] {
        met = busy == 2;
        return true;
      };
    });
  pipeline.finish();
  EXPECT_TRUE(met);
}

}  // namespace
}  // namespace zelkon
