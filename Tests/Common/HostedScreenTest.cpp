// What is on the screen and on paper, where the pointer finds it, and what data given again and printing leave alone.
#include <gtest/gtest.h>

#include <cmath>

#include "AppKit/NSGraphicsContext.h"
#include "Common/HostedChartFixture.h"

namespace zelkon {
namespace {

std::vector<CALayerRef> barsOf(const Hosted& host) { return host.chart->view()->layer()->sublayers(); }

TEST(DataGivenAgain, LeaveTheLayersOfBarsAndOfALineAsTheyAre) {
  for (const double width : {500.0, 100.0}) {
    Hosted host(kOverTime, {width, 320});
    host.show(periods({"100", "-50", "70"}));
    const std::vector<CALayerRef> shown = barsOf(host);
    for (int i = 0; i < 50; ++i) {
      host.setData(periods({"5", "6"}));
      if (i % 2 == 0) host.turn(1.0 / 60);
    }
    host.turn(1);
    EXPECT_EQ(barsOf(host), shown) << width;
    EXPECT_EQ(host.calls.size(), 1u) << width;
  }
}

TEST(DataGivenAgain, LetAnOpeningGoOn) {
  Hosted host(kOverTime), undisturbed(kOverTime);
  for (Hosted* each : {&host, &undisturbed}) each->setData(periods({"100", "-50"}));
  std::vector<size_t> heard, heardUndisturbed;
  for (int i = 0; i < 40; ++i) {
    for (Hosted* each : {&host, &undisturbed}) each->turn(each == &host ? 1.0 / 60 : 0);
    if (i == 3) host.setData(periods({"7"}));
    heard.push_back(host.calls.size());
    heardUndisturbed.push_back(undisturbed.calls.size());
  }
  EXPECT_EQ(host.calls.size(), 1u);
  EXPECT_EQ(heard, heardUndisturbed);
}

// What printing must not alter.
struct Look {
  std::vector<CALayerRef> layers;
  std::vector<CGRect> bounds;
  std::vector<std::vector<std::string>> animations;
  size_t pending;
  CALayerRef bubble;
  friend bool operator==(const Look&, const Look&) = default;
};
Look lookOf(const Hosted& host) {
  Look look{
      barsOf(host), {}, {}, host.chart->view()->numberOfPendingAnimations(), host.chart->view()->transientLayer()};
  for (const CALayerRef& layer : look.layers) {
    look.bounds.push_back(layer->presentation(CACurrentMediaTime()).bounds);
    look.animations.push_back(layer->animationKeys());
  }
  return look;
}

TEST(PrintingAChart, LeavesAnOpeningAndItsEndAlone) {
  for (const double width : {500.0, 100.0}) {
    Hosted host(kOverTime, {width, 320}), undisturbed(kOverTime, {width, 320});
    for (Hosted* each : {&host, &undisturbed}) each->setData(periods({"100", "-50", "20"}));
    for (int i = 0; i < 90; ++i) {
      host.turn(1.0 / 60);
      undisturbed.turn();
      const Look before = lookOf(host);
      EXPECT_FALSE(host.print().gradients.empty());
      EXPECT_EQ(lookOf(host), before) << width << " frame " << i;
      EXPECT_EQ(host.calls, undisturbed.calls) << width << " frame " << i;
    }
    EXPECT_EQ(host.calls.size(), 1u);
  }
}

TEST(PrintingAChart, LeavesAnOpenBubbleAndPaperHasNone) {
  Hosted host(kOverTime);
  host.show(periods({"100", "50"}));
  host.chart->stepToEnd(false);
  host.turn(1);
  ASSERT_NE(host.screen().text("$A"), nullptr);
  const Look before = lookOf(host);
  const Drawn paper = host.print();
  EXPECT_EQ(paper.text("$A"), nullptr);
  EXPECT_EQ(lookOf(host), before);
  host.turn();
  EXPECT_NE(host.screen().text("$A"), nullptr);
  EXPECT_EQ(host.chart->step(1)->label.string(), "B");
}

TEST(PrintingAChart, LeavesTheGeometryOfAChangedFrame) {
  Hosted host(kOverTime);
  host.show(periods({"100", "50"}));
  host.chart->setFrame({400, 500});
  host.turn();
  const Look before = lookOf(host);
  const CGRect plot = host.plotter()->plotRect();
  host.print();
  host.turn();
  host.turn(1);
  EXPECT_EQ(lookOf(host), before);
  EXPECT_EQ(host.plotter()->plotRect(), plot);
}

class RaisingContext : public RecordingContext {
  void doGradient(const CGGradientRef&, const CGGradientPlacement&, double, CGBlendMode) override {
    NSRaise(NSInternalInconsistencyException, "no gradients");
  }
};

TEST(PrintingAChart, ThatRaisesLeavesTheScreenAlone) {
  Hosted host(kOverTime);
  host.show(periods({"100", "50"}));
  const Look before = lookOf(host);
  {
    RaisingContext context;
    EXPECT_THROW(host.chart->print(context), NSException);
  }
  EXPECT_EQ(lookOf(host), before);
  EXPECT_EQ(NSGraphicsContext::currentContext(), nullptr);
}

TEST(FrameInAScroller, KeepsHitsWhereThePictureIs) {
  Hosted host(kOverTime, {500, 200});
  host.show(periods({"100", "50"}));
  host.chart->setVisibleRect({{0, 50}, {500, 150}});
  host.chart->setFrame({500, 400});
  host.turn();
  const CGPoint middle = *host.chart->view()->reachableEntries()[0].point;
  ASSERT_GT(400 - middle.y, 200) << "below the end of the former frame";
  host.chart->mouseMoved({middle.x, 400 - middle.y});
  EXPECT_TRUE(host.overTime().currentHoverEntry());
}

TEST(ReadableLayout, IsWholePointsSoThatThePictureIsWhereTheHitsAre) {
  for (const CGSize box : {CGSize{500.4, 320.8}, CGSize{333.3333, 217.6}, CGSize{500, 320}}) {
    Hosted host(kOverTime, box, ChartLayout::readable);
    host.show(periods({"100", "50"}));
    const CGRect bounds = host.chart->view()->bounds();
    EXPECT_EQ(bounds.size.width, std::ceil(box.width));
    EXPECT_EQ(bounds.size.height, std::ceil(box.height));
    EXPECT_EQ(host.chart->view()->layer()->frame(), bounds);
    // A point of the box is as far from the lower left corner as in the picture.
    const CGRect bar = host.plotter()->rectForEntry(host.plotter()->plotData()->entry(0));
    host.chart->mouseMoved({CGRectGetMinX(bar) + 0.1, box.height - CGRectGetMinY(bar) - 0.1});
    EXPECT_TRUE(host.overTime().currentHoverEntry());
    host.chart->mouseMoved({CGRectGetMinX(bar) - 0.1, box.height - CGRectGetMinY(bar) - 0.1});
    EXPECT_FALSE(host.overTime().currentHoverEntry());
  }
}

TEST(ReadableLayout, ShowsAChartOverTimeScaledDownInABoxTooSmallForIt) {
  Hosted host(kOverTime, {300, 70}, ChartLayout::readable);
  host.show(periods({"100", "-50"}));
  EXPECT_TRUE(host.log.empty());
  EXPECT_EQ(host.calls.size(), 1u);
  EXPECT_EQ(host.chart->boxPerLayoutPoint(), 0.5);
  EXPECT_EQ(host.chart->view()->bounds(), CGRectMake(0, 0, 600, 140));
  const CGPoint middle = *host.chart->view()->reachableEntries()[1].point;
  host.chart->mouseMoved({middle.x / 2, 70 - middle.y / 2});
  ASSERT_TRUE(host.overTime().currentHoverEntry());
  EXPECT_EQ(*host.overTime().currentHoverEntry()->humanX, "B");
  EXPECT_EQ(host.chart->stepToEnd(false)->label.string(), "A");
  EXPECT_EQ(*host.overTime().currentHoverEntry()->humanX, "A");
}

TEST(ReadableLayout, OfABoxThatGrowsAgainIsAsLargeAsTheBox) {
  Hosted host(kOverTime, {80, 70}, ChartLayout::readable);
  host.show(periods({"100", "-50"}));
  EXPECT_EQ(host.chart->view()->bounds(), CGRectMake(0, 0, 160, 140));
  host.resize({400, 300});
  EXPECT_EQ(host.chart->boxPerLayoutPoint(), 1);
  EXPECT_EQ(host.chart->view()->bounds(), CGRectMake(0, 0, 400, 300));
}

TEST(ReadableLayout, LeavesPiesAtTheSizeOfTheirBox) {
  Hosted host(kPie, {80, 70}, ChartLayout::readable);
  host.show(slices({1, 2}));
  EXPECT_EQ(host.chart->view()->bounds(), CGRectMake(0, 0, 80, 70));
}

TEST(LiteralLayout, IsTheBoxHoweverSmallOrFractional) {
  Hosted host(kOverTime, {300.4, 90.2});
  EXPECT_EQ(host.chart->view()->bounds(), CGRectMake(0, 0, 300.4, 90.2));
}

TEST(ScaledDownChart, IsDrawnAndPrintedWithinItsBox) {
  Hosted host(kOverTime, {80, 70}, ChartLayout::readable);
  host.show(periods({"100", "-50"}));
  for (const Drawn& drawn : {host.screen(), host.print()}) {
    ASSERT_FALSE(drawn.gradients.empty());
  }
  RecordingContext context;
  host.chart->print(context);
  double smallest = 1;
  const auto printed = context.snapshot();
  for (const DisplayList::Command& command : printed->commands())
    if (const auto* concat = std::get_if<DisplayList::Concat>(&command))
      smallest = std::min(smallest, concat->transform.a);
  EXPECT_EQ(smallest, 0.5);
}

}  // namespace
}  // namespace zelkon
