// Runs a test program with a fresh session around every test, so that none sees what an earlier one left.
#include <gtest/gtest.h>

#include <optional>

#include "Foundation/PlatformSession.h"

namespace {

class SessionForEachTest : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    session_.emplace();
    scope_.emplace(*session_);
  }
  void OnTestEnd(const testing::TestInfo&) override {
    scope_.reset();
    session_.reset();
  }

  std::optional<zelkon::PlatformSession> session_;
  std::optional<zelkon::PlatformSession::Scope> scope_;
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new SessionForEachTest);
  return RUN_ALL_TESTS();
}
