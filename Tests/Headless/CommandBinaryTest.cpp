// How the command is built: nothing of it lies at a foreseen place or can be written over without being noticed.
#include "Headless/CommandFixture.h"

namespace zelkon {
namespace {

class CommandBinary : public CommandFixture {
 protected:
  void SetUp() override {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers have guards of their own";
#endif
  }
};

TEST_F(CommandBinary, CanBeLoadedAnywhere) {
  EXPECT_NE(shell("readelf -hW \"$Z\"").output.find("DYN (Position-Independent Executable"), std::string::npos);
}

TEST_F(CommandBinary, IsBoundAtOnceAndReadOnlyFromThenOn) {
  EXPECT_NE(shell("readelf -lW \"$Z\"").output.find("GNU_RELRO"), std::string::npos);
  EXPECT_NE(shell("readelf -dW \"$Z\" | grep FLAGS").output.find("NOW"), std::string::npos);
}

TEST_F(CommandBinary, GuardsItsStackAndItsCopies) {
  const std::string symbols = shell("readelf --dyn-syms -W \"$Z\"").output;
  EXPECT_NE(symbols.find("__stack_chk_fail@"), std::string::npos);
  EXPECT_NE(symbols.find("__snprintf_chk@"), std::string::npos) << symbols;
  EXPECT_EQ(symbols.find(" snprintf@"), std::string::npos);
}

TEST_F(CommandBinary, HasNoStackThatCanBeExecuted) {
  const std::string stack = shell("readelf -lW \"$Z\" | grep GNU_STACK").output;
  EXPECT_NE(stack.find(" RW "), std::string::npos) << stack;
}

}  // namespace
}  // namespace zelkon
