#include "Cairo/CairoFixture.h"

namespace zelkon {
namespace {

class CairoTextRuns : public CairoFixture {
 protected:
  double advance(const FontFaceRef& face, const char* text) { return device.advanceOfText(*face, text); }
  // The first and the last column of the bitmap with ink.
  std::pair<int, int> inkColumns() {
    context->flush();
    const std::vector<uint8_t> bytes = device.readPixels(*surface);
    int first = -1, last = -1;
    for (int x = 0; x < surface->pixelWidth(); ++x)
      for (int y = 0; y < surface->pixelHeight(); ++y)
        if (bytes[static_cast<size_t>(y * surface->pixelWidth() + x) * 4 + 3] > 0) {
          if (first < 0) first = x;
          last = x;
        }
    return {first, last};
  }
};

TEST_F(CairoTextRuns, DigitsAndSpacesHaveTheWidthsOfTheNamedFaces) {
  // Lucida Grande: 0.633 (its stand-in 0.636 * 0.971 = 0.6177); half of that for a space.
  EXPECT_NEAR(advance(FontFaceLucidaGrande(), "0"), 0.625, 0.012);
  EXPECT_NEAR(advance(FontFaceLucidaGrande(), " "), 0.3125, 0.006);
  EXPECT_NEAR(advance(FontFaceLucidaGrandeBold(), "0"), 0.6366, 0.012);
  EXPECT_NEAR(advance(FontFaceHelvetica(), "0"), 0.556, 0.001);
  EXPECT_NEAR(advance(FontFaceHelvetica(), " "), 0.278, 0.001);
}

TEST_F(CairoTextRuns, WidthsAddUpWithoutRounding) {
  const double one = advance(FontFaceHelvetica(), "0");
  EXPECT_NEAR(advance(FontFaceHelvetica(), "0000000000"), 10 * one, 1e-4);
  EXPECT_NEAR(advance(FontFaceHelvetica(), "00  "), 2 * one + 2 * advance(FontFaceHelvetica(), " "), 1e-4);
  EXPECT_EQ(advance(FontFaceHelvetica(), ""), 0);
}

TEST_F(CairoTextRuns, WidthsDoNotDependOnWhatWasMeasuredBefore) {
  // A wrapped present: where no font has it, a box with its number stands for it.
  constexpr const char* text = "a \xF0\x9F\x8E\x81";
  const FontFaceRef faces[] = {FontFaceLucidaGrande(), FontFaceLucidaGrandeBold(), FontFaceHelvetica()};
  for (const FontFaceRef& earlier : faces) {
    CairoDevice shared;
    shared.advanceOfText(*earlier, text);
    for (const FontFaceRef& face : faces) {
      CairoDevice fresh;
      EXPECT_EQ(shared.advanceOfText(*face, text), fresh.advanceOfText(*face, text))
          << face->postScriptName << " after " << earlier->postScriptName;
    }
  }
}

TEST_F(CairoTextRuns, AWidthAskedForAgainIsTheSame) {
  const double first = advance(FontFaceLucidaGrande(), "Groceries & Household");
  EXPECT_EQ(advance(FontFaceLucidaGrande(), "Groceries & Household"), first);
  EXPECT_NE(advance(FontFaceLucidaGrandeBold(), "Groceries & Household"), first);
}

TEST_F(CairoTextRuns, ScriptsTheFaceLacksStillHaveWidth) {
  EXPECT_GT(advance(FontFaceHelvetica(), "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d"), 0.5);
  EXPECT_GT(advance(FontFaceHelvetica(), "\xe6\x9c\x88"), 0.2);
}

TEST_F(CairoTextRuns, ArabicIsShapedByContext) {
  const double joined = advance(FontFaceLucidaGrande(), "\xd8\xa8\xd8\xa8\xd8\xa8");
  EXPECT_LT(joined, 3 * advance(FontFaceLucidaGrande(), "\xd8\xa8") - 0.1);
}

TEST_F(CairoTextRuns, TextThatIsNotUTF8IsReplacedNotRefused) {
  EXPECT_GT(advance(FontFaceHelvetica(),
                    "a\xff\xfe"
                    "b"),
            2 * advance(FontFaceHelvetica(), "a"));
}

TEST_F(CairoTextRuns, BaselinesOfUprightTextStandOnRowsOfPixels) {
  const auto drawnAt = [&](CGPoint origin, double scale, double angle) {
    start(60, 40, scale);
    context->concatCTM({std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0});
    context->showTextRun({FontFaceLucidaGrandeBold(), 11, "Hxz", origin});
    context->flush();
    return device.readPixels(*surface);
  };
  // The nearest row, which lies half a point on at scale 2; a tie goes to the lower one.
  EXPECT_EQ(drawnAt({5, 10.365}, 1, 0), drawnAt({5, 10}, 1, 0));
  EXPECT_EQ(drawnAt({5, 10.5}, 1, 0), drawnAt({5, 10}, 1, 0));
  EXPECT_EQ(drawnAt({5, 9.6}, 1, 0), drawnAt({5, 10}, 1, 0));
  EXPECT_EQ(drawnAt({5, 10.365}, 2, 0), drawnAt({5, 10.5}, 2, 0));
  EXPECT_NE(drawnAt({5, 10.5}, 2, 0), drawnAt({5, 10}, 2, 0));
  // Places along the line and those of turned text are kept.
  EXPECT_NE(drawnAt({5.365, 10}, 1, 0), drawnAt({5, 10}, 1, 0));
  EXPECT_NE(drawnAt({5, 10.365}, 1, 0.3), drawnAt({5, 10}, 1, 0.3));
}

TEST_F(CairoTextRuns, InkStartsAtTheOriginAndEndsWithTheAdvance) {
  start(200, 40);
  context->showTextRun({FontFaceLucidaGrande(), 20, "HHHHH", CGPointMake(30, 10)});
  const double end = 30 + 20 * advance(FontFaceLucidaGrande(), "HHHHH");
  const auto [first, last] = inkColumns();
  EXPECT_GE(first, 30);
  EXPECT_LE(first, 33);
  EXPECT_LE(last, end);
  EXPECT_GE(last, end - 4);
}

TEST_F(CairoTextRuns, LettersStandOnTheBaseline) {
  start(40, 40);
  context->showTextRun({FontFaceHelvetica(), 20, "H", CGPointMake(5, 10)});
  int above = 0, below = 0;
  for (int x = 0; x < 40; ++x) {
    above += pixel(x, 40 - 12).alpha;
    below += pixel(x, 40 - 10).alpha + pixel(x, 40 - 9).alpha;
  }
  EXPECT_GT(above, 255);
  EXPECT_EQ(below, 0);
}

TEST_F(CairoTextRuns, PositionsBetweenPixelsAreKept) {
  start(40, 40);
  context->showTextRun({FontFaceHelvetica(), 20, "l", CGPointMake(5, 10)});
  const auto whole = device.readPixels(*surface);
  start(40, 40);
  context->showTextRun({FontFaceHelvetica(), 20, "l", CGPointMake(5.5, 10)});
  EXPECT_NE(device.readPixels(*surface), whole);
}

TEST_F(CairoTextRuns, SizesBeyondReasonDoNoHarm) {
  start(40, 40);
  for (double size : {1e-7, 1e7, 1e300}) context->showTextRun({FontFaceHelvetica(), size, "l", CGPointMake(5, 10)});
  context->fillRect(CGRectMake(0, 0, 40, 40));
  EXPECT_EQ(pixel(1, 1).alpha, 255);
}

TEST_F(CairoTextRuns, SmallTextUnderAMagnifyingTransformIsAsLargeAsText) {
  start(40, 40);
  context->showTextRun({FontFaceHelvetica(), 20, "H", CGPointMake(5, 10)});
  const auto [first, last] = inkColumns();
  start(40, 40);
  context->scaleCTM(100, 100);
  context->showTextRun({FontFaceHelvetica(), 0.2, "H", CGPointMake(0.05, 0.1)});
  EXPECT_EQ(inkColumns(), std::make_pair(first, last));
}

TEST_F(CairoTextRuns, TheFillColourIsUsed) {
  start(40, 40);
  context->setFillColor({0, 0.5, 0, 1});
  context->showTextRun({FontFaceHelvetica(), 30, "\xe2\x96\xa0", CGPointMake(5, 10)});
  bool found = false;
  for (int x = 0; x < 40; ++x)
    for (int y = 10; y < 30; y += 5) found = found || pixel(x, y) == Pixel{0, 128, 0, 255};
  EXPECT_TRUE(found);
}

}  // namespace
}  // namespace zelkon
