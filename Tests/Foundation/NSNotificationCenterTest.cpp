#include <gtest/gtest.h>

#include "Foundation/NSNotificationCenter.h"

namespace zelkon {
namespace {

struct NotificationCenter : testing::Test {
  NSNotificationCenter center;
  std::string log;
  int observer = 0, other = 0, sender = 0, stranger = 0;  // told apart by address
  NSNotificationCenter::Handler mark(char c) {
    return [this, c](const NSNotification&) { log += c; };
  }
};

TEST_F(NotificationCenter, DeliversAtOnceInOrderOfRegistration) {
  center.addObserver(&observer, mark('a'), "n", nullptr);
  center.addObserver(&other, mark('b'), "n", &sender);
  center.post("n", &sender);
  EXPECT_EQ(log, "ab");
}

TEST_F(NotificationCenter, ChoosesByNameAndSender) {
  center.addObserver(&observer, mark('a'), "n", &sender);
  center.post("n", &stranger);
  center.post("m", &sender);
  EXPECT_EQ(log, "");
}

TEST_F(NotificationCenter, HandsOverNameAndSender) {
  NSNotification seen{"", nullptr};
  center.addObserver(
      &observer, [&](const NSNotification& n) { seen = n; }, NSViewBoundsDidChangeNotification, nullptr);
  center.post(NSViewBoundsDidChangeNotification, &sender);
  EXPECT_EQ(seen.name, "NSViewBoundsDidChangeNotification");
  EXPECT_EQ(seen.object, &sender);
}

TEST_F(NotificationCenter, RegisteringTwiceDeliversTwice) {
  center.addObserver(&observer, mark('a'), "n", &sender);
  center.addObserver(&observer, mark('a'), "n", &sender);
  center.post("n", &sender);
  EXPECT_EQ(log, "aa");
}

TEST_F(NotificationCenter, RemovingWithoutSenderRemovesAllOfTheName) {
  center.addObserver(&observer, mark('a'), "n", &sender);
  center.addObserver(&observer, mark('b'), "n", nullptr);
  center.addObserver(&observer, mark('c'), "m", &sender);
  center.addObserver(&other, mark('d'), "n", &sender);
  center.removeObserver(&observer, "n", nullptr);
  center.post("n", &sender);
  center.post("m", &sender);
  EXPECT_EQ(log, "dc");
}

TEST_F(NotificationCenter, RemovingForOneSenderKeepsTheOthers) {
  center.addObserver(&observer, mark('a'), "n", &sender);
  center.addObserver(&observer, mark('b'), "n", &stranger);
  center.removeObserver(&observer, "n", &sender);
  center.post("n", &sender);
  center.post("n", &stranger);
  EXPECT_EQ(log, "b");
}

TEST_F(NotificationCenter, RemovingTheObserverRemovesEverything) {
  center.addObserver(&observer, mark('a'), "n", nullptr);
  center.addObserver(&observer, mark('b'), "m", &sender);
  center.removeObserver(&observer);
  EXPECT_EQ(center.observerCount(), 0U);
}

TEST_F(NotificationCenter, ObserversRemovedMeanwhileAreSkippedAndAddedOnesWait) {
  center.addObserver(
      &observer,
      [this](const NSNotification&) {
        log += 'a';
        center.removeObserver(&observer);
        center.removeObserver(&other);
        center.addObserver(&sender, mark('c'), "n", nullptr);
      },
      "n", nullptr);
  center.addObserver(&other, mark('b'), "n", nullptr);
  center.post("n", &sender);
  EXPECT_EQ(log, "a");
  center.post("n", &sender);
  EXPECT_EQ(log, "ac");
}

TEST_F(NotificationCenter, DefaultCenterIsOne) {
  EXPECT_EQ(&NSNotificationCenter::defaultCenter(), &NSNotificationCenter::defaultCenter());
}

}  // namespace
}  // namespace zelkon
