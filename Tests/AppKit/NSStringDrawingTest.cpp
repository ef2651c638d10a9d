#include <gtest/gtest.h>

#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSStringDrawing.h"
#include "CoreGraphics/DisplayList.h"
#include "Tests/CoreText/FixedAdvanceDevice.h"

namespace zelkon {
namespace {

// Letters are half the size wide, spaces a quarter.
NSAttributedString lucida(std::string text, double size, NSTextAlignment alignment = NSTextAlignment::natural) {
  return NSAttributedString(std::move(text), {NSFontWithName("Lucida Grande", size), kCGColorWhite(),
                                              NSParagraphStyle{alignment, NSLineBreakMode::wordWrapping}});
}

class NSStringDrawingTest : public testing::Test {
 protected:
  // The runs that drawing in the rectangle gives, at their place in the port's own space.
  std::vector<CGTextRun> drawn(const NSAttributedString& text, CGRect rect, bool flipped = false) {
    RecordingContext port;
    NSGraphicsContext::setCurrentContext(NSGraphicsContext::graphicsContextWithGraphicsPort(&port, flipped));
    NSDrawInRect(text, rect);
    NSGraphicsContext::setCurrentContext(nullptr);
    list_ = port.snapshot();
    std::vector<CGTextRun> runs;
    CGAffineTransform transform;
    for (const DisplayList::Command& command : list_->commands()) {
      if (const auto* concat = std::get_if<DisplayList::Concat>(&command))
        transform = CGAffineTransformConcat(concat->transform, transform);
      if (const auto* shown = std::get_if<DisplayList::Text>(&command)) {
        runs.push_back(shown->run);
        runs.back().origin = CGPointApplyAffineTransform(shown->run.origin, transform);
      }
    }
    return runs;
  }
  template <typename Command>
  size_t count() const {
    size_t n = 0;
    for (const DisplayList::Command& command : list_->commands()) n += std::holds_alternative<Command>(command);
    return n;
  }

  FixedAdvanceDevice device_;
  std::shared_ptr<const DisplayList> list_;
};

TEST_F(NSStringDrawingTest, BoundingRectsStandOnTheBaseline) {
  EXPECT_EQ(NSBoundingRectWithSize(lucida("abc", 12), {100, 100}), CGRectMake(0, -3, 18, 15));
  EXPECT_EQ(NSBoundingRectWithSize(lucida("abc", 9), {100, 100}), CGRectMake(0, -2, 13.5, 11));
}

TEST_F(NSStringDrawingTest, BoundingRectsKnowNeitherLimitNorAlignment) {
  EXPECT_EQ(NSBoundingRectWithSize(lucida("abc abc", 12, NSTextAlignment::center), {1, 1}), CGRectMake(0, -3, 39, 15));
  EXPECT_EQ(NSBoundingRectWithSize(NSAttributedString(), {100, 100}), CGRectZero);
}

TEST_F(NSStringDrawingTest, TheTopOfTheFirstLineIsAtTheTopOfTheRectangle) {
  const auto twelve = drawn(lucida("abc", 12), {{7, 34}, {60, 15}});
  ASSERT_EQ(twelve.size(), 1u);
  EXPECT_EQ(twelve[0].origin, (CGPoint{7, 37}));
  EXPECT_EQ(twelve[0].size, 12);
  const auto nine = drawn(lucida("abc", 9), {{20, 50}, {60, 11}});
  ASSERT_EQ(nine.size(), 1u);
  EXPECT_EQ(nine[0].origin, (CGPoint{20, 52}));
}

TEST_F(NSStringDrawingTest, FlippedContextsStartAtTheSmallestY) {
  const auto runs = drawn(lucida("abc", 12), {{7, 34}, {60, 40}}, true);
  ASSERT_EQ(runs.size(), 1u);
  EXPECT_DOUBLE_EQ(runs[0].origin.x, 7);
  EXPECT_DOUBLE_EQ(runs[0].origin.y, 34 + 12);
}

TEST_F(NSStringDrawingTest, AlignmentKeepsFractions) {
  EXPECT_DOUBLE_EQ(drawn(lucida("abc", 9, NSTextAlignment::center), {{10, 0}, {60, 11}})[0].origin.x, 33.25);
  EXPECT_DOUBLE_EQ(drawn(lucida("abc", 9, NSTextAlignment::right), {{10, 0}, {60, 11}})[0].origin.x, 56.5);
  EXPECT_DOUBLE_EQ(drawn(lucida("abc", 9, NSTextAlignment::left), {{10, 0}, {60, 11}})[0].origin.x, 10);
}

TEST_F(NSStringDrawingTest, WrapsAtWordsAndBreaksLongOnes) {
  const auto words = drawn(lucida("aaa bbb", 12), {{0, 0}, {20, 30}});
  ASSERT_EQ(words.size(), 2u);
  EXPECT_DOUBLE_EQ(words[0].origin.y, 18);
  EXPECT_DOUBLE_EQ(words[1].origin.y, 3);
  EXPECT_EQ(words[1].text, "bbb");
  const auto pieces = drawn(lucida("abcdef", 12), {{0, 0}, {20, 30}});
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_EQ(pieces[0].text, "abc");
}

TEST_F(NSStringDrawingTest, DrawsCutLinesButNoneBelowTheRectangle) {
  EXPECT_EQ(drawn(lucida("a\nb\nc", 12), {{0, 0}, {20, 20}}).size(), 2u);
  EXPECT_EQ(drawn(lucida("a\nb\nc", 12), {{0, 0}, {20, 15}}).size(), 1u);
  const auto low = drawn(lucida("a", 12), {{0, 0}, {20, 10}});
  ASSERT_EQ(low.size(), 1u);
  EXPECT_DOUBLE_EQ(low[0].origin.y, -2);
}

TEST_F(NSStringDrawingTest, ClipsToTheRectangleAndLeavesTheStateAsItWas) {
  drawn(lucida("abc", 12), {{7, 34}, {60, 15}});
  EXPECT_EQ(count<DisplayList::Clip>(), 1u);
  EXPECT_EQ(count<DisplayList::Save>(), count<DisplayList::Restore>());
}

TEST_F(NSStringDrawingTest, NothingWithoutContextTextOrRoom) {
  NSDrawInRect(lucida("abc", 12), {{0, 0}, {100, 100}});
  EXPECT_TRUE(drawn(lucida("abc", 12), {{0, 0}, {0, 15}}).empty());
  EXPECT_TRUE(drawn(lucida("abc", 12), {{0, 0}, {60, 0}}).empty());
  EXPECT_TRUE(drawn(NSAttributedString(), {{0, 0}, {60, 15}}).empty());
  EXPECT_TRUE(list_->isEmpty());
}

}  // namespace
}  // namespace zelkon
