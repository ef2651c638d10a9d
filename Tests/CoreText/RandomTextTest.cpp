#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "CoreText/CTFramesetter.h"
#include "CoreText/CTTypesetter.h"
#include "CoreText/UTF8.h"
#include "Tests/CoreText/FixedAdvanceDevice.h"

namespace zelkon {
namespace {

// Any bytes at all, with a liking for what layout looks at.
std::string randomText(std::mt19937& random) {
  static const std::vector<std::string> favourites = {" ",
                                                      "  ",
                                                      "\n",
                                                      "\r",
                                                      "\r\n",
                                                      "-",
                                                      "a",
                                                      "W",
                                                      "word",
                                                      "\t",
                                                      "\xE2\x80\xA8",
                                                      "\xE2\x80\xA9",
                                                      "\xE2\x80\xA6",
                                                      "\xCC\x81",
                                                      "\xE2\x80\x8D",
                                                      "\xE6\x97\xA5",
                                                      "\xE3\x80\x82",
                                                      "\xF0\x9F\x91\xA9",
                                                      "\xC2\xA0",
                                                      std::string(1, '\0')};
  std::string text;
  for (size_t n = random() % 60; n > 0; --n) {
    if (random() % 8 == 0)
      text += static_cast<char>(random() % 256);
    else
      text += favourites[random() % favourites.size()];
  }
  return text;
}

NSAttributedString randomAttributedText(std::mt19937& random) {
  const std::string text = randomText(random);
  std::vector<NSAttributedString::Run> runs;
  for (size_t n = random() % 4; n > 0; --n)
    runs.push_back({random() % 40, random() % 80, {NSBoldSystemFontOfSize(5 + random() % 20), nullptr, {}}});
  return NSAttributedString(text, runs);
}

double randomWidth(std::mt19937& random) {
  constexpr double odd[] = {0, -1, 1e300, std::numeric_limits<double>::infinity(),
                            std::numeric_limits<double>::quiet_NaN()};
  return random() % 6 == 0 ? odd[random() % 5] : (random() % 4000) / 10.0;
}

TEST(RandomText, EveryLineIsWellFormedAndTogetherTheyAreTheText) {
  FixedAdvanceDevice device;
  std::mt19937 random(20101);
  for (int round = 0; round < 3000; ++round) {
    const NSAttributedString text = randomAttributedText(random);
    ASSERT_TRUE(UTF8IsWellFormed(text.string()));
    CTTypesetter typesetter(text, static_cast<NSLineBreakMode>(random() % 6));
    const double width = randomWidth(random);
    size_t offset = 0;
    while (const std::optional<CTLine> line = typesetter.nextLine(width)) {
      ASSERT_TRUE(UTF8IsWellFormed(line->text()));
      ASSERT_GT(line->ascent, 0);
      ASSERT_TRUE(typesetter.offset() > offset || typesetter.atEnd());
      offset = typesetter.offset();
    }
    ASSERT_EQ(offset, text.string().size());
  }
}

TEST(RandomText, TruncationNeverExceedsTheWidth) {
  FixedAdvanceDevice device;
  std::mt19937 random(407);
  for (int round = 0; round < 3000; ++round) {
    const NSAttributedString text = randomAttributedText(random);
    const double width = randomWidth(random);
    const CTLine line = CTLineCreateTruncated(text, width, static_cast<CTLineTruncation>(random() % 3));
    ASSERT_TRUE(UTF8IsWellFormed(line.text()));
    if (!line.pieces.empty()) {
      ASSERT_LE(line.width, width + 1e-6);
    }
  }
}

TEST(RandomText, BoxesAndFramesStayInsideWhatTheyWereGiven) {
  FixedAdvanceDevice device;
  std::mt19937 random(93);
  for (int round = 0; round < 3000; ++round) {
    const NSAttributedString text = randomAttributedText(random);
    const CGSize box{randomWidth(random), randomWidth(random)};
    const NSParagraphStyle style{static_cast<NSTextAlignment>(random() % 5),
                                 static_cast<NSLineBreakMode>(random() % 6)};
    const CGSize suggested = CTFramesetter(text, style).suggestFrameSize(box);
    if (!std::isnan(box.width)) {
      ASSERT_LE(suggested.width, std::max(0.0, box.width));
    }
    ASSERT_FALSE(std::isnan(suggested.height));
    for (const CTFrame::PlacedLine& placed : CTFramesetter(text, style).createFrame({{0, 0}, box}).lines)
      ASSERT_GE(placed.origin.y - placed.line.descent, -1e-6);
    CTTextBoxStyle boxStyle;
    boxStyle.wrapped = random() % 2 == 0;
    if (random() % 2 == 0) boxStyle.truncation = static_cast<CTLineTruncation>(random() % 3);
    const CTFrame frame = CTLayOutTextBox(text, boxStyle, {{0, 0}, box});
    ASSERT_EQ(frame.lines.empty(), text.isEmpty());
  }
}

}  // namespace
}  // namespace zelkon
