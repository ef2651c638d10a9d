#include <gtest/gtest.h>

#include "CoreGraphics/DisplayList.h"
#include "CoreText/CTLine.h"
#include "Tests/CoreText/FixedAdvanceDevice.h"

namespace zelkon {
namespace {

constexpr const char* dots = "\xE2\x80\xA6";

// 10 points: letters 5 wide, spaces 2.5, the ellipsis 10.
NSAttributedString tenPoint(std::string text) {
  return NSAttributedString(std::move(text), {CTFont(FontFaceHelvetica(), 10), nullptr, {}});
}

class CTLineTest : public testing::Test {
 protected:
  FixedAdvanceDevice device_;
};

TEST_F(CTLineTest, TypographicBoundsAreUnrounded) {
  const CTLine line = CTLineCreate(tenPoint("abc  "));
  EXPECT_DOUBLE_EQ(line.width, 20);
  EXPECT_DOUBLE_EQ(line.trailingWhitespace, 5);
  EXPECT_NEAR(line.ascent, 7.700, 0.0005);
  EXPECT_NEAR(line.descent, 2.300, 0.0005);
  EXPECT_EQ(line.leading, 0);
}

TEST_F(CTLineTest, SeveralFontsTakeTheGreatestMetricsAndStandSideBySide) {
  const NSAttributedString text("ab", {{0, 1, {CTFont(FontFaceHelvetica(), 10), kCGColorWhite(), {}}},
                                       {1, 2, {CTFont(FontFaceLucidaGrande(), 12), nullptr, {}}}});
  const CTLine line = CTLineCreate(text);
  ASSERT_EQ(line.pieces.size(), 2u);
  EXPECT_DOUBLE_EQ(line.pieces[1].x, 5);
  EXPECT_DOUBLE_EQ(line.width, 11);
  EXPECT_NEAR(line.ascent, 11.602, 0.0005);
  EXPECT_EQ(line.pieces[0].color, kCGColorWhite());
  EXPECT_EQ(line.pieces[1].color, nullptr);
}

TEST_F(CTLineTest, LineBreaksBecomeSpaces) {
  EXPECT_EQ(CTLineCreate(tenPoint("a\nb\r\nc\xE2\x80\xA9"
                                  "d\te"))
                .text(),
            "a b c d e");
}

TEST_F(CTLineTest, PitchHasAnExtraFifthForHelveticaOnly) {
  const auto pitch = [](FontFaceRef face, double size) {
    return CTLinePitch(CTLineCreate(NSAttributedString("x", {CTFont(std::move(face), size), nullptr, {}})));
  };
  EXPECT_EQ(pitch(FontFaceHelvetica(), 18), 22);
  EXPECT_EQ(pitch(FontFaceHelvetica(), 12), 14);
  EXPECT_EQ(pitch(FontFaceHelvetica(), 96), 115);
  EXPECT_EQ(pitch(FontFaceLucidaGrande(), 11), 13);
  EXPECT_EQ(pitch(FontFaceLucidaGrandeBold(), 11), 13);
  EXPECT_EQ(pitch(FontFaceLucidaGrande(), 12), 15);
}

TEST_F(CTLineTest, ALineThatFitsComesBackWhole) {
  for (const auto truncation : {CTLineTruncation::start, CTLineTruncation::end, CTLineTruncation::middle}) {
    const CTLine line = CTLineCreateTruncated(tenPoint("abcdefgh"), 40, truncation);
    EXPECT_EQ(line.text(), "abcdefgh");
    EXPECT_FALSE(line.isTruncated);
    EXPECT_EQ(line.pieces.size(), 1u);
  }
}

TEST_F(CTLineTest, TruncationTakesOutTheStartTheEndOrTheMiddle) {
  const NSAttributedString text = tenPoint("abcdefghij");  // 50 wide
  const CTLine start = CTLineCreateTruncated(text, 30, CTLineTruncation::start);
  EXPECT_EQ(start.text(), std::string(dots) + "ghij");
  EXPECT_EQ(start.pieces.size(), 2u);
  EXPECT_TRUE(start.isTruncated);
  EXPECT_DOUBLE_EQ(start.width, 30);
  const CTLine end = CTLineCreateTruncated(text, 30, CTLineTruncation::end);
  EXPECT_EQ(end.text(), std::string("abcd") + dots);
  EXPECT_EQ(end.pieces.size(), 2u);
  const CTLine middle = CTLineCreateTruncated(text, 30, CTLineTruncation::middle);
  EXPECT_EQ(middle.text(), std::string("ab") + dots + "ij");
  EXPECT_EQ(middle.pieces.size(), 3u);
  EXPECT_DOUBLE_EQ(middle.pieces[1].x, 10);
  EXPECT_DOUBLE_EQ(middle.pieces[2].x, 20);
}

TEST_F(CTLineTest, TruncatedLinesAreNeverWiderThanAskedAndHeadAndTailAreAboutEqual) {
  const NSAttributedString text = tenPoint("WaWbcd efWWgh WijWklm WnopW");
  for (double width = 10; width < CTLineCreate(text).width; width += 0.7)
    for (const auto truncation : {CTLineTruncation::start, CTLineTruncation::end, CTLineTruncation::middle}) {
      const CTLine line = CTLineCreateTruncated(text, width, truncation);
      ASSERT_LE(line.width, width);
      ASSERT_GT(line.width, width - 7.5);  // one more character would not fit
      const std::string shown = line.text();
      ASSERT_NE(shown.find(dots), std::string::npos);
      if (truncation != CTLineTruncation::middle) continue;
      const double head = CTTextAdvance(CTFont(FontFaceHelvetica(), 10), shown.substr(0, shown.find(dots)));
      const double tail = CTTextAdvance(CTFont(FontFaceHelvetica(), 10), shown.substr(shown.find(dots) + 3));
      ASSERT_LE(std::abs(head - tail), 7.5 + 1e-9) << shown;
    }
}

TEST_F(CTLineTest, AsWideAsTheEllipsisItStandsAloneAndBelowNothingIsLeft) {
  for (const auto truncation : {CTLineTruncation::start, CTLineTruncation::end, CTLineTruncation::middle}) {
    EXPECT_EQ(CTLineCreateTruncated(tenPoint("abcdef"), 10, truncation).text(), dots);
    EXPECT_TRUE(CTLineCreateTruncated(tenPoint("abcdef"), 9.9, truncation).pieces.empty());
    EXPECT_EQ(CTLineCreateTruncated(tenPoint("abcdef"), 0, truncation).width, 0);
    EXPECT_TRUE(CTLineCreateTruncated(tenPoint("abcdef"), -5, truncation).pieces.empty());
  }
}

TEST_F(CTLineTest, TruncationDoesNotTearCharacters) {
  // Each of the five is "e" with a combining accent, 10 wide on this device.
  const std::string accented = "e\xCC\x81";
  const NSAttributedString text = tenPoint(accented + accented + accented + accented + accented);
  for (double width = 10; width < 50; width += 2.5) {
    const std::string shown = CTLineCreateTruncated(text, width, CTLineTruncation::middle).text();
    const size_t cut = shown.find(dots);
    ASSERT_NE(cut, std::string::npos);
    EXPECT_EQ(cut % 3, 0u);
    EXPECT_EQ((shown.size() - cut) % 3, 0u);
    if (cut + 3 < shown.size()) {
      EXPECT_EQ(shown[cut + 3], 'e');
    }
  }
}

TEST_F(CTLineTest, DrawsEachPieceInItsColourAndKeepsTheContextsOwn) {
  const NSAttributedString text("ab", {{0, 1, {CTFont(FontFaceHelvetica(), 10), kCGColorWhite(), {}}},
                                       {1, 2, {CTFont(FontFaceHelvetica(), 10), nullptr, {}}}});
  RecordingContext context;
  context.setFillColor({0.25, 0.5, 0.75, 1});
  CTLineDraw(CTLineCreate(text), context, {3, 7});
  EXPECT_EQ(context.fillColor(), (RGBA{0.25, 0.5, 0.75, 1}));
  std::vector<DisplayList::Text> shown;
  const auto list = context.snapshot();
  for (const DisplayList::Command& command : list->commands())
    if (const auto* drawn = std::get_if<DisplayList::Text>(&command)) shown.push_back(*drawn);
  ASSERT_EQ(shown.size(), 2u);
  EXPECT_EQ(shown[0].run.text, "a");
  EXPECT_EQ(shown[0].color, (RGBA{1, 1, 1, 1}));
  EXPECT_EQ(shown[0].run.origin, (CGPoint{3, 7}));
  EXPECT_EQ(shown[1].color, (RGBA{0, 0, 0, 1}));
  EXPECT_EQ(shown[1].run.origin, (CGPoint{8, 7}));
}

TEST_F(CTLineTest, AMillionCharactersAreCutWithoutMeasuringThemAll) {
  const NSAttributedString text = tenPoint(std::string(1000000, 'a'));
  EXPECT_EQ(CTLineCreateTruncated(text, 40, CTLineTruncation::middle).text(), std::string("aaa") + dots + "aaa");
  EXPECT_LT(device_.measurements, 100);
}

}  // namespace
}  // namespace zelkon
