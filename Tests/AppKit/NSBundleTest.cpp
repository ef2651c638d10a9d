#include <gtest/gtest.h>

#include "AppKit/NSBundle.h"
#include "Foundation/PlatformSession.h"

namespace zelkon {
namespace {

TEST(NSBundle, AsksTheHostForItsResources) {
  NSBundle bundle;
  EXPECT_FALSE(bundle.dataForImageResource("shadow_left"));
  bundle.setLoader([](const std::string& name) -> std::optional<std::vector<uint8_t>> {
    if (name != "shadow_left") return std::nullopt;
    return std::vector<uint8_t>{1, 2, 3};
  });
  EXPECT_EQ(bundle.dataForImageResource("shadow_left"), (std::vector<uint8_t>{1, 2, 3}));
  EXPECT_FALSE(bundle.dataForImageResource("other"));
}

TEST(NSBundle, EachSessionHasItsOwn) {
  NSBundle::mainBundle().setLoader([](const std::string&) { return std::vector<uint8_t>{1}; });
  {
    PlatformSession session;
    const PlatformSession::Scope scope(session);
    EXPECT_FALSE(NSBundle::mainBundle().dataForImageResource("any"));
    NSBundle::mainBundle().setLoader([](const std::string&) { return std::vector<uint8_t>{2}; });
  }
  EXPECT_EQ(NSBundle::mainBundle().dataForImageResource("any"), std::vector<uint8_t>{1});
}

}  // namespace
}  // namespace zelkon
