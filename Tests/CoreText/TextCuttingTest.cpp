#include <gtest/gtest.h>

#include <numeric>

#include "CoreText/CTTypesetter.h"
#include "Tests/CoreText/FixedAdvanceDevice.h"

namespace zelkon {
namespace {

constexpr const char* dots = "\xE2\x80\xA6";
constexpr const char* germany = "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA";
constexpr const char* france = "\xF0\x9F\x87\xAB\xF0\x9F\x87\xB7";
constexpr const char* italy = "\xF0\x9F\x87\xAE\xF0\x9F\x87\xB9";
constexpr const char* keycap = "1\xEF\xB8\x8F\xE2\x83\xA3";
constexpr const char* family = "\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7";
constexpr const char* tamilNi = "\xE0\xAE\xA8\xE0\xAE\xBF";
constexpr const char* hangulHan = "\xE1\x84\x92\xE1\x85\xA1\xE1\x86\xAB";

using Texts = std::vector<std::string>;

std::string joined(const Texts& clusters) { return std::accumulate(clusters.begin(), clusters.end(), std::string()); }

// 10 points: every code point 5 wide, the ellipsis 10.
NSAttributedString tenPoint(std::string text) {
  return NSAttributedString(std::move(text), {CTFont(FontFaceHelvetica(), 10), nullptr, {}});
}

class TextCuttingTest : public testing::Test {
 protected:
  std::string truncated(const std::string& text, double width, CTLineTruncation truncation) {
    return CTLineCreateTruncated(tenPoint(text), width, truncation).text();
  }
  Texts lines(const std::string& text, double width, NSLineBreakMode mode) {
    CTTypesetter typesetter(tenPoint(text), mode);
    Texts found;
    while (const std::optional<CTLine> line = typesetter.nextLine(width)) found.push_back(line->text());
    return found;
  }
  FixedAdvanceDevice device_;
};

// Whether the text is some of the clusters from the front, or from the back.
bool isWholeBeginning(const std::string& text, const Texts& clusters) {
  std::string whole;
  for (const std::string& cluster : clusters) {
    if (whole.size() >= text.size()) break;
    whole += cluster;
  }
  return whole == text;
}
bool isWholeEnding(const std::string& text, const Texts& clusters) {
  std::string whole;
  for (auto cluster = clusters.rbegin(); cluster != clusters.rend() && whole.size() < text.size(); ++cluster)
    whole = *cluster + whole;
  return whole == text;
}

TEST_F(TextCuttingTest, FlagsAreTakenOutWhole) {
  const std::string text = joined({germany, france, italy, germany, france, italy});  // 60 wide
  EXPECT_EQ(truncated(text, 45, CTLineTruncation::end), joined({germany, france, italy, dots}));
  EXPECT_EQ(truncated(text, 45, CTLineTruncation::start), joined({dots, germany, france, italy}));
  EXPECT_EQ(truncated(text, 45, CTLineTruncation::middle), joined({germany, france, dots, italy}));
}

TEST_F(TextCuttingTest, AtNoWidthIsACharacterTorn) {
  const Texts clusters = {"a",     germany, france,    keycap,  "e\xCC\x81", family, tamilNi, "1",   keycap,
                          germany, italy,   hangulHan, tamilNi, family,      family, "W",     france};
  const std::string text = joined(clusters);
  const double whole = CTLineCreate(tenPoint(text)).width;
  for (double width = 10; width < whole; width += 2.5)
    for (const auto truncation : {CTLineTruncation::start, CTLineTruncation::end, CTLineTruncation::middle}) {
      const std::string shown = truncated(text, width, truncation);
      const size_t cut = shown.find(dots);
      ASSERT_NE(cut, std::string::npos);
      EXPECT_TRUE(isWholeBeginning(shown.substr(0, cut), clusters)) << shown << " at " << width;
      EXPECT_TRUE(isWholeEnding(shown.substr(cut + 3), clusters)) << shown << " at " << width;
    }
}

TEST_F(TextCuttingTest, ALineEndsBetweenCharactersWhereNoWordEnds) {
  for (const NSLineBreakMode mode : {NSLineBreakMode::charWrapping, NSLineBreakMode::wordWrapping}) {
    EXPECT_EQ(lines(joined({germany, france, italy}), 25, mode), (Texts{joined({germany, france}), italy}));
    EXPECT_EQ(lines(joined({"ab", keycap, keycap}), 35, mode), (Texts{joined({"ab", keycap}), keycap}));
    EXPECT_EQ(lines(joined({hangulHan, hangulHan}), 25, mode), (Texts{hangulHan, hangulHan}));
  }
}

TEST_F(TextCuttingTest, ACharacterWiderThanTheLineStandsAlone) {
  EXPECT_EQ(lines(joined({family, germany}), 7, NSLineBreakMode::charWrapping), (Texts{family, germany}));
}

TEST_F(TextCuttingTest, ASpaceWithAMarkDoesNotHangOverTheEdge) {
  // Two letters are 10 wide; the space after them, 2.5, goes to the next line with its accent.
  EXPECT_EQ(lines("ab \xCC\x81", 10, NSLineBreakMode::charWrapping), (Texts{"ab", " \xCC\x81"}));
  EXPECT_EQ(lines("ab c", 10, NSLineBreakMode::charWrapping), (Texts{"ab ", "c"}));
}

TEST_F(TextCuttingTest, AHundredThousandFlagsAreCutWithoutLookingAtAllOfThemForEach) {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += germany;
  EXPECT_EQ(truncated(text, 45, CTLineTruncation::middle), joined({germany, germany, dots, germany}));
  EXPECT_EQ(CTFittingPrefixEnd(tenPoint(text), 0, text.size(), 1e9), text.size());
  EXPECT_LT(device_.measurements, 200);
}

}  // namespace
}  // namespace zelkon
