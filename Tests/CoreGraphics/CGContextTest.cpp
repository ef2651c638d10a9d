#include <gtest/gtest.h>

#include <limits>

#include "CoreGraphics/CGContext.h"
#include "CoreGraphics/CommandNames.h"

namespace zelkon {
namespace {

using List = DisplayList;
using Type = CGPathElement::Type;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr RGBA black{0, 0, 0, 1};

CGPath rectanglePath(CGRect rect) {
  CGPath path;
  path.addRect(rect);
  return path;
}

struct Context : testing::Test {
  RecordingContext context;
  std::shared_ptr<const DisplayList> drawn() const { return context.snapshot(); }
};

TEST_F(Context, FreshState) {
  EXPECT_EQ(context.ctm(), CGAffineTransformIdentity);
  EXPECT_EQ(context.fillColor(), black);
  EXPECT_EQ(context.strokeColor(), black);
  EXPECT_EQ(context.lineWidth(), 1);
  EXPECT_TRUE(context.isPathEmpty());
  context.restoreGState();
  EXPECT_EQ(commandNames(context), "");
}

TEST_F(Context, RestoreBringsTheStateBack) {
  context.saveGState();
  context.setFillColor({1, 0, 0, 1});
  context.setLineWidth(5);
  context.translateCTM(3, 4);
  context.restoreGState();
  EXPECT_EQ(context.fillColor(), black);
  EXPECT_EQ(context.lineWidth(), 1);
  EXPECT_EQ(context.ctm(), CGAffineTransformIdentity);
  EXPECT_EQ(commandNames(context), "save concat restore");
}

TEST_F(Context, TheLaterTransformActsFirst) {
  context.translateCTM(10, 20);
  context.scaleCTM(2, 3);
  EXPECT_EQ(CGPointApplyAffineTransform({1, 1}, context.ctm()), (CGPoint{12, 23}));
}

TEST_F(Context, NullColoursChangeNothing) {
  context.setFillColorWithColor(CGColorCreateGenericRGB(1, 0.5, 0, 1));
  context.setFillColorWithColor(nullptr);
  context.setStrokeColorWithColor(nullptr);
  EXPECT_EQ(context.fillColor(), (RGBA{1, 0.5, 0, 1}));
  EXPECT_EQ(context.strokeColor(), black);
}

TEST_F(Context, PaintingConsumesThePath) {
  context.addRect(CGRectMake(0, 0, 10, 10));
  context.fillPath();
  EXPECT_TRUE(context.isPathEmpty());
  context.strokePath();
  EXPECT_EQ(commandNames(context), "fill");
}

TEST_F(Context, FillStrokeFillsFirstAndStrokesTheSamePath) {
  context.setFillColor({1, 0, 0, 1});
  context.setStrokeColor({0, 0, 1, 1});
  context.setLineWidth(2);
  context.addRect(CGRectMake(0, 0, 10, 10));
  context.drawPath(CGPathDrawingMode::fillStroke);
  ASSERT_EQ(commandNames(context), "fill stroke");
  const auto list = drawn();
  const auto& fill = commandAt<List::Fill>(*list, 0);
  EXPECT_FALSE(fill.evenOdd);
  EXPECT_EQ(fill.color, (RGBA{1, 0, 0, 1}));
  const auto& stroke = commandAt<List::Stroke>(*list, 1);
  EXPECT_EQ(stroke.path, rectanglePath(CGRectMake(0, 0, 10, 10)));
  EXPECT_EQ(stroke.style.width, 2);
  EXPECT_EQ(stroke.color, (RGBA{0, 0, 1, 1}));
}

TEST_F(Context, StrokeWithoutWidthPaintsNothing) {
  for (const double width : {0.0, -1.0, nan}) {
    context.setLineWidth(width);
    context.moveToPoint(0, 0);
    context.addLineToPoint(10, 0);
    context.strokePath();
  }
  EXPECT_EQ(commandNames(context), "");
}

TEST_F(Context, MoveAlonePaintsNothing) {
  context.moveToPoint(1, 1);
  context.drawPath(CGPathDrawingMode::fillStroke);
  EXPECT_EQ(commandNames(context), "");
}

TEST_F(Context, NonFiniteCoordinatesPaintNothing) {
  context.addRect(CGRectMake(0, 0, nan, 1));
  context.fillPath();
  context.fillRect(CGRectMake(0, 0, std::numeric_limits<double>::infinity(), 1));
  context.fillEllipseInRect(CGRectMake(nan, 0, 1, 1));
  context.moveToPoint(0, 0);
  context.addArcToPoint(nan, 1, 2, 3, 4);
  context.strokePath();
  context.clearRect(CGRectMake(nan, 0, 1, 1));
  context.translateCTM(nan, 0);
  context.showTextRun({FontFaceHelvetica(), 12, "a", {nan, 0}});
  context.drawLinearGradient(std::make_shared<CGGradient>(std::vector<RGBA>{black, {1, 1, 1, 1}}), {0, nan}, {1, 1}, 0);
  EXPECT_EQ(commandNames(context), "");
}

TEST_F(Context, UnchangedTransformHandsExactNumbersOver) {
  context.translateCTM(0.1, 0.7);
  context.scaleCTM(1.0 / 3, 3);
  context.addRect(CGRectMake(0.1, 0.2, 0.3, 0.4));
  context.saveGState();
  context.scaleCTM(1.0 / 7, 1);
  context.restoreGState();
  context.fillPath();
  EXPECT_EQ(commandAt<List::Fill>(*drawn(), 5).path, rectanglePath(CGRectMake(0.1, 0.2, 0.3, 0.4)));
}

TEST_F(Context, PointsStayWhereTheTransformOfTheirTimePutThem) {
  context.moveToPoint(10, 10);
  context.saveGState();
  context.translateCTM(100, 0);
  context.addLineToPoint(0, 0);  // (100, 0) as made
  context.restoreGState();
  context.scaleCTM(2, 2);
  context.strokePath();
  const auto list = drawn();
  const auto& path = commandAt<List::Stroke>(*list, 4).path;
  EXPECT_EQ(path.elements()[0].points[0], (CGPoint{5, 5}));
  EXPECT_EQ(path.elements()[1].points[0], (CGPoint{50, 0}));
}

TEST_F(Context, ThePathIsNotPartOfTheState) {
  context.saveGState();
  context.addRect(CGRectMake(0, 0, 1, 1));
  context.restoreGState();
  EXPECT_FALSE(context.isPathEmpty());
  context.beginPath();
  EXPECT_TRUE(context.isPathEmpty());
}

TEST_F(Context, CollapsedUserSpacePaintsNothingOfAnEarlierPath) {
  context.addRect(CGRectMake(0, 0, 1, 1));
  context.scaleCTM(0, 1);
  context.fillPath();
  EXPECT_EQ(commandNames(context), "concat");
}

TEST_F(Context, ArcToPointWorksInUserSpace) {
  context.scaleCTM(2, 1);
  context.moveToPoint(126.5, 50);
  context.addArcToPoint(126.5, 169.5, 115, 169.5, 5);
  context.strokePath();
  const auto list = drawn();
  const auto& path = commandAt<List::Stroke>(*list, 1).path;
  EXPECT_NEAR(path.elements()[1].points[0].y, 164.5, 1e-9);
  EXPECT_NEAR(path.elements()[2].points[2].x, 121.5, 1e-9);
}

TEST_F(Context, AlphaMultipliesColours) {
  context.setFillColor({1, 0, 0, 0.5});
  context.setAlpha(0.5);
  context.fillRect(CGRectMake(0, 0, 1, 1));
  EXPECT_EQ(commandAt<List::Fill>(*drawn(), 0).color, (RGBA{1, 0, 0, 0.25}));
}

TEST_F(Context, ClippingConsumesThePathAndEmptyClipsEverything) {
  context.addRect(CGRectMake(0, 0, 10, 10));
  context.eoClip();
  EXPECT_TRUE(context.isPathEmpty());
  context.clip();
  ASSERT_EQ(commandNames(context), "clip clip");
  EXPECT_TRUE(commandAt<List::Clip>(*drawn(), 0).evenOdd);
  EXPECT_TRUE(commandAt<List::Clip>(*drawn(), 1).path.isEmpty());
}

TEST_F(Context, NonFiniteClipLeavesNothing) {
  context.clipToRect(CGRectMake(0, nan, 1, 1));
  EXPECT_TRUE(commandAt<List::Clip>(*drawn(), 0).path.isEmpty());
}

TEST_F(Context, FillRectReplacesThePath) {
  context.addRect(CGRectMake(0, 0, 100, 100));
  context.fillRect(CGRectMake(1, 2, 3, 4));
  EXPECT_TRUE(context.isPathEmpty());
  EXPECT_EQ(commandAt<List::Fill>(*drawn(), 0).path, rectanglePath(CGRectMake(1, 2, 3, 4)));
  context.fillRect(CGRectMake(1, 2, 0, 4));
  EXPECT_EQ(commandNames(context), "fill");
}

TEST_F(Context, EachPaintingOperationCastsItsOwnShadow) {
  context.setAlpha(0.5);
  context.setShadow({3, -4}, 2);
  context.addRect(CGRectMake(0, 0, 10, 10));
  context.drawPath(CGPathDrawingMode::fillStroke);
  ASSERT_EQ(commandNames(context), "begin fill end begin stroke end");
  const auto list = drawn();
  const auto& group = commandAt<List::BeginGroup>(*list, 0);
  EXPECT_EQ(group.bounds, CGRectMake(0, 0, 10, 10));
  EXPECT_EQ(group.effects.alpha, 1);
  ASSERT_TRUE(group.effects.shadow);
  EXPECT_EQ(group.effects.shadow->offset, CGSizeMake(3, -4));
  EXPECT_EQ(group.effects.shadow->sigma, 1);
  EXPECT_EQ(group.effects.shadow->color, (RGBA{0, 0, 0, 1.0 / 3}));
  EXPECT_EQ(commandAt<List::Fill>(*list, 1).color.alpha, 0.5);
}

TEST_F(Context, ShadowsDoNotFollowTheTransform) {
  context.scaleCTM(10, -10);
  context.setShadowWithColor({3, 4}, 6, CGColorCreateGenericRGB(1, 0, 0, 0.5));
  context.fillRect(CGRectMake(0, 0, 1, 1));
  const auto list = drawn();
  const auto& shadow = *commandAt<List::BeginGroup>(*list, 1).effects.shadow;
  EXPECT_EQ(shadow, (CGShadow{{3, 4}, 3, {1, 0, 0, 0.5}}));
}

TEST_F(Context, NullColourTurnsTheShadowOffAndRestoreBringsItBack) {
  context.setShadow({1, 1}, 2);
  context.saveGState();
  context.setShadowWithColor({1, 1}, 2, nullptr);
  context.fillRect(CGRectMake(0, 0, 1, 1));
  context.restoreGState();
  context.fillRect(CGRectMake(0, 0, 1, 1));
  EXPECT_EQ(commandNames(context), "save fill restore begin fill end");
}

TEST_F(Context, ShadowOfABlendedOperationBlendsTheGroup) {
  context.setBlendMode(CGBlendMode::plusLighter);
  context.setShadow({1, 1}, 0);
  context.fillRect(CGRectMake(0, 0, 1, 1));
  const auto list = drawn();
  EXPECT_EQ(commandAt<List::BeginGroup>(*list, 0).effects.blend, CGBlendMode::plusLighter);
  EXPECT_EQ(commandAt<List::Fill>(*list, 1).blend, CGBlendMode::normal);
}

TEST_F(Context, StrokeShadowBoundsReachTheMiterTips) {
  context.setShadow({0, 0}, 0);
  context.setLineWidth(2);
  context.moveToPoint(0, 0);
  context.addLineToPoint(10, 0);
  context.strokePath();
  EXPECT_EQ(commandAt<List::BeginGroup>(*drawn(), 0).bounds, CGRectMake(-10, -10, 30, 20));
}

TEST_F(Context, GroupBoundsStayFinite) {
  context.setShadow({0, 0}, 0);
  context.moveToPoint(-1.7e308, 0);
  context.addLineToPoint(1.7e308, 0);
  context.addLineToPoint(0, 1);
  context.fillPath();
  context.beginGroup({}, CGRectNull);
  context.endGroup();
  const auto list = drawn();
  EXPECT_EQ(commandNames(*list), "begin fill end begin save restore end");
  for (const size_t index : {0, 3}) {
    const CGRect bounds = commandAt<List::BeginGroup>(*list, index).bounds;
    EXPECT_EQ(bounds, CGRectMake(-1e6, -1e6, 2e6, 2e6));
  }
}

TEST_F(Context, TransparencyLayerTakesTheStateAndResetsItInside) {
  context.setAlpha(0.5);
  context.setBlendMode(CGBlendMode::overlay);
  context.setShadow({1, 2}, 4);
  context.setFillColor({1, 0, 0, 1});
  context.beginTransparencyLayer();
  context.fillRect(CGRectMake(0, 0, 1, 1));
  context.setFillColor({0, 1, 0, 1});
  context.clipToRect(CGRectMake(0, 0, 5, 5));
  context.translateCTM(1, 1);
  context.endTransparencyLayer();
  ASSERT_EQ(commandNames(context), "begin save fill clip concat restore end");
  const auto list = drawn();
  const auto& effects = commandAt<List::BeginGroup>(*list, 0).effects;
  EXPECT_EQ(effects.alpha, 0.5);
  EXPECT_EQ(effects.blend, CGBlendMode::overlay);
  EXPECT_EQ(effects.shadow->sigma, 2);
  const auto& fill = commandAt<List::Fill>(*list, 2);
  EXPECT_EQ(fill.color, (RGBA{1, 0, 0, 1}));
  EXPECT_EQ(fill.blend, CGBlendMode::normal);
  EXPECT_EQ(context.fillColor(), (RGBA{1, 0, 0, 1}));
  EXPECT_EQ(context.ctm(), CGAffineTransformIdentity);
}

TEST_F(Context, TransparencyLayerEndsTheSavesInsideIt) {
  context.beginTransparencyLayer();
  context.saveGState();
  context.saveGState();
  context.endTransparencyLayer();
  EXPECT_EQ(commandNames(context), "begin save save save restore restore restore end");
  context.endTransparencyLayer();
  context.restoreGState();
  EXPECT_EQ(commandNames(context), "begin save save save restore restore restore end");
}

TEST_F(Context, RestoreDoesNotLeaveALayer) {
  context.saveGState();
  context.beginTransparencyLayer();
  context.restoreGState();
  context.restoreGState();
  context.restoreGState();
  context.endTransparencyLayer();
  context.restoreGState();
  EXPECT_EQ(commandNames(context), "save begin save restore end restore");
}

TEST_F(Context, GroupCarriesTheCallersEffects) {
  CGGroupEffects effects;
  effects.alpha = 0.3;
  effects.brightness = 1.41421;
  context.beginGroup(effects, CGRectMake(1, 2, 3, 4));
  context.endGroup();
  const auto list = drawn();
  EXPECT_EQ(commandAt<List::BeginGroup>(*list, 0).effects, effects);
  EXPECT_EQ(commandAt<List::BeginGroup>(*list, 0).bounds, CGRectMake(1, 2, 3, 4));
}

TEST_F(Context, GradientShadowReachesAsFarAsTheClip) {
  const auto gradient = std::make_shared<CGGradient>(std::vector<RGBA>{black, {1, 1, 1, 1}});
  context.translateCTM(10, 0);
  context.clipToRect(CGRectMake(0, 0, 20, 30));
  context.translateCTM(5, 0);
  context.setShadow({1, 1}, 0);
  context.drawLinearGradient(gradient, {0, 0}, {0, 10}, 3);
  ASSERT_EQ(commandNames(context), "concat clip concat begin gradient end");
  EXPECT_EQ(commandAt<List::BeginGroup>(*drawn(), 3).bounds, CGRectMake(-5, 0, 20, 30));
}

TEST_F(Context, GradientsKeepTheirPlacement) {
  const auto gradient = std::make_shared<CGGradient>(std::vector<RGBA>{black, {1, 1, 1, 1}});
  context.setAlpha(0.25);
  context.drawLinearGradient(gradient, {1, 2}, {3, 4}, kCGGradientDrawsAfterEndLocation);
  context.drawRadialGradient(gradient, {5, 6}, 7, 0);
  context.drawLinearGradient(gradient, {1, 2}, {1, 2}, 3);
  context.drawLinearGradient(nullptr, {1, 2}, {3, 4}, 3);
  context.drawRadialGradient(gradient, {5, 6}, 0, 0);
  ASSERT_EQ(commandNames(context), "gradient gradient");
  const auto list = drawn();
  EXPECT_EQ(commandAt<List::Gradient>(*list, 0).placement, (CGGradientPlacement{{1, 2}, {3, 4}, 0, 2}));
  EXPECT_EQ(commandAt<List::Gradient>(*list, 0).alpha, 0.25);
  EXPECT_EQ(commandAt<List::Gradient>(*list, 1).placement.radius, 7);
}

TEST_F(Context, TextIsDrawnInTheFillColour) {
  context.setFillColor({0, 0, 1, 1});
  context.showTextRun({FontFaceHelvetica(), 9, "1,234", {10, 20}});
  context.showTextRun({FontFaceHelvetica(), 9, "", {10, 20}});
  context.showTextRun({nullptr, 9, "x", {10, 20}});
  ASSERT_EQ(commandNames(context), "text");
  const auto list = drawn();
  EXPECT_EQ(commandAt<List::Text>(*list, 0).run.text, "1,234");
  EXPECT_EQ(commandAt<List::Text>(*list, 0).color, (RGBA{0, 0, 1, 1}));
}

}  // namespace
}  // namespace zelkon
