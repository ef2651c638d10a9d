#include <gtest/gtest.h>

#include "CoreText/UTF8.h"

namespace zelkon {
namespace {

TEST(UTF8, DecodesEveryLength) {
  const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_EQ(UTF8CodePointAt(text, 0).value, U'a');
  EXPECT_EQ(UTF8CodePointAt(text, 1).value, U'\u00E9');
  EXPECT_EQ(UTF8CodePointAt(text, 3).value, U'\u20AC');
  EXPECT_EQ(UTF8CodePointAt(text, 6).value, U'\U0001F600');
  EXPECT_EQ(UTF8CodePointAt(text, 6).length, 4u);
  EXPECT_TRUE(UTF8IsWellFormed(text));
}

TEST(UTF8, RejectsOverlongSurrogatesCutAndStrayBytes) {
  for (const char* text :
       {"\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8", "\x80", "\xE2\x82", "\xC3", "a\xC3z"})
    EXPECT_FALSE(UTF8IsWellFormed(text)) << text;
}

TEST(UTF8, ReplacementsKeepWhatIsGoodAndMapOffsets) {
  std::vector<size_t> offsets;
  EXPECT_EQ(UTF8WithReplacements("a\xFF"
                                 "b\xC3",
                                 &offsets),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD");
  EXPECT_EQ(offsets, (std::vector<size_t>{0, 1, 4, 5, 8}));
}

}  // namespace
}  // namespace zelkon
