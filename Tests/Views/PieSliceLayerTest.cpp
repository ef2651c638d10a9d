#include <gtest/gtest.h>

#include <cmath>

#include "Classes/Views/PieSliceLayer.h"
#include "CoreGraphics/DisplayList.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {
namespace {

std::shared_ptr<PieSliceLayer> sliceOf(double fraction) {
  const auto slice = PieSliceLayer::layer();
  slice->setBounds(CGRectMake(0, 0, 200, 100));
  slice->setRadius(40);
  slice->setFraction(fraction);
  return slice;
}

template <typename Command>
std::vector<Command> commandsOf(PieSliceLayer& slice, RGBA fill = {0, 0, 0, 1}) {
  RecordingContext context;
  context.setFillColor(fill);
  slice.drawInContext(context);
  std::vector<Command> found;
  const auto list = context.snapshot();
  for (const DisplayList::Command& command : list->commands())
    if (const auto* one = std::get_if<Command>(&command)) found.push_back(*one);
  return found;
}

CGPoint firstPoint(const CGPath& path) { return path.elements().at(0).points[0]; }

void expectNear(CGPoint a, CGPoint b) {
  EXPECT_NEAR(a.x, b.x, 1e-9);
  EXPECT_NEAR(a.y, b.y, 1e-9);
}

TEST(PieSliceLayer, ANewSliceHasNoValuesOfItsOwn) {
  const auto slice = PieSliceLayer::layer();
  EXPECT_EQ(slice->className(), "PieSliceLayer");
  EXPECT_EQ(slice->fraction(), 0);
  EXPECT_EQ(slice->sliceColor(), nullptr);
  EXPECT_EQ(slice->sliceBorderColor(), nullptr);
  EXPECT_EQ(slice->sliceBorderWidth(), 0);
  EXPECT_EQ(slice->radius(), 0);
  EXPECT_EQ(slice->baseTransform(), CATransform3D{}) << "sixteen zeros, not the identity";
}

TEST(PieSliceLayer, AWholeDiscIsAPlainCircleWithoutASeam) {
  const auto slice = sliceOf(1.0);
  slice->setSliceBorderColor(kCGColorWhite());
  slice->setSliceBorderWidth(1);
  const auto strokes = commandsOf<DisplayList::Stroke>(*slice);
  ASSERT_EQ(strokes.size(), 1u);
  expectNear(firstPoint(strokes[0].path), {140, 50});
  for (const CGPathElement& element : strokes[0].path.elements())
    EXPECT_NE(element.type, CGPathElement::Type::line) << "no line to the centre";
  const CGRect box = strokes[0].path.boundingBox();
  EXPECT_NEAR(CGRectGetMinX(box), 60, 1e-9);
  EXPECT_NEAR(CGRectGetMaxY(box), 90, 1e-9);
}

TEST(PieSliceLayer, AWedgeRunsCounterClockwiseFromThreeOClockAroundItsCentre) {
  const auto slice = sliceOf(0.25);
  slice->setSliceColor(CGColorCreateGenericRGB(0.2, 0.4, 0.6, 1));
  const auto fills = commandsOf<DisplayList::Fill>(*slice);
  ASSERT_EQ(fills.size(), 1u);
  EXPECT_EQ(fills[0].color, (RGBA{0.2, 0.4, 0.6, 1}));
  const std::vector<CGPathElement>& elements = fills[0].path.elements();
  ASSERT_EQ(elements.size(), 4u);
  expectNear(elements[0].points[0], {100, 50});
  EXPECT_EQ(elements[1].type, CGPathElement::Type::line);
  expectNear(elements[1].points[0], {140, 50});
  EXPECT_EQ(elements[2].type, CGPathElement::Type::curve);
  expectNear(elements[2].points[2], {100, 90});
  EXPECT_EQ(elements[3].type, CGPathElement::Type::close);
}

TEST(PieSliceLayer, TheWedgeIsCentredInItsBoundsWhateverTheirOrigin) {
  const auto slice = sliceOf(0.5);
  slice->setBounds(CGRectMake(30, -20, 60, 80));
  expectNear(firstPoint(commandsOf<DisplayList::Fill>(*slice)[0].path), {60, 20});
}

TEST(PieSliceLayer, FractionZeroDrawsOnlyARadialLineAndThatOnlyWithABorder) {
  const auto slice = sliceOf(0);
  EXPECT_TRUE(commandsOf<DisplayList::Stroke>(*slice).empty());
  slice->setSliceBorderColor(kCGColorWhite());
  slice->setSliceBorderWidth(2);
  const auto strokes = commandsOf<DisplayList::Stroke>(*slice);
  ASSERT_EQ(strokes.size(), 1u);
  EXPECT_EQ(strokes[0].style.width, 2);
  EXPECT_EQ(strokes[0].color, (RGBA{1, 1, 1, 1}));
  const CGRect box = strokes[0].path.boundingBox();
  EXPECT_NEAR(box.size.height, 0, 1e-9);
  expectNear(box.origin, {100, 50});
  EXPECT_NEAR(box.size.width, 40, 1e-9);
}

TEST(PieSliceLayer, AFractionAboveOneRunsPastAFullTurn) {
  const auto fills = commandsOf<DisplayList::Fill>(*sliceOf(1.25));
  ASSERT_EQ(fills.size(), 1u);
  const std::vector<CGPathElement>& elements = fills[0].path.elements();
  ASSERT_EQ(elements.size(), 2u + 5u + 1u) << "five quadrants";
  expectNear(elements[6].points[2], {100, 90});
}

TEST(PieSliceLayer, WithoutAColourTheContextsOwnIsUsed) {
  const auto slice = sliceOf(0.5);
  EXPECT_EQ(commandsOf<DisplayList::Fill>(*slice, {0, 1, 0, 1})[0].color, (RGBA{0, 1, 0, 1}));
  EXPECT_EQ(commandsOf<DisplayList::Fill>(*slice)[0].color, (RGBA{0, 0, 0, 1}));
}

TEST(PieSliceLayer, WithoutABorderColourTheContextsOwnIsUsed) {
  const auto slice = sliceOf(0.5);
  slice->setSliceBorderWidth(2);
  RecordingContext context;
  context.setStrokeColor({1, 0, 0, 1});
  slice->drawInContext(context);
  const auto list = context.snapshot();
  ASSERT_EQ(list->commands().size(), 2u);
  EXPECT_EQ(std::get<DisplayList::Stroke>(list->commands()[1]).color, (RGBA{1, 0, 0, 1}));
}

TEST(PieSliceLayer, OnePathIsFilledAndThenStroked) {
  const auto slice = sliceOf(0.3);
  slice->setSliceBorderWidth(1);
  const auto fills = commandsOf<DisplayList::Fill>(*slice);
  const auto strokes = commandsOf<DisplayList::Stroke>(*slice);
  ASSERT_EQ(fills.size(), 1u);
  ASSERT_EQ(strokes.size(), 1u);
  ASSERT_EQ(fills[0].path.elements().size(), strokes[0].path.elements().size());
  EXPECT_EQ(fills[0].path.boundingBox(), strokes[0].path.boundingBox());
  EXPECT_EQ(strokes[0].style.width, 1);
}

TEST(PieSliceLayer, SharesThatAreNotFiniteOrImmenseNeitherHangNorFail) {
  for (const double fraction : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    const auto slice = sliceOf(fraction);
    EXPECT_TRUE(commandsOf<DisplayList::Fill>(*slice).empty());
  }
  for (const double fraction : {1e300, -1e300, 1e308}) commandsOf<DisplayList::Fill>(*sliceOf(fraction));
}

TEST(PieSliceLayer, OnlyAChangeOfBoundsRedrawsByItself) {
  const auto slice = sliceOf(0.5);
  slice->displayIfNeeded();
  ASSERT_FALSE(slice->needsDisplay());
  slice->setFraction(0.25);
  slice->setRadius(10);
  slice->setSliceColor(kCGColorWhite());
  slice->setSliceBorderColor(kCGColorWhite());
  slice->setSliceBorderWidth(3);
  slice->setBaseTransform(CATransform3DIdentity);
  EXPECT_FALSE(slice->needsDisplay());
  slice->setBounds(CGRectMake(0, 0, 201, 100));
  EXPECT_TRUE(slice->needsDisplay());
  EXPECT_TRUE(slice->needsDisplayOnBoundsChange());
}

TEST(PieSliceLayer, ASliceFollowsItsSuperlayerInWidthAndHeightAndRedraws) {
  const CALayerRef parent = CALayer::layer();
  parent->setBounds(CGRectMake(0, 0, 200, 100));
  const auto slice = sliceOf(0.5);
  slice->setPosition({100, 50});
  parent->addSublayer(slice);
  EXPECT_EQ(slice->autoresizingMask(), 18u);
  slice->displayIfNeeded();
  parent->setBounds(CGRectMake(0, 0, 260, 180));
  EXPECT_EQ(slice->bounds().size, CGSizeMake(260, 180));
  EXPECT_EQ(slice->position(), CGPointMake(130, 90));
  EXPECT_TRUE(slice->needsDisplay());
  CATransaction::flush();
}

}  // namespace
}  // namespace zelkon
