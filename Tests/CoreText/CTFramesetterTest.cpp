#include <gtest/gtest.h>

#include "CoreGraphics/DisplayList.h"
#include "CoreText/CTFramesetter.h"
#include "Tests/CoreText/FixedAdvanceDevice.h"

namespace zelkon {
namespace {

constexpr const char* dots = "\xE2\x80\xA6";

NSAttributedString helvetica(std::string text, double size) {
  return NSAttributedString(std::move(text), {CTFont(FontFaceHelvetica(), size), nullptr, {}});
}
NSAttributedString boldSystem11(std::string text) {
  return NSAttributedString(std::move(text), {NSBoldSystemFontOfSize(11), nullptr, {}});
}
std::vector<std::string> texts(const CTFrame& frame) {
  std::vector<std::string> lines;
  for (const CTFrame::PlacedLine& placed : frame.lines) lines.push_back(placed.line.text());
  return lines;
}
using Lines = std::vector<std::string>;

constexpr NSParagraphStyle wrapping{NSTextAlignment::natural, NSLineBreakMode::wordWrapping};
constexpr NSParagraphStyle centredMiddle{NSTextAlignment::center, NSLineBreakMode::truncatingMiddle};

class CTFramesetterTest : public testing::Test {
 protected:
  // 10 points: letters 5 wide, spaces 2.5.
  Lines wrapped(std::string text, double width) {
    return texts(CTFramesetter(helvetica(std::move(text), 10), wrapping).createFrame({{0, 0}, {width, 1000}}));
  }
  FixedAdvanceDevice device_;
};

TEST_F(CTFramesetterTest, BaselinesBeginAnAscentBelowTheTopAndLieOnePitchApart) {
  const CTFrame frame = CTFramesetter(helvetica("a\nb\nc", 18), wrapping).createFrame({{5, 10}, {100, 100}});
  ASSERT_EQ(frame.lines.size(), 3u);
  EXPECT_NEAR(frame.lines[0].origin.y, 100 - 13.860, 0.0005);
  EXPECT_NEAR(frame.lines[0].origin.y - frame.lines[1].origin.y, 22, 1e-9);
  EXPECT_NEAR(frame.lines[1].origin.y - frame.lines[2].origin.y, 22, 1e-9);
}

TEST_F(CTFramesetterTest, LinesWhoseDescentDoesNotFitAreLeftOut) {
  const CTFramesetter framesetter(helvetica("a\nb\nc", 18), wrapping);
  EXPECT_EQ(framesetter.createFrame({{0, 0}, {100, 62}}).lines.size(), 3u);  // 44 + 13.860 + 4.140 = 62
  EXPECT_EQ(framesetter.createFrame({{0, 0}, {100, 61.9}}).lines.size(), 2u);
  EXPECT_EQ(framesetter.createFrame({{0, 0}, {100, 17}}).lines.size(), 0u);
}

TEST_F(CTFramesetterTest, AlignmentDoesNotCountTrailingSpaces) {
  const auto originX = [](NSTextAlignment alignment) {
    return CTFramesetter(helvetica("ab  ", 10), {alignment, NSLineBreakMode::wordWrapping})
        .createFrame({{0, 0}, {50, 20}})
        .lines.at(0)
        .origin.x;
  };
  EXPECT_DOUBLE_EQ(originX(NSTextAlignment::natural), 0);
  EXPECT_DOUBLE_EQ(originX(NSTextAlignment::left), 0);
  EXPECT_DOUBLE_EQ(originX(NSTextAlignment::center), 20);
  EXPECT_DOUBLE_EQ(originX(NSTextAlignment::right), 40);
}

TEST_F(CTFramesetterTest, PieLabelBoxes) {
  const auto heightAndWidth = [](const std::string& label) {
    const CTFrame frame = CTFramesetter(helvetica(label, 12), centredMiddle).createFrame({{0, 0}, {120, 30}});
    double width = 0;
    for (const CTFrame::PlacedLine& placed : frame.lines) width = std::max(width, placed.line.width);
    return CGSize{width, 30 - frame.lines.back().origin.y};
  };
  EXPECT_NEAR(heightAndWidth("Rent").height, 9.240, 0.0005);
  EXPECT_DOUBLE_EQ(heightAndWidth("Rent").width, 24);
  EXPECT_NEAR(heightAndWidth("Rent\nFood").height, 23.240, 0.0005);
  const CGSize truncated = heightAndWidth("A label that is much too long for its box");
  EXPECT_LE(truncated.width, 120);
  EXPECT_NEAR(truncated.height, 9.240, 0.0005);
}

TEST_F(CTFramesetterTest, TooltipBoxes) {
  const double descender = NSBoldSystemFontOfSize(11).descender();
  const auto suggested = [](const std::string& text) {
    return CTFramesetter(boldSystem11(text), centredMiddle).suggestFrameSize({120, 90});
  };
  EXPECT_EQ(suggested("value").height, 13);
  EXPECT_EQ(suggested("header\nvalue").height, 26);
  EXPECT_EQ(suggested("a\nb\nc").height, 39);
  EXPECT_NEAR(suggested("value").height - 2 * descender, 17.641, 0.0005);
  EXPECT_NEAR(suggested("header\nvalue").height - 2 * descender, 30.641, 0.0005);
  EXPECT_DOUBLE_EQ(suggested("header\nvalue").width, 33);
  EXPECT_LE(suggested("header\na value that is certainly wider than its box").width, 120);
  EXPECT_EQ(suggested("header\na value that is certainly wider than its box").height, 26);
  EXPECT_EQ(suggested(""), (CGSize{0, 0}));
  // Six lines of thirteen fit; a seventh would need 78 + 12.955.
  EXPECT_EQ(suggested("a\nb\nc\nd\ne\nf\ng\nh").height, 78);
}

TEST_F(CTFramesetterTest, WordWrappingSuggestsTheWrappedHeight) {
  const CTFramesetter framesetter(boldSystem11("aaaaaaaaaa bbbbbbbbbb cccccccccc"), wrapping);  // words 55 wide
  const CGSize size = framesetter.suggestFrameSize({120, 90});
  EXPECT_EQ(size.height, 26);
  EXPECT_DOUBLE_EQ(size.width, 112.75);  // two words and the space between, not the one that hangs
  EXPECT_EQ(framesetter.suggestFrameSize({120, 20}).height, 13);
}

TEST_F(CTFramesetterTest, ParagraphsEndAtEveryKindOfLineEnd) {
  EXPECT_EQ(wrapped("a\nb\rc\r\nd\xE2\x80\xA9"
                    "e",
                    100),
            (Lines{"a", "b", "c", "d", "e"}));
  EXPECT_EQ(wrapped("a\n\nb", 100), (Lines{"a", "", "b"}));
  EXPECT_EQ(wrapped("a\n", 100), (Lines{"a", ""}));
  EXPECT_EQ(wrapped("", 100), (Lines{}));
}

TEST_F(CTFramesetterTest, EmptyLinesAreAsHighAsTheirNeighbours) {
  const CTFrame frame = CTFramesetter(boldSystem11("header\n"), wrapping).createFrame({{0, 0}, {100, 100}});
  ASSERT_EQ(frame.lines.size(), 2u);
  EXPECT_NEAR(frame.lines[0].origin.y - frame.lines[1].origin.y, 13, 1e-9);
}

TEST_F(CTFramesetterTest, WordsWrapAfterSpacesAndHyphens) {
  EXPECT_EQ(wrapped("aaa bbb ccc", 35), (Lines{"aaa bbb ", "ccc"}));
  EXPECT_EQ(wrapped("aaa bbb   ccc", 33), (Lines{"aaa bbb   ", "ccc"}));  // spaces hang over the edge
  EXPECT_EQ(wrapped("aaa-bbb", 22), (Lines{"aaa-", "bbb"}));
  EXPECT_EQ(wrapped("aaa -500", 20), (Lines{"aaa ", "-500"}));  // a sign stays with its number
  EXPECT_EQ(wrapped("aa bb\xC2\xA0"
                    "cc",
                    35),
            (Lines{"aa ",
                   "bb\xC2\xA0"
                   "cc"}));
}

TEST_F(CTFramesetterTest, WordsWiderThanTheLineBreakBetweenCharacters) {
  EXPECT_EQ(wrapped("abcdefghij", 20), (Lines{"abcd", "efgh", "ij"}));
  EXPECT_EQ(wrapped("a bcdefghij", 20), (Lines{"a ", "bcde", "fghi", "j"}));
  EXPECT_EQ(wrapped("abc", 0), (Lines{"a", "b", "c"}));
  EXPECT_EQ(wrapped("e\xCC\x81"
                    "e\xCC\x81",
                    1),
            (Lines{"e\xCC\x81", "e\xCC\x81"}));
}

TEST_F(CTFramesetterTest, IdeographsBreakAnywhereButBeforeClosingMarks) {
  EXPECT_EQ(wrapped("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", 10), (Lines{"\xE6\x97\xA5\xE6\x9C\xAC", "\xE8\xAA\x9E"}));
  // The full stop goes to the next line only together with the character before it.
  EXPECT_EQ(wrapped("\xE6\x97\xA5\xE6\x9C\xAC\xE3\x80\x82", 10), (Lines{"\xE6\x97\xA5", "\xE6\x9C\xAC\xE3\x80\x82"}));
}

TEST_F(CTFramesetterTest, TruncatingModesGiveOneLineForEachParagraph) {
  const CTFrame frame = CTFramesetter(helvetica("abcdefghij\nabc", 10), centredMiddle).createFrame({{0, 0}, {30, 100}});
  EXPECT_EQ(texts(frame), (Lines{std::string("ab") + dots + "ij", "abc"}));
}

TEST_F(CTFramesetterTest, FramesDrawAtTheirRectangle) {
  RecordingContext context;
  CTFramesetter(helvetica("ab", 10), wrapping).createFrame({{5, 40}, {50, 20}}).draw(context);
  const auto list = context.snapshot();
  const auto* drawn = std::get_if<DisplayList::Text>(&list->commands().back());
  ASSERT_NE(drawn, nullptr);
  EXPECT_DOUBLE_EQ(drawn->run.origin.x, 5);
  EXPECT_NEAR(drawn->run.origin.y, 60 - 7.700, 0.0005);
}

class CTTextBoxTest : public CTFramesetterTest {
 protected:
  CTFrame box(std::string text, bool isWrapped, std::optional<CTLineTruncation> truncation, CGSize size) {
    return CTLayOutTextBox(boldSystem11(std::move(text)), {isWrapped, truncation, NSTextAlignment::center},
                           {{0, 0}, size});
  }
};

TEST_F(CTTextBoxTest, TheFirstLineTouchesTheTop) {
  const CTFrame frame = box("header\nvalue", true, CTLineTruncation::middle, {50, 31});
  ASSERT_EQ(texts(frame), (Lines{"header", "value"}));
  EXPECT_NEAR(frame.lines[0].origin.y, 31 - 10.635, 0.0005);
  EXPECT_NEAR(frame.lines[1].origin.y, 31 - 23.635, 0.0005);
  EXPECT_DOUBLE_EQ(frame.lines[0].origin.x, (50 - 33) / 2.0);
  EXPECT_DOUBLE_EQ(frame.lines[1].origin.x, (50 - 27.5) / 2.0);
}

TEST_F(CTTextBoxTest, TheLastLineThatFitsIsCutWhenThereIsMore) {
  // Letters 5.5 wide, spaces 2.75, the ellipsis 11.
  const std::string text = "aaaa bbbb cccc dddd eeee";
  EXPECT_EQ(texts(box(text, true, CTLineTruncation::middle, {48, 31})),
            (Lines{"aaaa bbbb ", std::string("ccc") + dots + "eee"}));
  EXPECT_EQ(texts(box(text, true, CTLineTruncation::end, {48, 31})),
            (Lines{"aaaa bbbb ", std::string("cccc dd") + dots}));
  EXPECT_EQ(texts(box(text, true, std::nullopt, {48, 31})), (Lines{"aaaa bbbb ", "cccc dddd "}));
}

TEST_F(CTTextBoxTest, UnwrappedParagraphsAreCutEachByItself) {
  EXPECT_EQ(texts(box("aaaaaaaaaa\nbb", false, CTLineTruncation::middle, {33, 40})),
            (Lines{std::string("aa") + dots + "aa", "bb"}));
  EXPECT_EQ(texts(box("aaaaaaaaaa", false, std::nullopt, {33, 40})), (Lines{"aaaaaaaaaa"}));
}

TEST_F(CTTextBoxTest, ABoxALittleLowerThanALineStillShowsIt) {
  const CTFrame frame = CTLayOutTextBox(helvetica("Rent", 12),
                                        {true, CTLineTruncation::middle, NSTextAlignment::center}, {{0, 0}, {24, 10}});
  ASSERT_EQ(texts(frame), (Lines{"Rent"}));
  EXPECT_NEAR(frame.lines[0].origin.y, 10 - 9.240, 0.0005);
  EXPECT_EQ(texts(CTLayOutTextBox(helvetica("Rent\nFood", 12),
                                  {true, CTLineTruncation::middle, NSTextAlignment::center}, {{0, 0}, {24, 24}})),
            (Lines{"Rent", "Food"}));
}

TEST_F(CTTextBoxTest, AHugeTextCostsOnlyWhatIsSeen) {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "word ";
  const CTFrame frame = box(text, true, CTLineTruncation::middle, {120, 90});
  EXPECT_EQ(frame.lines.size(), 7u);
  EXPECT_LE(frame.lines.back().line.width, 120);
  EXPECT_LT(device_.measurements, 1000);
}

}  // namespace
}  // namespace zelkon
