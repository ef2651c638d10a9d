// The line: thinning, spacing, layers with their reveal, and drawing.
#include <gtest/gtest.h>

#include <cmath>

#include "Classes/Plotting/LinePlot.h"
#include "Foundation/NSException.h"
#include "Support/PlotterHost.h"

namespace zelkon {
namespace {

using Host = PlotterHost<LinePlot>;

// The plot begins 33 points from the left and is 57 narrower than the layer, begins 41 from the bottom and is 96 lower.
ValueDictionary withoutValueLabels() { return {{"DisplayYLabels", false}}; }

PlotEntryListRef daysOf(size_t count) {
  std::vector<PlotEntryRef> entries;
  for (size_t i = 0; i < count; ++i)
    entries.push_back(plotEntry(static_cast<double>(i), ("Day " + std::to_string(i)).c_str()));
  return plotEntries(entries);
}

TEST(LineThinning, MoreEntriesThanPointsArePickedAtEvenSteps) {
  Host host(257.4, 296, withoutValueLabels());
  const PlotEntryListRef data = daysOf(300);
  host.plot->setPlotData(data);
  ASSERT_NEAR(host.plot->plotRect().size.width, 200.4, 1e-9);
  EXPECT_EQ(host.plot->pixelsPerRenderPoint(), 1);
  ASSERT_EQ(host.plot->plotData()->count(), 200u);
  for (size_t i = 0; i < 200; ++i)
    EXPECT_EQ(host.plot->plotData()->y(i), std::floor(static_cast<double>(i) * 300 / 200.4)) << i;
}

TEST(LineThinning, FewerEntriesThanPointsAreAllKeptAsCopies) {
  Host host(257, 296, withoutValueLabels());
  const PlotEntryListRef data = daysOf(50);
  host.plot->setPlotData(data);
  EXPECT_EQ(host.plot->pixelsPerRenderPoint(), 4);
  ASSERT_EQ(host.plot->plotData()->count(), 50u);
  EXPECT_NE(host.plot->plotData()->entry(7), data->entry(7));
  EXPECT_EQ(*host.plot->plotData()->entry(7), *data->entry(7));
}

TEST(LineThinning, AsManyEntriesAsPointsAreAllKept) {
  Host host(257, 296, withoutValueLabels());
  host.plot->setPlotData(daysOf(200));
  EXPECT_EQ(host.plot->pixelsPerRenderPoint(), 1);
  EXPECT_EQ(host.plot->plotData()->count(), 200u);
}

TEST(LineThinning, HappensWithoutCategoryLabelsToo) {
  Host host(257.4, 296, {{"DisplayYLabels", false}, {"DisplayXLabels", false}});
  host.plot->setPlotData(daysOf(300));
  EXPECT_EQ(host.plot->plotData()->count(), 200u);
  EXPECT_EQ(host.plot->pixelsPerRenderPoint(), 1);
  EXPECT_TRUE(host.plot->xLabels().empty());
  EXPECT_TRUE(host.drawn().texts.empty());
}

TEST(LineThinning, NoEntriesMakeNoLabelsAndDrawNone) {
  Host host(257, 296, withoutValueLabels());
  host.plot->setPlotData(plotAmounts({}));
  EXPECT_TRUE(host.plot->xLabels().empty());
  EXPECT_TRUE(host.drawn().texts.empty());
  host.plot->doDisplay();
  CATransaction::flush();
}

TEST(LineThinning, APlotWithoutAWidthKeepsTheDataAndMakesNoLabels) {
  Host host(57, 296, withoutValueLabels());
  host.plot->setPlotData(daysOf(5));
  ASSERT_EQ(host.plot->plotRect().size.width, 0);
  EXPECT_EQ(host.plot->pixelsPerRenderPoint(), 1);
  EXPECT_EQ(host.plot->plotData()->count(), 5u);
  EXPECT_TRUE(host.plot->xLabels().empty());
}

TEST(LineThinning, APlotOfNegativeWidthIsLikeOneWithoutAWidth) {
  Host host(20, 296, withoutValueLabels());
  host.plot->setPlotData(daysOf(5));
  ASSERT_LT(host.plot->plotRect().size.width, 0);
  EXPECT_EQ(host.plot->pixelsPerRenderPoint(), 1);
  EXPECT_EQ(host.plot->plotData()->count(), 5u);
  EXPECT_TRUE(host.plot->xLabels().empty());
  host.plot->doDisplay();
  CATransaction::flush();
  ASSERT_EQ(host.root->sublayers().size(), 1u);
  const CALayerRef clip = host.root->sublayers()[0];
  EXPECT_EQ(clip->frame(), CGRectMake(33, 41, 0, 200));
  EXPECT_EQ(clip->sublayers()[0]->bounds().size, CGSizeMake(0, 200));
  EXPECT_EQ(clip->sublayers()[0]->contents(), nullptr);
  for (double x = -20; x < 60; ++x) EXPECT_EQ(host.plot->entryForPoint({x, 60}), nullptr) << x;

  host.root->setBounds(CGRectMake(0, 0, 257, 296));
  host.plot->generatePlot();
  EXPECT_EQ(host.plot->plotData()->count(), 5u) << "with room the data are drawn";
  EXPECT_EQ(host.plot->pixelsPerRenderPoint(), 40);
}

TEST(LineThinning, TheValueAxisIsThatOfAllEntries) {
  Host host(257.4, 296, withoutValueLabels());
  std::vector<double> amounts(300, 1);
  amounts[3] = 1000;  // between the picked second and fourth
  host.plot->setPlotData(plotAmounts(amounts));
  for (size_t i = 0; i < host.plot->plotData()->count(); ++i) EXPECT_EQ(host.plot->plotData()->y(i), 1) << i;
  EXPECT_EQ(host.plot->yTickmarks().back(), 1000);
}

TEST(LineGeneration, AGenerationAskedForMeanwhileIsDropped) {
  struct Nested : LinePlot {
    int generations = 0;
    void createPlot() override {
      ++generations;
      LinePlot::createPlot();
      generatePlot();
    }
  };
  PlotterHost<Nested> host(257, 296);
  host.plot->setPlotData(daysOf(50));
  EXPECT_EQ(host.plot->generations, 1);
  host.plot->setPlotData(daysOf(50));
  EXPECT_EQ(host.plot->generations, 2);
}

TEST(LineGeneration, AnExceptionDoesNotBlockTheNextGeneration) {
  struct Failing : LinePlot {
    bool fails = true;
    void createPlot() override {
      if (fails) NSRaise(NSInternalInconsistencyException, "no plot");
      LinePlot::createPlot();
    }
  };
  PlotterHost<Failing> host(257, 296);
  EXPECT_THROW(host.plot->setPlotData(daysOf(5)), NSException);
  EXPECT_EQ(host.root->contents(), nullptr);
  host.plot->fails = false;
  host.plot->setPlotData(daysOf(5));
  EXPECT_NE(host.root->contents(), nullptr);
}

TEST(LineGeneration, TheFirstPlotHasNoRoomSetAsideForItsLabelsAndLaterOnesHave) {
  Host host(257, 296, withoutValueLabels());
  host.plot->setPlotData(daysOf(3));
  EXPECT_EQ(host.plot->plotRect(), CGRectMake(33, 41, 200, 200));
  host.plot->setPlotData(daysOf(3));
  EXPECT_EQ(host.plot->plotRect(), CGRectMake(33, 56, 200, 185));
}

struct Shown : Host {
  Shown() : Host(457, 296, withoutValueLabels()) {
    plot->setPlotData(plotAmounts({100, 50}));
    plot->doDisplay();
  }
  CALayerRef clip() const { return root->sublayers()[0]; }
  CALayerRef body() const { return clip()->sublayers()[0]; }
};

TEST(LineLayers, ABodyInAClipLieOverThePlot) {
  const Shown host;
  ASSERT_EQ(host.root->sublayers().size(), 1u);
  EXPECT_EQ(host.clip()->bounds(), CGRectMake(33, 41, 400, 200));
  EXPECT_EQ(host.clip()->frame(), CGRectMake(33, 41, 400, 200));
  EXPECT_EQ(host.clip()->anchorPoint(), CGPointMake(0, 0.5));
  EXPECT_TRUE(host.clip()->masksToBounds());
  EXPECT_TRUE(host.clip()->needsDisplay());
  EXPECT_TRUE(host.clip()->needsDisplayOnBoundsChange());
  EXPECT_EQ(host.body()->frame(), CGRectMake(33, 41, 400, 200));
  EXPECT_EQ(host.body()->delegate(), host.plot);
  EXPECT_TRUE(host.body()->needsDisplay());
  EXPECT_TRUE(host.body()->needsDisplayOnBoundsChange());
}

TEST(LineLayers, TheFirstDisplayWipesTheLineInWithinASecond) {
  const Shown host;
  ASSERT_EQ(host.delegate->told.size(), 1u);
  EXPECT_EQ(host.delegate->told[0].key, "bounds");
  const CABasicAnimation* wipe = host.clip()->animationForKey("bounds");
  ASSERT_NE(wipe, nullptr);
  EXPECT_EQ(wipe->keyPath, "bounds");
  EXPECT_EQ(std::get<CGRect>(*wipe->fromValue), CGRectMake(33, 41, 0, 200));
  EXPECT_EQ(std::get<CGRect>(*wipe->toValue), CGRectMake(33, 41, 400, 200));
  EXPECT_EQ(wipe->duration, 1);
  EXPECT_EQ(wipe->timingFunction, kCAMediaTimingFunctionLinear);
  EXPECT_EQ(wipe->fillMode, CAFillMode::forwards);
  EXPECT_FALSE(wipe->removedOnCompletion);
  EXPECT_EQ(wipe->valueForKey("key"), Value("bounds"));
}

TEST(LineLayers, ARedisplayAddsThemAgainWithoutTheWipe) {
  Shown host;
  host.plot->redisplay();
  ASSERT_EQ(host.root->sublayers().size(), 2u);
  EXPECT_TRUE(host.root->sublayers()[1]->animationKeys().empty());
  host.plot->doDisplay();
  EXPECT_EQ(host.root->sublayers().size(), 3u);
  EXPECT_EQ(host.delegate->told.size(), 1u);
}

TEST(LineLayers, ARedisplayBeforeTheFirstDisplayDoesNothing) {
  Host host(457, 296);
  host.plot->setPlotData(plotAmounts({100, 50}));
  host.plot->redisplay();
  EXPECT_TRUE(host.root->sublayers().empty());
}

TEST(LineLayers, LaterDataRemoveThem) {
  Shown host;
  host.plot->setPlotData(plotAmounts({1, 2}));
  EXPECT_TRUE(host.root->sublayers().empty());
}

// The body of a plot of 400 by 200 at (33, 41), drawn; `origin` moves the body's own coordinates.
struct Drawing : Host {
  CALayerRef body = CALayer::layer();
  explicit Drawing(const std::vector<double>& amounts, ValueDictionary chosen = withoutValueLabels())
      : Host(457, 296, std::move(chosen)) {
    plot->setPlotData(plotAmounts(amounts));
    body->setFrame(plot->plotRect());
  }
  Drawn draw() {
    RecordingContext context;
    plot->drawLayer(*body, context);
    return Drawn(*context.snapshot());
  }
  std::vector<CGPoint> line() {
    const Drawn drawn = draw();
    std::vector<CGPoint> points;
    for (const CGPathElement& element : drawn.strokes.at(0).path.elements()) points.push_back(element.points[0]);
    return points;
  }
};

TEST(LineDrawing, PointsAreSpacedFromTheLeftEdgeAndLeaveTwoPointsAbove) {
  Drawing drawing({100, 50, 0, 25});
  EXPECT_EQ(drawing.line(), (std::vector<CGPoint>{{0, 198}, {100, 99}, {200, 0}, {300, 49.5}}));
}

TEST(LineDrawing, StaysThreePointsClearOfTheBottomButOnItAtZero) {
  Drawing drawing({100, 0.5, 0, 1.6});  // 0.99 and 3.168 points up
  const std::vector<CGPoint> line = drawing.line();
  EXPECT_EQ(line[1].y, 3);
  EXPECT_EQ(line[2].y, 0);
  EXPECT_NEAR(line[3].y, 3.168, 1e-9);
}

TEST(LineDrawing, AValueOnePointAboveTheBottomIsDrawnAtThree) {
  Drawing drawing({100, 1, 0});
  drawing.body->setBounds(CGRectMake(0, 0, 400, 102));
  const std::vector<CGPoint> line = drawing.line();
  EXPECT_EQ(line[0].y, 100);
  EXPECT_EQ(line[1].y, 3);
  EXPECT_EQ(line[2].y, 0);
}

TEST(LineDrawing, NegativeAmountsLieBetweenTheBottomAndTheZeroLine) {
  Drawing drawing({100, -100, 0});
  EXPECT_EQ(drawing.line(), (std::vector<CGPoint>{{0, 198}, {400.0 / 3, 0}, {2 * (400.0 / 3), 99}}));
}

TEST(LineDrawing, StaysThreePointsBelowZeroWhereItsCoordinatesReachBelow) {
  Drawing drawing({100, 50, 49.5, 49});
  drawing.body->setBounds(CGRectMake(0, -99, 400, 200));
  const std::vector<CGPoint> line = drawing.line();
  EXPECT_EQ(line[1].y, 0);
  EXPECT_EQ(line[2].y, -3);  // 0.99 below
  EXPECT_EQ(line[3].y, -3);  // 1.98 below
}

TEST(LineDrawing, WithAllValuesPositiveMagnitudesAreDrawn) {
  Drawing drawing({100, -50}, {{"DisplayYLabels", false}, {"AllValuesPositive", true}});
  EXPECT_EQ(drawing.line(), (std::vector<CGPoint>{{0, 198}, {200, 99}}));
}

TEST(LineDrawing, TheStrokeIsTwoPointsOfDarkGrey) {
  Drawing drawing({100, 50});
  const Drawn drawn = drawing.draw();
  ASSERT_EQ(drawn.strokes.size(), 1u);
  EXPECT_EQ(drawn.strokes[0].style.width, 2);
  EXPECT_EQ(drawn.strokes[0].color, (RGBA{1.0 / 3, 1.0 / 3, 1.0 / 3, 1}));
}

TEST(LineDrawing, TheFillReachesFromTheBottomToTheHighestPoint) {
  Drawing drawing({50, 100});
  const Drawn drawn = drawing.draw();
  ASSERT_EQ(drawn.clips.size(), 1u);
  std::vector<CGPoint> area;
  for (const CGPathElement& element : drawn.clips[0].path.elements())
    if (element.type != CGPathElement::Type::close) area.push_back(element.points[0]);
  EXPECT_EQ(area, (std::vector<CGPoint>{{0, 99}, {200, 198}, {200, 0}, {0, 0}}));
  ASSERT_EQ(drawn.gradients.size(), 1u);
  EXPECT_EQ(drawn.gradients[0].placement, (CGGradientPlacement{{0, 0}, {0, 198}, 0, 0}));
  EXPECT_EQ(drawn.gradients[0].gradient->stops()[0].color, (RGBA{1, 1, 1, 0}));
  EXPECT_EQ(drawn.gradients[0].gradient->stops()[1].color, (RGBA{0.66, 0.79, 0.16, 1}));
}

TEST(LineDrawing, TheFillReachesTheHighestPointWhereverItIs) {
  Drawing drawing({50, 100, 25});
  const Drawn drawn = drawing.draw();
  ASSERT_EQ(drawn.gradients.size(), 1u);
  EXPECT_EQ(drawn.gradients[0].placement, (CGGradientPlacement{{0, 0}, {0, 198}, 0, 0}));
}

TEST(LineDrawing, TheHighestPointMayLieBelowTheTopOfThePlot) {
  Drawing drawing({10, 51, 20});  // lines up to 60
  ASSERT_EQ(drawing.plot->yTickmarks().back(), 60);
  const Drawn drawn = drawing.draw();
  ASSERT_EQ(drawn.gradients.size(), 1u);
  EXPECT_NEAR(drawn.gradients[0].placement.end.y, 198 * 0.85, 1e-9);
}

// Half of the stroke lies outside the filled area and shows all the same.
TEST(LineDrawing, TheFillIsClippedToItsAreaAndTheStrokeIsNot) {
  Drawing drawing({50, 100, 25});
  RecordingContext context;
  drawing.plot->drawLayer(*drawing.body, context);
  std::vector<size_t> clips{0};  // in force, for each saved state
  std::optional<size_t> overGradient, overStroke;
  const auto list = context.snapshot();
  for (const DisplayList::Command& command : list->commands()) {
    if (std::holds_alternative<DisplayList::Save>(command)) clips.push_back(clips.back());
    if (std::holds_alternative<DisplayList::Restore>(command)) clips.pop_back();
    if (std::holds_alternative<DisplayList::Clip>(command)) ++clips.back();
    if (std::holds_alternative<DisplayList::Gradient>(command)) overGradient = clips.back();
    if (std::holds_alternative<DisplayList::Stroke>(command)) overStroke = clips.back();
  }
  EXPECT_EQ(overGradient, 1u);
  EXPECT_EQ(overStroke, 0u);
  EXPECT_EQ(clips.size(), 1u) << "every saved state is restored";
}

TEST(LineLayers, TheRootLayersPictureHasItsSize) {
  Host host(457, 296);
  host.plot->setPlotData(plotAmounts({100, 50}));
  ASSERT_NE(host.root->contents(), nullptr);
  EXPECT_EQ(host.root->contents()->size(), CGSizeMake(457, 296));
}

TEST(LineDrawing, HitRectanglesAreCentredOnThePointsAndAsHighAsTheLine) {
  Drawing drawing({100, 50});
  drawing.draw();
  const PlotEntryListRef data = drawing.plot->plotData();
  EXPECT_EQ(drawing.plot->rectForEntry(data->entry(0)), CGRectMake(33 - 100, 41, 200, 198));
  EXPECT_EQ(drawing.plot->rectForEntry(data->entry(1)), CGRectMake(133, 41, 200, 99));
  EXPECT_EQ(drawing.plot->entryForPoint({140, 60}), data->entry(1));
  EXPECT_EQ(drawing.plot->entryForPoint({140, 141}), nullptr);
  EXPECT_EQ(drawing.plot->entryForPoint({132, 230}), data->entry(0));
}

TEST(LineDrawing, ASingleEntryStrokesNothingAndCanBeHit) {
  Drawing drawing({100});
  EXPECT_TRUE(drawing.draw().strokes.empty());
  EXPECT_EQ(drawing.plot->rectForEntry(drawing.plot->plotData()->entry(0)), CGRectMake(33 - 200, 41, 400, 198));
}

TEST(LineDrawing, NothingIsDrawnWithoutEntries) {
  Drawing drawing({});
  const Drawn drawn = drawing.draw();
  EXPECT_TRUE(drawn.strokes.empty());
  EXPECT_TRUE(drawn.gradients.empty());
}

}  // namespace
}  // namespace zelkon
