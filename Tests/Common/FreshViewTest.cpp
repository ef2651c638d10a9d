// What a fresh view takes over, and when it opens.
#include <gtest/gtest.h>

#include "Common/HostedChartFixture.h"

namespace zelkon {
namespace {

using Calls = std::vector<std::string>;
const Calls kPieDisplayed{"SpendingTrendsHaveDisplayed"}, kGraphDisplayed{"GraphHasDisplayed"};

TEST(FreshView, ShowsTheDataBeforeThoseThatWereRefused) {
  Hosted host(kPie);
  host.show(slices({1, 3}));
  EXPECT_TRUE(host.outcome.keptData);
  host.setData(pageValue({ValueDictionary{{"key", "A"}, {"value", "12"}}}));
  EXPECT_FALSE(host.outcome.keptData);
  host.turn();
  const size_t lines = host.log.size();
  EXPECT_EQ(lines, 2u);
  host.resize({400, 300});
  EXPECT_EQ(host.chart->view()->reachableEntries().size(), 2u);
  host.print();
  host.resize({500, 300});
  EXPECT_EQ(host.log.size(), lines);
}

TEST(FreshView, OfAPieShowsTheLastData) {
  Hosted host(kPie);
  host.show(slices({1, 3}));
  host.setData(slices({1, 2, 3}));
  host.resize({400, 300});
  EXPECT_EQ(host.chart->view()->reachableEntries().size(), 3u);
}

TEST(FreshView, OfAChartOverTimeShowsTheFirstDataThatWereDisplayed) {
  Hosted host(kOverTime);
  host.show(periods({"100", "50"}));
  EXPECT_TRUE(host.outcome.keptData);
  host.setData(periods({"1", "2", "3"}));
  EXPECT_FALSE(host.outcome.keptData);
  EXPECT_TRUE(host.outcome.result.has_value());
  host.resize({400, 300});
  EXPECT_EQ(host.chart->view()->numberOfPeriods(), 2u);
}

TEST(FreshView, OfAChartThatHadNoRoomShowsTheLastData) {
  Hosted host(kOverTime, {0, 0});
  host.show(periods({"100"}));
  host.setData(periods({"1", "2", "3"}));
  host.turn();
  host.resize({500, 320});
  host.print();
  host.turn(3);
  EXPECT_EQ(host.barCount(), 3u);
  host.resize({400, 320});
  EXPECT_EQ(host.barCount(), 3u);
}

TEST(FreshView, KeepsTheDataOfAShownChartThatIsOutOfSightForAWhile) {
  Hosted host(kOverTime);
  host.show(periods({"100"}));
  host.resize({0, 0});
  host.setData(periods({"1", "2", "3"}));
  host.resize({500, 320});
  EXPECT_EQ(host.barCount(), 1u);
}

TEST(FreshView, OpensAChartThatGetsItsFirstRoomAndAnnouncesIt) {
  for (const char* plot : {kPie, kOverTime}) {
    Hosted host(plot, {0, 0});
    host.show(plot == kPie ? slices({1, 2}) : periods({"100", "50"}));
    EXPECT_EQ(host.calls, Calls()) << plot;
    host.resize({500, 320});
    EXPECT_GT(host.chart->view()->numberOfPendingAnimations(), 0u) << plot;
    EXPECT_EQ(host.calls, Calls()) << plot;
    host.turn(0.1);
    host.turn(3);
    EXPECT_EQ(host.calls, plot == kPie ? kPieDisplayed : kGraphDisplayed);
  }
}

TEST(FreshView, OpensAChartThatFailedOnceItsBoxIsLargeEnough) {
  Hosted host(kOverTime, {300, 90});
  host.show(periods({"100", "-50"}));
  EXPECT_EQ(host.calls, Calls());
  const size_t lines = host.log.size();
  ASSERT_GT(lines, 0u);
  host.resize({300, 300});
  EXPECT_EQ(host.chart->view()->numberOfPendingAnimations(), 2u);
  host.turn(0.1);
  host.turn(3);
  EXPECT_EQ(host.calls, kGraphDisplayed);
  EXPECT_EQ(host.log.size(), lines) << host.log.back();
}

TEST(FreshView, OfAChartThatFailedIsMadeFromTheLastData) {
  Hosted host(kOverTime, {300, 90});
  host.show(periods({"100", "-50"}));
  host.setData(periods({"10", "20", "-30"}));
  EXPECT_TRUE(host.outcome.keptData);
  host.resize({300, 300});
  EXPECT_EQ(host.barCount(), 3u);
}

TEST(FreshView, DuringTheOpeningAnnouncesOnceAtOnceWhatThePageIsOwed) {
  for (const char* plot : {kPie, kOverTime}) {
    Hosted host(plot);
    host.setData(plot == kPie ? slices({1, 2}) : periods({"100", "50"}));
    host.turn();
    host.turn();
    host.turn(0.05);
    host.resize({400, 300});
    EXPECT_EQ(host.chart->view()->numberOfPendingAnimations(), 0u) << plot;
    EXPECT_EQ(host.calls, plot == kPie ? kPieDisplayed : kGraphDisplayed);
    host.resize({300, 300});
    host.turn(3);
    EXPECT_EQ(host.calls.size(), 1u) << plot;
  }
}

TEST(FreshView, BeforeTheFirstFrameOpensAsAnyOther) {
  Hosted host(kOverTime);
  host.setData(periods({"100", "50"}));
  host.chart->setSize({400, 300});
  host.turn();
  EXPECT_EQ(host.chart->view()->numberOfPendingAnimations(), 2u);
  host.turn();
  host.turn(3);
  EXPECT_EQ(host.calls, kGraphDisplayed);
}

TEST(FreshView, TakesOverThePointerWithoutACall) {
  Hosted host(kPie, {300, 200});
  host.show(slices({1, 1}));
  host.calls.clear();
  host.chart->mouseMoved({150, 60});
  ASSERT_EQ(host.calls, Calls{"SpendingTrendsSliceHoverIndex"});
  host.resize({320, 220});
  EXPECT_EQ(host.calls.size(), 1u);
  host.chart->mouseExited();
  EXPECT_EQ(host.calls.size(), 2u);
}

TEST(FreshView, TakesOverThePlaceOfTheKeyboard) {
  Hosted host(kOverTime, {500, 320});
  host.show(periods({"100", "50", "70"}));
  EXPECT_EQ(host.chart->stepToEnd(true)->label.string(), "C");
  host.resize({400, 320});
  ASSERT_TRUE(host.overTime().currentHoverEntry());
  EXPECT_EQ(*host.overTime().currentHoverEntry()->humanX, "C");
  EXPECT_EQ(host.chart->step(1)->label.string(), "A");
  EXPECT_EQ(host.chart->step(-2)->label.string(), "B");
}

TEST(FreshView, IsNotMadeOfAStoppedChart) {
  Hosted host(kOverTime);
  host.show(periods({"100", "50"}));
  host.chart->stop();
  host.resize({400, 300});
  EXPECT_FALSE(host.chart->view()->layer());
  EXPECT_TRUE(host.print().gradients.empty());
  EXPECT_TRUE(host.screen().gradients.empty());
  host.resize({500, 300});
  EXPECT_FALSE(host.chart->view()->layer());
}

TEST(DestroyedChart, CallsNothingThoughItsOpeningRan) {
  for (const char* plot : {kPie, kOverTime}) {
    Hosted host(plot);
    host.setData(plot == kPie ? slices({1, 2}) : periods({"100", "50"}));
    host.turn();
    host.turn(0.05);
    host.chart.reset();
    host.turn();
    host.turn(3);
    EXPECT_EQ(host.calls, Calls()) << plot;
  }
}

TEST(HostedChartFactory, RaisesForANameThatNoChartHas) {
  EXPECT_THROW(Hosted("Pie"), NSException);
  const PlainDevice device;
  EXPECT_THROW(HostedChart(std::nullopt, {10, 10}, ChartLayout::literal, {}), NSException);
}

}  // namespace
}  // namespace zelkon
