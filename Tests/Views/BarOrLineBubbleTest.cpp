// The picture of the tooltip bubble: its outline, filling and edge, and the text in it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "QuartzCore/CATextLayer.h"
#include "Support/ChartHost.h"

namespace zelkon {
namespace {

struct Bubble : ChartHost {
  // What is painted for a bubble of those bounds.
  Drawn painted(CGRect bounds) const {
    const CALayerRef bubble = CALayer::layer();
    bubble->setBounds(bounds);
    RecordingContext context;
    chart().drawLayer(*bubble, context);
    return Drawn(*context.snapshot());
  }
  // The runs of text in a bubble.
  std::vector<CGTextRun> written(const std::string& value, const std::string& header) const {
    const auto text =
        std::dynamic_pointer_cast<CATextLayer>(chart()._createHoverLayerWithText(value, header)->sublayers().back());
    RecordingContext context;
    text->drawInContext(context);
    return Drawn(*context.snapshot()).texts;
  }
};

// Where each piece of the outline ends; the closing piece is left out.
std::vector<CGPoint> ends(const CGPath& path) {
  std::vector<CGPoint> points;
  for (const CGPathElement& element : path.elements())
    if (element.type != CGPathElement::Type::close)
      points.push_back(element.points[element.type == CGPathElement::Type::curve ? 2 : 0]);
  return points;
}
void expectEnds(const CGPath& path, const std::vector<CGPoint>& expected) {
  const std::vector<CGPoint> points = ends(path);
  ASSERT_EQ(points.size(), expected.size());
  for (size_t i = 0; i < points.size(); ++i) {
    EXPECT_NEAR(points[i].x, expected[i].x, 1e-9) << i;
    EXPECT_NEAR(points[i].y, expected[i].y, 1e-9) << i;
  }
}

constexpr CGRect kOneLine = CGRectMake(-8, -10, 58, 38);

TEST(TooltipDrawing, TheOutlineIsARoundedBoxWithAPointerAtItsBottomCentre) {
  const Bubble host;
  const Drawn drawn = host.painted(kOneLine);
  // The bounds less 4 points on each side are (-4, -6, 50, 30); the box stands 6 points above their bottom.
  const std::vector<CGPoint> outline{{-4, 12}, {-4, 5},  {1, 0},   {15, 0}, {21, -6}, {27, 0}, {41, 0},
                                     {46, 5},  {46, 19}, {41, 24}, {1, 24}, {-4, 19}, {-4, 12}};
  ASSERT_EQ(drawn.clips.size(), 1u);
  EXPECT_TRUE(drawn.clips[0].evenOdd);
  expectEnds(drawn.clips[0].path, outline);
  ASSERT_EQ(drawn.strokes.size(), 1u);
  expectEnds(drawn.strokes[0].path, outline);
  EXPECT_EQ(drawn.strokes[0].path.elements().back().type, CGPathElement::Type::close);
}

TEST(TooltipDrawing, TheCornersOfASmallBubbleAreRoundedByHalfItsWidthOrHeight) {
  const Bubble host;
  const std::vector<CGPoint> narrow = ends(host.painted(CGRectMake(-8, -10, 16, 25)).clips.at(0).path);
  EXPECT_NEAR(narrow[1].y, 4, 1e-9);  // 8 by 17: begins 4 above the corner at (-4, 0)
  const std::vector<CGPoint> low = ends(host.painted(CGRectMake(0, 0, 58, 16)).clips.at(0).path);
  EXPECT_NEAR(low[1].y, 14, 1e-9);  // 50 by 8: from 4 above the corner at (4, 10) to 4 beside it
  EXPECT_NEAR(low[2].x, 8, 1e-9);
}

TEST(TooltipDrawing, FadesFromGreyToWhiteOverItsWholeHeight) {
  const Bubble host;
  const Drawn drawn = host.painted(kOneLine);
  ASSERT_EQ(drawn.gradients.size(), 1u);
  EXPECT_EQ(drawn.gradients[0].placement, (CGGradientPlacement{{0, 0}, {0, 38}, 0, 3}));
  EXPECT_NEAR(drawn.gradients[0].gradient->colorAt(0).red, 0.9, 1e-9);
  EXPECT_NEAR(drawn.gradients[0].gradient->colorAt(0.15).red, 0.95, 1e-9);
  EXPECT_NEAR(drawn.gradients[0].gradient->colorAt(0.3).red, 1, 1e-9);
  EXPECT_NEAR(drawn.gradients[0].gradient->colorAt(1).red, 1, 1e-9);
}

TEST(TooltipDrawing, CastsOneShadowAndHasAThinGreyEdge) {
  const Bubble host;
  const Drawn drawn = host.painted(kOneLine);
  ASSERT_EQ(drawn.groups.size(), 1u);
  EXPECT_EQ(*drawn.groups[0].effects.shadow, (CGShadow{{2, -2}, 0.5, {0, 0, 0, 1.0 / 3}}));
  EXPECT_EQ(drawn.strokes[0].color, (RGBA{0.3, 0.3, 0.3, 1}));
  EXPECT_EQ(drawn.strokes[0].style.width, 0.5);
}

// Bold 11 points: 6.6 a character, first baseline 10.635 below the top, lines 13 apart.
TEST(TooltipDrawing, BothLinesAreCentred) {
  const Bubble host;
  const std::vector<CGTextRun> runs = host.written("$1234567", "May");
  ASSERT_EQ(runs.size(), 2u);
  // A text box of 53 by 31 for lines of 19.8 and 52.8.
  EXPECT_EQ(runs[0].text, "May");
  EXPECT_NEAR(runs[0].origin.x, (53 - 19.8) / 2, 1e-9);
  EXPECT_NEAR(runs[0].origin.y, 31 - 10.635, 0.001);
  EXPECT_EQ(runs[1].text, "$1234567");
  EXPECT_NEAR(runs[1].origin.x, (53 - 52.8) / 2, 1e-9);
  EXPECT_NEAR(runs[1].origin.y, 31 - 10.635 - 13, 0.001);
}

TEST(TooltipDrawing, AValueBeyondItsWidthWrapsWhole) {
  const Bubble host;
  std::string all;
  for (const CGTextRun& run : host.written("AAAAAAAA BBBBBBBB CCCCCCCC", "May")) all += run.text + "/";
  EXPECT_EQ(all, "May/AAAAAAAA BBBBBBBB /CCCCCCCC/");
}

TEST(TooltipDrawing, OneBeyondItsHeightIsCutInTheMiddleOfTheLastLine) {
  const Bubble host;
  std::string words;
  for (int i = 0; i < 60; ++i) words += "word ";
  const std::vector<CGTextRun> runs = host.written(words + "end", "Header");
  ASSERT_GE(runs.size(), 3u);
  EXPECT_EQ(runs.front().text, "Header");
  EXPECT_EQ(runs[runs.size() - 2].text, "\xE2\x80\xA6");
  EXPECT_EQ(runs[runs.size() - 3].text.substr(0, 4), "word");
  const std::string tail = runs.back().text;
  EXPECT_EQ(tail.substr(tail.size() - 3), "end");
}

}  // namespace
}  // namespace zelkon
