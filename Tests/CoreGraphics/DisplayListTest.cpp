#include <gtest/gtest.h>

#include "CoreGraphics/CommandNames.h"
#include "CoreGraphics/DisplayList.h"

namespace zelkon {
namespace {

using List = DisplayList;

TEST(DisplayList, SnapshotIsNotAlteredByLaterDrawing) {
  RecordingContext context;
  context.fillRect(CGRectMake(0, 0, 1, 1));
  const auto snapshot = context.snapshot();
  context.fillRect(CGRectMake(0, 0, 2, 2));
  EXPECT_EQ(snapshot->commands().size(), 1U);
  EXPECT_EQ(context.snapshot()->commands().size(), 2U);
}

TEST(DisplayList, ReplayRepeatsEveryKindOfCommand) {
  RecordingContext source;
  const auto gradient = std::make_shared<CGGradient>(std::vector<RGBA>{{0, 0, 0, 1}, {1, 1, 1, 1}});
  source.saveGState();
  source.translateCTM(1, 2);
  source.clipToRect(CGRectMake(0, 0, 10, 10));
  source.fillRect(CGRectMake(0, 0, 5, 5));
  source.moveToPoint(0, 0);
  source.addLineToPoint(1, 1);
  source.strokePath();
  source.drawLinearGradient(gradient, {0, 0}, {1, 1}, 0);
  source.drawImage(CGRectMake(0, 0, 1, 1), std::make_shared<CGImage>(std::make_shared<DisplayList>(), 1, 1));
  source.showTextRun({FontFaceHelvetica(), 9, "a", {0, 0}});
  source.clearRect(CGRectMake(0, 0, 1, 1));
  source.restoreGState();
  source.beginTransparencyLayer();
  source.fillRect(CGRectMake(0, 0, 5, 5));
  source.endTransparencyLayer();
  const std::string names = commandNames(source);
  EXPECT_EQ(names, "save concat clip fill stroke gradient image text clear restore begin save fill restore end");
  RecordingContext target;
  target.drawDisplayList(*source.snapshot());
  EXPECT_EQ(commandNames(target), "save " + names + " restore");
}

TEST(DisplayList, ReplayLeavesNoStateBehind) {
  RecordingContext source;
  source.saveGState();
  source.translateCTM(5, 5);
  source.beginTransparencyLayer();
  source.clipToRect(CGRectMake(0, 0, 1, 1));
  RecordingContext target;
  target.setFillColor({1, 0, 0, 1});
  target.drawDisplayList(*source.snapshot());
  EXPECT_EQ(commandNames(target), "save save concat begin save clip restore end restore restore");
  EXPECT_EQ(target.ctm(), CGAffineTransformIdentity);
  EXPECT_EQ(target.fillColor(), (RGBA{1, 0, 0, 1}));
}

TEST(DisplayList, ReplayRestoresNoMoreThanItSaved) {
  RecordingContext source;
  source.fillRect(CGRectMake(0, 0, 1, 1));
  RecordingContext target;
  target.saveGState();
  target.translateCTM(7, 0);
  source.snapshot()->replay(target);
  EXPECT_EQ(target.ctm(), CGAffineTransformMakeTranslation(7, 0));
}

TEST(DisplayList, ShadowsOfTheRecordingFollowTheTransformInForce) {
  RecordingContext source;
  source.scaleCTM(100, 100);  // does not touch the shadow
  source.setShadow({3, 4}, 2);
  source.fillRect(CGRectMake(0, 0, 1, 1));
  RecordingContext target;
  target.translateCTM(50, 50);
  target.scaleCTM(2, -8);
  target.drawDisplayList(*source.snapshot());
  const auto list = target.snapshot();
  const auto& shadow = *commandAt<List::BeginGroup>(*list, 4).effects.shadow;
  EXPECT_EQ(shadow.offset, CGSizeMake(6, -32));
  EXPECT_EQ(shadow.sigma, 4);  // 1 * sqrt(2 * 8)
}

TEST(DisplayList, RecordingsInsideRecordingsMapTheirShadowsOnce) {
  RecordingContext inner;
  inner.setShadow({1, 1}, 2);
  inner.fillRect(CGRectMake(0, 0, 1, 1));
  RecordingContext middle;
  middle.scaleCTM(2, 2);
  middle.drawDisplayList(*inner.snapshot());
  RecordingContext outer;
  outer.scaleCTM(3, 3);
  outer.drawDisplayList(*middle.snapshot());
  const auto list = outer.snapshot();
  for (const List::Command& command : list->commands())
    if (const auto* group = std::get_if<List::BeginGroup>(&command)) {
      EXPECT_EQ(group->effects.shadow->offset, CGSizeMake(6, 6));
      EXPECT_EQ(group->effects.shadow->sigma, 6);
    }
  // The target's own shadows are in its own space again.
  outer.setShadow({1, 1}, 2);
  outer.fillRect(CGRectMake(0, 0, 1, 1));
  const auto after = outer.snapshot();
  const size_t count = after->commands().size();
  EXPECT_EQ(commandAt<List::BeginGroup>(*after, count - 3).effects.shadow->sigma, 1);
}

TEST(DisplayList, ShadowAlphaAndBlendOfTheTargetDoNotApply) {
  RecordingContext source;
  source.fillRect(CGRectMake(0, 0, 1, 1));
  RecordingContext target;
  target.setAlpha(0.5);
  target.setShadow({1, 1}, 2);
  target.drawDisplayList(*source.snapshot());
  EXPECT_EQ(commandNames(target), "save fill restore");
  EXPECT_EQ(commandAt<List::Fill>(*target.snapshot(), 1).color.alpha, 1);
}

TEST(DisplayList, FewPlainCommandsAreCheap) {
  RecordingContext context;
  EXPECT_TRUE(context.snapshot()->isCheapToReplay());
  context.fillRect(CGRectMake(0, 0, 1, 1));
  context.showTextRun({FontFaceHelvetica(), 9, "a", {0, 0}});
  EXPECT_TRUE(context.snapshot()->isCheapToReplay());
  for (int i = 0; i < 1000; ++i) context.fillRect(CGRectMake(0, 0, 1, 1));
  EXPECT_FALSE(context.snapshot()->isCheapToReplay());
}

TEST(DisplayList, GroupsBlendsAndGradientsAreNotCheap) {
  RecordingContext layered, blended, clipped;
  layered.beginTransparencyLayer();
  layered.endTransparencyLayer();
  EXPECT_FALSE(layered.snapshot()->isCheapToReplay());
  blended.setBlendMode(CGBlendMode::overlay);
  blended.fillRect(CGRectMake(0, 0, 1, 1));
  EXPECT_FALSE(blended.snapshot()->isCheapToReplay());
  clipped.clipToRect(CGRectMake(0, 0, 1, 1));
  EXPECT_FALSE(clipped.snapshot()->isCheapToReplay());
}

struct Backdrop {
  std::vector<RGBA> colors{{0, 0, 0, 1}, {1, 1, 1, 1}};
  CGPoint start{0, 0}, end{0, 10};
  unsigned options = 0;
  void draw(CGContext& context) const {
    context.drawLinearGradient(std::make_shared<CGGradient>(colors), start, end, options);
  }
};

bool isOpaque(const Backdrop& backdrop, CGRect rect = CGRectMake(0, 0, 20, 10)) {
  RecordingContext context;
  backdrop.draw(context);
  return context.snapshot()->isOpaqueIn(rect);
}

TEST(DisplayList, AnOpaqueGradientCoversWhatLiesBetweenItsEnds) {
  EXPECT_TRUE(isOpaque({}));
  EXPECT_FALSE(isOpaque({.end = {0, 9}}));
  EXPECT_FALSE(isOpaque({.start = {0, 1}}));
  EXPECT_FALSE(isOpaque({.end = {10, 10}}));
  EXPECT_FALSE(isOpaque({.colors = {{0, 0, 0, 1}, {1, 1, 1, 0.99}}}));
}

TEST(DisplayList, AnOpaqueGradientCoversWhatItsOptionsAdd) {
  constexpr unsigned before = kCGGradientDrawsBeforeStartLocation, after = kCGGradientDrawsAfterEndLocation;
  EXPECT_TRUE(isOpaque({.start = {0, 1}, .options = before}));
  EXPECT_FALSE(isOpaque({.start = {0, 1}, .options = after}));
  EXPECT_TRUE(isOpaque({.end = {0, 9}, .options = after}));
  EXPECT_FALSE(isOpaque({.end = {0, 9}, .options = before}));
  EXPECT_TRUE(isOpaque({.start = {3, 3}, .end = {4, 5}, .options = before | after}));
}

TEST(DisplayList, PlainDrawingOverACoverLeavesItOpaque) {
  const CGRect rect = CGRectMake(0, 0, 20, 10);
  RecordingContext context;
  context.saveGState();
  context.scaleCTM(1, 2);
  Backdrop{.end = {0, 5}}.draw(context);
  context.setFillColor({0, 0, 0, 0.5});
  context.fillRect(rect);
  context.restoreGState();
  context.showTextRun({FontFaceHelvetica(), 9, "a", {0, 0}});
  EXPECT_TRUE(context.snapshot()->isOpaqueIn(rect));
}

TEST(DisplayList, ACoverThatIsClippedFadedOrCutIsNotOpaque) {
  const CGRect rect = CGRectMake(0, 0, 20, 10);
  const auto isOpaqueAfter = [&](auto before, auto after) {
    RecordingContext context;
    before(context);
    Backdrop{}.draw(context);
    after(context);
    return context.snapshot()->isOpaqueIn(rect);
  };
  const auto nothing = [](CGContext&) {};
  EXPECT_TRUE(isOpaqueAfter(nothing, nothing));
  EXPECT_FALSE(isOpaqueAfter([](CGContext& c) { c.clipToRect(CGRectMake(0, 0, 20, 9)); }, nothing));
  EXPECT_FALSE(isOpaqueAfter([](CGContext& c) { c.setAlpha(0.5); }, nothing));
  EXPECT_FALSE(isOpaqueAfter([](CGContext& c) { c.scaleCTM(1, 0.5); }, nothing));
  EXPECT_FALSE(isOpaqueAfter([](CGContext& c) { c.beginTransparencyLayer(); }, nothing));
  EXPECT_FALSE(isOpaqueAfter(nothing, [](CGContext& c) { c.clearRect(CGRectMake(0, 0, 1, 1)); }));
  EXPECT_FALSE(isOpaqueAfter(nothing, [](CGContext& c) {
    c.setBlendMode(CGBlendMode::copy);
    c.fillRect(CGRectMake(0, 0, 1, 1));
  }));
  EXPECT_FALSE(isOpaqueAfter(nothing, [](CGContext& c) {
    c.drawImage(CGRectMake(0, 0, 1, 1), std::make_shared<CGImage>(std::make_shared<DisplayList>(), 1, 1));
  }));
  EXPECT_FALSE(isOpaqueAfter([](CGContext& c) { c.setBlendMode(CGBlendMode::plusLighter); }, nothing));
  EXPECT_FALSE(RecordingContext().snapshot()->isOpaqueIn(rect));
}

TEST(DisplayList, RectangularClipsOverACoverLeaveItOpaque) {
  const CGRect rect = CGRectMake(0, 0, 20, 10);
  const auto isOpaqueWith = [&](auto clip) {
    RecordingContext context;
    context.saveGState();
    context.clipToRect(CGRectMake(1, 1, 2, 2));
    context.restoreGState();
    Backdrop{}.draw(context);
    context.saveGState();
    clip(context);
    context.showTextRun({FontFaceHelvetica(), 9, "a", {0, 0}});
    context.restoreGState();
    return context.snapshot()->isOpaqueIn(rect);
  };
  EXPECT_TRUE(isOpaqueWith([](CGContext& c) { c.clipToRect(CGRectMake(0.3, 0, 20, 9)); }));
  EXPECT_TRUE(isOpaqueWith([](CGContext& c) {
    c.scaleCTM(2, -1);
    c.clipToRect(CGRectMake(0.3, 0, 20, 9));
  }));
  EXPECT_FALSE(isOpaqueWith([](CGContext& c) {
    c.addEllipseInRect(CGRectMake(0, 0, 20, 9));
    c.clip();
  }));
  EXPECT_FALSE(isOpaqueWith([](CGContext& c) {
    c.concatCTM({0.8, 0.6, -0.6, 0.8, 0, 0});
    c.clipToRect(CGRectMake(0, 0, 20, 9));
  }));
  EXPECT_FALSE(isOpaqueWith([](CGContext& c) {
    c.clipToRect(CGRectMake(0, 0, 20, 9));
    c.clearRect(CGRectMake(0, 0, 1, 1));
  }));
}

TEST(DisplayList, ARadialGradientIsNoKnownCover) {
  const auto gradient = std::make_shared<CGGradient>(std::vector<RGBA>{{0, 0, 0, 1}, {1, 1, 1, 1}});
  RecordingContext radial;
  radial.drawRadialGradient(gradient, {10, 5}, 50, kCGGradientDrawsAfterEndLocation);
  EXPECT_FALSE(radial.snapshot()->isOpaqueIn(CGRectMake(0, 0, 20, 10)));
}

TEST(DisplayList, ACoverAfterARestoreLiesWhereTheSaveWas) {
  RecordingContext back, moved;
  for (RecordingContext* context : {&back, &moved}) {
    if (context == &moved) context->translateCTM(0, 1);
    context->saveGState();
    context->translateCTM(0, -5);
    context->clipToRect(CGRectMake(0, 0, 1, 1));
    context->restoreGState();
    Backdrop{}.draw(*context);
  }
  EXPECT_TRUE(back.snapshot()->isOpaqueIn(CGRectMake(0, 0, 20, 10)));
  EXPECT_FALSE(moved.snapshot()->isOpaqueIn(CGRectMake(0, 0, 20, 10)));
}

// One of each command, with one of them drawn in another way when asked. `choices` becomes the number of those ways.
std::shared_ptr<const DisplayList> everyCommand(int different, int* choices = nullptr) {
  static const auto gradient = std::make_shared<CGGradient>(std::vector<RGBA>{{0, 0, 0, 1}, {1, 1, 1, 1}});
  static const auto otherGradient = std::make_shared<CGGradient>(*gradient);
  static const auto image = std::make_shared<CGImage>(std::make_shared<DisplayList>(), 1, 1);
  static const auto otherImage = std::make_shared<CGImage>(std::make_shared<DisplayList>(), 1, 1);
  int number = 0;
  const auto differs = [&] { return ++number == different; };
  const auto length = [&] { return differs() ? 3.0 : 2.0; };
  RecordingContext context;
  context.saveGState();
  context.translateCTM(0, length());
  context.clipToRect(CGRectMake(0, 0, length(), 9));
  context.fillRect(CGRectMake(0, 0, 5, length()));
  context.setFillColor({length() / 9, 0, 0, 1});
  context.fillRect(CGRectMake(0, 0, 5, 5));
  context.setBlendMode(differs() ? CGBlendMode::overlay : CGBlendMode::normal);
  context.fillRect(CGRectMake(0, 0, 5, 5));
  context.setBlendMode(CGBlendMode::normal);
  context.addRect(CGRectMake(0, 0, 5, 5));
  context.drawPath(differs() ? CGPathDrawingMode::eoFill : CGPathDrawingMode::fill);
  context.setStrokeColor({length() / 9, 0, 0, 1});
  context.setLineWidth(length());
  context.moveToPoint(0, 0);
  context.addLineToPoint(1, length());
  context.strokePath();
  context.drawLinearGradient(gradient, {0, 0}, {1, length()}, 0);
  context.drawLinearGradient(differs() ? otherGradient : gradient, {0, 0}, {1, 1}, differs() ? 1U : 0U);
  context.drawImage(CGRectMake(0, 0, 1, length()), image);
  context.drawImage(CGRectMake(0, 0, 1, 1), differs() ? otherImage : image);
  context.showTextRun({FontFaceHelvetica(), length(), "a", {length(), 0}});
  context.showTextRun({differs() ? FontFaceLucidaGrande() : FontFaceHelvetica(), 9, differs() ? "b" : "a", {0, 0}});
  context.clearRect(CGRectMake(0, 0, 1, length()));
  context.restoreGState();
  context.setAlpha(length() / 9);
  context.setShadow({0, length()}, 2);
  context.beginTransparencyLayer();
  context.endTransparencyLayer();
  if (differs()) context.fillRect(CGRectMake(0, 0, 1, 1));
  if (choices != nullptr) *choices = number;
  return context.snapshot();
}

TEST(DisplayList, TwoOfTheSameCommandsAreEqual) {
  EXPECT_EQ(*everyCommand(0), *everyCommand(0));
  EXPECT_EQ(everyCommand(0)->hash(), everyCommand(0)->hash());
}

TEST(DisplayList, AnyDifferenceMakesThemUnequal) {
  int choices = 0;
  const auto plain = everyCommand(0, &choices);
  EXPECT_GT(choices, 20);
  for (int different = 1; different <= choices; ++different)
    EXPECT_FALSE(*plain == *everyCommand(different)) << different;
}

TEST(DisplayList, PlacesSizesColoursAndTextsTellApartByHash) {
  const auto hashOf = [](double x, double width, double red, const char* text) {
    RecordingContext context;
    context.translateCTM(x, 0);
    context.setFillColor({red, 0, 0, 1});
    context.fillRect(CGRectMake(0, 0, width, 10));
    context.showTextRun({FontFaceHelvetica(), 9, text, {0, 0}});
    return context.snapshot()->hash();
  };
  const size_t hash = hashOf(1, 2, 0, "a");
  EXPECT_EQ(hash, hashOf(1, 2, 0, "a"));
  EXPECT_NE(hash, hashOf(1.5, 2, 0, "a"));
  EXPECT_NE(hash, hashOf(1, 2.5, 0, "a"));
  EXPECT_NE(hash, hashOf(1, 2, 0.1, "a"));
  EXPECT_NE(hash, hashOf(1, 2, 0, "b"));
}

TEST(DisplayList, BoundsHoldWhatFillsImagesAndStrokesPaint) {
  RecordingContext context;
  EXPECT_TRUE(CGRectIsNull(context.snapshot()->bounds().value()));
  context.saveGState();
  context.translateCTM(100, 50);
  context.scaleCTM(2, 2);
  context.fillRect(CGRectMake(1, 2, 3, 4));
  context.restoreGState();
  EXPECT_EQ(context.snapshot()->bounds().value(), CGRectMake(102, 54, 6, 8));
  context.drawImage(CGRectMake(90, 60, 5, 1), std::make_shared<CGImage>(std::make_shared<DisplayList>(), 1, 1));
  EXPECT_EQ(context.snapshot()->bounds().value(), CGRectMake(90, 54, 18, 8));
  // The sharpest corner with a miter reaches ten times half the width.
  context.setLineWidth(2);
  context.moveToPoint(0, 0);
  context.addLineToPoint(0, 40);
  context.strokePath();
  EXPECT_EQ(context.snapshot()->bounds().value(), CGRectMake(-10, -10, 118, 72));
}

TEST(DisplayList, BoundsOfTextGroupsAndGradientsAreNotKnown) {
  RecordingContext text, group, gradient;
  text.showTextRun({FontFaceHelvetica(), 9, "a", {0, 0}});
  EXPECT_FALSE(text.snapshot()->bounds());
  group.beginTransparencyLayer();
  group.endTransparencyLayer();
  EXPECT_FALSE(group.snapshot()->bounds());
  gradient.drawRadialGradient(std::make_shared<CGGradient>(std::vector<RGBA>{{0, 0, 0, 1}, {1, 1, 1, 1}}), {0, 0}, 5,
                              0);
  EXPECT_FALSE(gradient.snapshot()->bounds());
}

}  // namespace
}  // namespace zelkon
