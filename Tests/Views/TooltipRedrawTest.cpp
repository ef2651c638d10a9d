// The bubble over a line is one layer: it is painted anew in each size it takes. And entries that differ in one text
// only have bubbles of their own.
#include <gtest/gtest.h>

#include "QuartzCore/CATextLayer.h"
#include "Support/ChartHost.h"

namespace zelkon {
namespace {

std::string textOfBubble(const ChartHost& host) {
  const CALayerRef bubble = host.chart().currentHoverLayer();
  return std::dynamic_pointer_cast<CATextLayer>(bubble->sublayers().back())->plainString();
}

Value withoutValueLabels() { return pageArray({ValueDictionary{{"key", "DisplayYLabels"}, {"value", false}}}); }

struct Line : ChartHost {
  explicit Line(const ValueArray& entries) : ChartHost({357, 296}) {
    call("SetPlotOptions", {withoutValueLabels()});
    show(pageArray(entries));
  }
};

// The height that the bubble's picture fades over: that of the bounds it was painted for.
double paintedHeight(const CALayerRef& bubble) {
  const Drawn drawn(*bubble->contents()->recording());
  return drawn.gradients.at(0).placement.end.y;
}

TEST(TooltipOverLine, ABubbleOfAnotherSizeIsPaintedAnew) {
  ValueArray entries;
  for (int i = 0; i < 12; ++i)
    entries.emplace_back(chartEntry("Day", "5", i == 4 ? "$5 and some words that take another line" : "$5"));
  Line host(entries);
  ASSERT_TRUE(host.isLine());
  host.moveOver(3);
  const CALayerRef bubble = host.chart().currentHoverLayer();
  ASSERT_NE(bubble->contents(), nullptr);
  // Two lines of 13 and twice the descent are 31 points, and 10 more above and below.
  EXPECT_EQ(bubble->contents()->size().height, 51);
  EXPECT_EQ(paintedHeight(bubble), 51);
  host.moveOver(4);
  ASSERT_EQ(host.chart().currentHoverLayer(), bubble);
  ASSERT_GT(bubble->bounds().size.height, 51);
  EXPECT_EQ(bubble->contents()->size(), bubble->bounds().size);
  EXPECT_EQ(paintedHeight(bubble), bubble->bounds().size.height);
  host.moveOver(5);
  EXPECT_EQ(bubble->contents()->size(), bubble->bounds().size);
  EXPECT_EQ(paintedHeight(bubble), 51);
}

// Two entries beside each other that differ in `key` alone.
ValueArray pairThatDiffersIn(const char* key, size_t count) {
  ValueDictionary first = chartEntry("May", "5", "$5");
  first["mediumHumanX"] = "Ma";
  first["shortHumanX"] = "M";
  first["shortHumanXSubtitle"] = "2009";
  ValueDictionary second = first;
  second[key] = "6";
  ValueArray entries{first, second};
  while (entries.size() < count) entries.emplace_back(chartEntry(std::to_string(entries.size()), "5"));
  return entries;
}

TEST(Tooltip, EntriesThatDifferInOneTextAreTwoOverBars) {
  for (const char* key : {"humanX", "mediumHumanX", "shortHumanX", "shortHumanXSubtitle", "humanY"}) {
    ChartHost host;
    host.show(pageArray(pairThatDiffersIn(key, 2)));
    ASSERT_FALSE(host.isLine());
    host.moveOver(0);
    const CALayerRef first = host.chart().currentHoverLayer();
    ASSERT_NE(first, nullptr) << key;
    EXPECT_EQ(textOfBubble(host), "Ma\n$5") << key;
    host.moveOver(1);
    EXPECT_NE(host.chart().currentHoverLayer(), first) << key;
    EXPECT_EQ(host.chart().currentHoverEntry(), host.plotter()->plotData()->entry(1)) << key;
  }
}

TEST(Tooltip, EntriesThatDifferInOneTextAreTwoOverALine) {
  for (const char* key : {"humanX", "mediumHumanX", "shortHumanX", "shortHumanXSubtitle", "humanY"}) {
    Line host(pairThatDiffersIn(key, 12));
    ASSERT_TRUE(host.isLine());
    host.moveOver(0);
    const CALayerRef bubble = host.chart().currentHoverLayer();
    ASSERT_NE(bubble, nullptr) << key;
    const CGPoint place = bubble->position();
    host.moveOver(1);
    EXPECT_EQ(host.chart().currentHoverEntry(), host.plotter()->plotData()->entry(1)) << key;
    EXPECT_GT(bubble->position().x, place.x) << key;
  }
}

}  // namespace
}  // namespace zelkon
