#include <gtest/gtest.h>

#include "CoreText/NSAttributedString.h"
#include "Foundation/NSException.h"
#include "Tests/CoreText/FixedAdvanceDevice.h"

namespace zelkon {
namespace {

TextAttributes lucida(double size) { return {NSFontWithName("Lucida Grande", size), nullptr, std::nullopt}; }

TEST(NSAttributedString, LineHeightsAreIntegral) {
  FixedAdvanceDevice device;
  EXPECT_EQ(NSAttributedString("x", lucida(9)).size().height, 11);
  EXPECT_EQ(NSAttributedString("x", lucida(11)).size().height, 13);
  EXPECT_EQ(NSAttributedString("x", lucida(12)).size().height, 15);
  EXPECT_EQ(NSAttributedString("x", lucida(13)).size().height, 16);
  // Without the extra between the lines of text views.
  EXPECT_EQ(NSAttributedString("x", TextAttributes{}).size().height, 12);
  EXPECT_EQ(NSAttributedString("x", {CTFont(FontFaceHelvetica(), 9), nullptr, {}}).size().height, 9);
}

TEST(NSAttributedString, WidthIsTheSumOfAdvancesWithTrailingSpaces) {
  FixedAdvanceDevice device;
  EXPECT_DOUBLE_EQ(NSAttributedString("abc", lucida(9)).size().width, 13.5);
  EXPECT_DOUBLE_EQ(NSAttributedString("abc ", lucida(9)).size().width, 15.75);
}

TEST(NSAttributedString, SeveralLinesTakeTheWidestAndAddTheHeights) {
  FixedAdvanceDevice device;
  const CGSize size = NSAttributedString("ab\nabcd\r\na\rabc\xE2\x80\xA9z", lucida(12)).size();
  EXPECT_DOUBLE_EQ(size.width, 24);
  EXPECT_DOUBLE_EQ(size.height, 75);
}

TEST(NSAttributedString, AnEmptyTextHasNoSizeAndNoAttributes) {
  const NSAttributedString empty("", lucida(12));
  EXPECT_TRUE(empty.isEmpty());
  EXPECT_EQ(empty.size(), (CGSize{0, 0}));
  EXPECT_EQ(empty, NSAttributedString());
  EXPECT_EQ(NSAttributedString("abc", lucida(12)).emptied(), empty);
  try {
    empty.attributesAtStart();
    FAIL() << "reading attributes of an empty text";
  } catch (const NSException& exception) {
    EXPECT_EQ(exception.name(), NSRangeException);
  }
  EXPECT_EQ(empty.paragraphStyle().alignment, NSTextAlignment::natural);
}

TEST(NSAttributedString, MissingParagraphStyleIsNaturalAndWrapsWords) {
  const NSParagraphStyle style = NSAttributedString("a", TextAttributes{}).paragraphStyle();
  EXPECT_EQ(style.alignment, NSTextAlignment::natural);
  EXPECT_EQ(static_cast<int>(style.alignment), 4);
  EXPECT_EQ(style.lineBreakMode, NSLineBreakMode::wordWrapping);
}

TEST(NSAttributedString, TheSizeIsMeasuredOnceForAllCopies) {
  FixedAdvanceDevice device;
  const NSAttributedString label("January", lucida(12));
  const int before = device.measurements;
  for (int i = 0; i < 10000; ++i) {
    const NSAttributedString copy = label;
    ASSERT_DOUBLE_EQ(copy.size().width, 42);
  }
  EXPECT_LE(device.measurements - before, 1);
}

TEST(NSAttributedString, AnotherDeviceChangesTheSize) {
  const NSAttributedString label("abc", lucida(12));
  EXPECT_DOUBLE_EQ(label.size().width, 18);
  FixedAdvanceDevice device(1);
  EXPECT_DOUBLE_EQ(label.size().width, 36);
}

TEST(NSAttributedString, ChangingFontsKeepsTextColourAndStyle) {
  const TextAttributes attributes{NSFontWithName("Lucida Grande", 12), kCGColorWhite(),
                                  NSParagraphStyle{NSTextAlignment::center, NSLineBreakMode::wordWrapping}};
  const NSAttributedString label("abc", attributes);
  const NSAttributedString smaller = label.withFonts([](const CTFont& font) { return font.withSize(11); });
  EXPECT_EQ(&smaller.string(), &label.string());
  EXPECT_EQ(smaller.attributesAtStart().font->pointSize(), 11);
  EXPECT_EQ(smaller.attributesAtStart().color, kCGColorWhite());
  EXPECT_EQ(smaller.paragraphStyle().alignment, NSTextAlignment::center);
  EXPECT_EQ(label.attributesAtStart().font->pointSize(), 12);
  EXPECT_EQ(smaller.withFont(*attributes.font), label);
  EXPECT_FALSE(smaller == label);
}

TEST(NSAttributedString, EqualityLooksAtColoursByValue) {
  const NSAttributedString a("x", {std::nullopt, CGColorCreateGenericGray(0.5, 1), {}});
  EXPECT_EQ(a, NSAttributedString("x", {std::nullopt, CGColorCreateGenericGray(0.5, 1), {}}));
  EXPECT_FALSE(a == NSAttributedString("x", {std::nullopt, CGColorCreateGenericGray(0.4, 1), {}}));
  EXPECT_FALSE(a == NSAttributedString("y", {std::nullopt, CGColorCreateGenericGray(0.5, 1), {}}));
}

TEST(NSAttributedString, MalformedTextIsMended) {
  FixedAdvanceDevice device;
  const NSAttributedString label("a\xFFz", lucida(12));
  EXPECT_EQ(label.string(), "a\xEF\xBF\xBDz");
  EXPECT_DOUBLE_EQ(label.size().width, 18);
}

TEST(NSAttributedString, RunsFollowTheMendedText) {
  const NSAttributedString label("a\xFFz", {{0, 2, lucida(12)}, {2, 3, lucida(9)}});
  ASSERT_EQ(label.runs().size(), 2u);
  EXPECT_EQ(label.runs()[0].end, 4u);
  EXPECT_EQ(label.runs()[1].begin, 4u);
  EXPECT_EQ(label.runs()[1].end, 5u);
}

TEST(NSAttributedString, RunsAreClampedAndGapsFilled) {
  const NSAttributedString label("abcdef", {{1, 3, lucida(9)}, {2, 99, lucida(12)}});
  ASSERT_EQ(label.runs().size(), 3u);
  EXPECT_FALSE(label.runs()[0].attributes.font);
  EXPECT_EQ(label.runs()[2].begin, 3u);
  EXPECT_EQ(label.runs()[2].end, 6u);
}

}  // namespace
}  // namespace zelkon
