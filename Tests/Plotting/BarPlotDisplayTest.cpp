// The bars' layers: how they are made, grow and look.
#include <gtest/gtest.h>

#include "Classes/Plotting/BarPlot.h"
#include "Foundation/NSRunLoop.h"
#include "Support/ChartHost.h"
#include "Support/PlotterHost.h"

namespace zelkon {
namespace {

using Host = PlotterHost<BarPlot>;

// Zero stands 122 points from the bottom: the bar of 100 is (73, 122, 146, 134), that of -50 (259, 56, 146, 66).
struct UpAndDown : Host {
  UpAndDown() : Host(657, 311, {{"DisplayYLabels", false}}) { plot->setPlotData(plotAmounts({100, -50, 0})); }
};

void expectBounds(const std::optional<CAAnimatableValue>& value, CGRect expected) {
  ASSERT_TRUE(value.has_value());
  ASSERT_TRUE(std::holds_alternative<CGRect>(*value));
  EXPECT_EQ(std::get<CGRect>(*value), expected);
}

TEST(BarLayers, ComeWithTheFirstDisplayOnly) {
  UpAndDown host;
  EXPECT_TRUE(host.root->sublayers().empty());
  host.plot->redisplay();
  EXPECT_TRUE(host.root->sublayers().empty());
  host.plot->doDisplay();
  EXPECT_EQ(host.root->sublayers().size(), 2u);
}

TEST(BarLayers, StandOnTheZeroLineAtTheirFullSize) {
  UpAndDown host;
  host.plot->doDisplay();
  const CALayerRef up = host.root->sublayers()[0], down = host.root->sublayers()[1];
  EXPECT_EQ(up->name(), "upwardFacing");
  EXPECT_EQ(up->anchorPoint(), CGPointMake(0.5, 0));
  EXPECT_EQ(up->bounds(), CGRectMake(73, 122, 146, 134));
  EXPECT_EQ(up->frame(), CGRectMake(73, 122, 146, 134));
  EXPECT_EQ(down->name(), "downwardFacing");
  EXPECT_EQ(down->anchorPoint(), CGPointMake(0.5, 1));
  EXPECT_EQ(down->bounds(), CGRectMake(259, 56, 146, 66));
  EXPECT_EQ(down->frame(), CGRectMake(259, 56, 146, 66));
  for (const CALayerRef& bar : {up, down}) {
    EXPECT_EQ(bar->cornerRadius(), 5);
    EXPECT_EQ(bar->delegate(), host.plot);
    EXPECT_TRUE(bar->needsDisplay());
    EXPECT_TRUE(bar->needsDisplayOnBoundsChange());
  }
}

TEST(BarLayers, GrowAThousandPointsASecondOutOfTheZeroLine) {
  UpAndDown host;
  host.plot->doDisplay();
  const CABasicAnimation* up = host.root->sublayers()[0]->animationForKey("bounds");
  ASSERT_NE(up, nullptr);
  EXPECT_EQ(up->keyPath, "bounds");
  expectBounds(up->fromValue, CGRectMake(73, 122, 146, 0));
  expectBounds(up->toValue, CGRectMake(73, 122, 146, 134));
  EXPECT_DOUBLE_EQ(up->duration, 0.134);
  EXPECT_EQ(up->timingFunction, kCAMediaTimingFunctionLinear);
  EXPECT_EQ(up->fillMode, CAFillMode::forwards);
  EXPECT_FALSE(up->removedOnCompletion);
  const CABasicAnimation* down = host.root->sublayers()[1]->animationForKey("bounds");
  ASSERT_NE(down, nullptr);
  expectBounds(down->fromValue, CGRectMake(259, 122, 146, 0));
  expectBounds(down->toValue, CGRectMake(259, 56, 146, 66));
  EXPECT_DOUBLE_EQ(down->duration, 0.066);
}

TEST(BarLayers, TheDelegateHearsOfUpwardBarsFirstEachByItsPlaceAndBeforeItIsAdded) {
  Host host(657, 311, {{"DisplayYLabels", false}});
  host.plot->setPlotData(plotAmounts({-10, 20, -30, 40}));
  host.plot->doDisplay();
  ASSERT_EQ(host.delegate->told.size(), 4u);
  // Bars 100 wide, 40 apart, from 73 on.
  EXPECT_EQ(host.delegate->told[0].key, "bounds213.000000");
  EXPECT_EQ(host.delegate->told[1].key, "bounds493.000000");
  EXPECT_EQ(host.delegate->told[2].key, "bounds73.000000");
  EXPECT_EQ(host.delegate->told[3].key, "bounds353.000000");
  // What the delegate did to the animation went into the layer's copy.
  EXPECT_EQ(host.root->sublayers()[0]->animationForKey("bounds")->valueForKey("key"), Value("bounds213.000000"));
}

TEST(BarLayers, GrowWithoutADelegateToo) {
  UpAndDown host;
  host.plot->setAnimationsCreatedDelegate({});
  host.plot->doDisplay();
  EXPECT_NE(host.root->sublayers()[0]->animationForKey("bounds"), nullptr);
}

TEST(BarLayers, ANegativeBarWithoutHeightHasAnAnimationOfNoDuration) {
  Host host(657, 311, {{"DisplayYLabels", false}});
  host.plot->setPlotData(plotAmounts({100, -50, -0.001}));
  host.plot->doDisplay();
  ASSERT_EQ(host.delegate->told.size(), 3u);
  EXPECT_EQ(host.delegate->told[2].animation.duration, 0);
}

TEST(BarLayers, ZerosAloneMakeNoLayerAndNoAnimation) {
  Host host(657, 311);
  host.plot->setPlotData(plotAmounts({0, 0, -0.0}));
  host.plot->doDisplay();
  EXPECT_TRUE(host.root->sublayers().empty());
  EXPECT_TRUE(host.delegate->told.empty());
}

TEST(BarLayers, EachDisplayStacksAnotherSet) {
  UpAndDown host;
  host.plot->doDisplay();
  host.plot->doDisplay();
  EXPECT_EQ(host.root->sublayers().size(), 4u);
  host.plot->redisplay();
  EXPECT_EQ(host.root->sublayers().size(), 6u);
  EXPECT_EQ(host.root->sublayers()[4]->animationForKey("bounds"), nullptr);
  EXPECT_EQ(host.delegate->told.size(), 4u);
}

TEST(BarLayers, ALaterGenerationPlacesTheBarsAtOnce) {
  UpAndDown host;
  host.plot->doDisplay();
  const CALayerRef before = host.root->sublayers()[0];
  host.plot->setPlotData(plotAmounts({100, -50, 0}));
  ASSERT_EQ(host.root->sublayers().size(), 2u);
  const CALayerRef bar = host.root->sublayers()[0];
  EXPECT_NE(bar, before);
  EXPECT_EQ(bar->bounds(), CGRectMake(73, 122, 146, 134));
  EXPECT_TRUE(bar->animationKeys().empty());
  EXPECT_EQ(host.delegate->told.size(), 2u);
}

TEST(BarLayers, HidingHidesTheRootLayerAndLetsGoOfIt) {
  UpAndDown host;
  host.plot->doHide();
  EXPECT_TRUE(host.root->isHidden());
  EXPECT_EQ(host.plot->rootLayer(), nullptr);
  const CGImageRef picture = host.root->contents();
  host.plot->setPlotData(plotAmounts({1}));
  EXPECT_EQ(host.root->contents(), picture);
  host.plot->doDisplay();
  host.plot->doHide();
}

TEST(BarLayers, ARedisplayAfterALaterGenerationStacksASecondSet) {
  UpAndDown host;
  host.plot->doDisplay();
  host.plot->setPlotData(plotAmounts({100, -50, 0}));
  host.plot->redisplay();
  ASSERT_EQ(host.root->sublayers().size(), 4u);
  EXPECT_EQ(host.root->sublayers()[2]->bounds(), host.root->sublayers()[0]->bounds());
  EXPECT_EQ(host.root->sublayers()[3]->bounds(), host.root->sublayers()[1]->bounds());
}

TEST(BarLayers, AShownChartIsHiddenAtOnceWithoutFading) {
  ChartHost host;
  host.show(chartOf(2));
  const CALayerRef root = host.view->layer();
  host.chart().plotter()->doHide();
  EXPECT_TRUE(root->isHidden());
  EXPECT_TRUE(root->animationKeys().empty());
}

TEST(BarLayers, HidingCancelsWhatWaitsForThePlotterOrItsRootLayerAndNothingElse) {
  UpAndDown host;
  NSRunLoop& loop = NSRunLoop::mainRunLoop();
  std::string ran;
  const int other = 0;
  loop.performAfterDelay(host.plot.get(), 0, [&] { ran += "plotter "; });
  loop.performAfterDelay(host.root.get(), 0, [&] { ran += "root "; });
  loop.performAfterDelay(&other, 0, [&] { ran += "other "; });
  host.plot->doHide();
  loop.runDue(CACurrentMediaTime());
  EXPECT_EQ(ran, "other ");
}

TEST(BarLayers, AnimationsAreKeyedByTheirPlaceWithSixDecimals) {
  Host host(657, 311, {{"DisplayYLabels", false}});
  host.root->setBounds(CGRectMake(0.25, 0, 657, 311));
  host.plot->setPlotData(plotAmounts({10}));
  host.plot->doDisplay();
  ASSERT_EQ(host.delegate->told.size(), 1u);
  // One bar in 600 points: 520 wide but for the limit of 230, so the margin of 40 gets half of the other 290.
  EXPECT_EQ(host.delegate->told[0].key, "bounds218.250000");
}

Drawn drawingOf(const std::string& name, CGRect bounds) {
  const auto plot = std::make_shared<BarPlot>();
  const CALayerRef bar = CALayer::layer();
  bar->setName(name);
  bar->setCornerRadius(5);
  bar->setBounds(bounds);
  RecordingContext context;
  plot->drawLayer(*bar, context);
  return Drawn(*context.snapshot());
}

std::vector<CGPoint> endsOf(const CGPath& path) {
  std::vector<CGPoint> ends;
  for (const CGPathElement& element : path.elements())
    if (element.type != CGPathElement::Type::close)
      ends.push_back(element.points[element.type == CGPathElement::Type::curve ? 2 : 0]);
  return ends;
}

void expectEnds(const CGPath& path, const std::vector<CGPoint>& expected) {
  const std::vector<CGPoint> ends = endsOf(path);
  ASSERT_EQ(ends.size(), expected.size());
  for (size_t i = 0; i < ends.size(); ++i) {
    EXPECT_NEAR(ends[i].x, expected[i].x, 1e-6) << i;
    EXPECT_NEAR(ends[i].y, expected[i].y, 1e-6) << i;
  }
}

TEST(BarDrawing, AnUpwardBarHasRoundedTopCornersASoftShadowAndAnOutline) {
  const PlainDevice device;
  const Drawn drawn = drawingOf("upwardFacing", CGRectMake(100, 50, 30, 120));
  const std::vector<CGPoint> outline{{102.5, 50},    {126.5, 50},    {126.5, 164.5}, {121.5, 169.5},
                                     {107.5, 169.5}, {102.5, 164.5}, {102.5, 50}};
  ASSERT_EQ(drawn.groups.size(), 1u);
  ASSERT_TRUE(drawn.groups[0].effects.shadow.has_value());
  EXPECT_EQ(*drawn.groups[0].effects.shadow, (CGShadow{{3, -3}, 1, {0, 0, 0, 1.0 / 3}}));
  ASSERT_EQ(drawn.clips.size(), 1u);
  expectEnds(drawn.clips[0].path, outline);
  ASSERT_EQ(drawn.gradients.size(), 1u);
  const DisplayList::Gradient& gradient = drawn.gradients[0];
  EXPECT_EQ(gradient.placement, (CGGradientPlacement{{0, 0}, {0, 120}, 0, 3}));
  EXPECT_EQ(gradient.gradient->stops()[0].color, (RGBA{0.44, 0.66, 0.10, 1}));
  EXPECT_EQ(gradient.gradient->stops()[1].color, (RGBA{0.66, 0.79, 0.16, 1}));
  // The bar's bottom row lies 50 of 120 points along the gradient.
  const RGBA bottom = gradient.gradient->colorAt(50.0 / 120);
  EXPECT_NEAR(bottom.red, 0.532, 0.001);
  EXPECT_NEAR(bottom.green, 0.714, 0.001);
  EXPECT_NEAR(bottom.blue, 0.125, 0.001);
  ASSERT_EQ(drawn.strokes.size(), 1u);
  expectEnds(drawn.strokes[0].path, outline);
  EXPECT_EQ(drawn.strokes[0].color, (RGBA{0.5, 0.5, 0.5, 1}));
  EXPECT_EQ(drawn.strokes[0].style.width, 1);
}

TEST(BarDrawing, ADownwardBarIsTheMirrorImageInRed) {
  const PlainDevice device;
  const Drawn drawn = drawingOf("downwardFacing", CGRectMake(100, 20, 30, 30));
  ASSERT_EQ(drawn.groups.size(), 1u);
  EXPECT_EQ(drawn.groups[0].effects.shadow->offset, CGSizeMake(3, 3));
  ASSERT_EQ(drawn.strokes.size(), 1u);
  expectEnds(drawn.strokes[0].path,
             {{102.5, 50}, {126.5, 50}, {126.5, 25.5}, {121.5, 20.5}, {107.5, 20.5}, {102.5, 25.5}, {102.5, 50}});
  ASSERT_EQ(drawn.gradients.size(), 1u);
  EXPECT_EQ(drawn.gradients[0].placement, (CGGradientPlacement{{0, 0}, {0, 30}, 0, 3}));
  EXPECT_EQ(drawn.gradients[0].gradient->stops()[0].color, (RGBA{0.984, 0.227, 0.227, 1}));
  EXPECT_EQ(drawn.gradients[0].gradient->stops()[1].color, (RGBA{0.80, 0.094, 0.094, 1}));
}

TEST(BarDrawing, ALayerOfAnotherNameShowsNothing) {
  const PlainDevice device;
  const Drawn drawn = drawingOf("other", CGRectMake(100, 20, 30, 30));
  EXPECT_TRUE(drawn.groups.empty());
  EXPECT_TRUE(drawn.gradients.empty());
  EXPECT_TRUE(drawn.strokes.empty());
}

}  // namespace
}  // namespace zelkon
