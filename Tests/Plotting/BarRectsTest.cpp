// Where bars stand beside an amount of nothing, and the size of the picture behind them.
#include <gtest/gtest.h>

#include "Classes/Plotting/BarPlot.h"
#include "Support/PlotterHost.h"

namespace zelkon {
namespace {

using Host = PlotterHost<BarPlot>;

ValueDictionary withoutValueLabels() { return {{"DisplayYLabels", false}}; }

TEST(BarPlot, AZeroBetweenTwoOthersLeavesItsPlaceEmpty) {
  Host host(657, 311, withoutValueLabels());
  const PlotEntryListRef data = plotAmounts({100, 0, 50});
  host.plot->setPlotData(data);
  EXPECT_EQ(host.plot->rectForEntry(data->entry(0)), CGRectMake(73, 56, 146, 200));
  EXPECT_EQ(host.plot->rectForEntry(data->entry(1)), NSZeroRect);
  EXPECT_EQ(host.plot->rectForEntry(data->entry(2)), CGRectMake(73 + 2 * 186, 56, 146, 100));
  EXPECT_EQ(host.plot->entryForPoint({73 + 186 + 70, 57}), nullptr);
  host.plot->doDisplay();
  ASSERT_EQ(host.root->sublayers().size(), 2u);
  EXPECT_EQ(host.root->sublayers()[1]->frame().origin.x, 445);
}

TEST(BarPlot, TheRootLayersPictureHasItsSize) {
  Host host(600, 311);
  host.plot->setPlotData(plotAmounts({1, 2}));
  ASSERT_NE(host.root->contents(), nullptr);
  EXPECT_EQ(host.root->contents()->size(), CGSizeMake(600, 311));
  host.root->setBounds(CGRectMake(10, 20, 333, 222));
  host.plot->setPlotData(plotAmounts({1, 2}));
  EXPECT_EQ(host.root->contents()->size(), CGSizeMake(333, 222));
}

TEST(BarPlot, APictureOfAFractionalSizeIsCutToWholePoints) {
  Host host(600.9, 311.5);
  host.plot->setPlotData(plotAmounts({1, 2}));
  EXPECT_EQ(host.root->contents()->size(), CGSizeMake(600, 311));
}

}  // namespace
}  // namespace zelkon
