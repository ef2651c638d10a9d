// The pie's data: shares, colours, radius, and what page script can ask of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Classes/Views/PiePlotView.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

PiePlotView& pieOf(ViewHost& host) { return static_cast<PiePlotView&>(*host.view); }

std::vector<double> fractionsOf(ViewHost& host) {
  std::vector<double> fractions;
  for (const PiePlotEntryRef& entry : pieOf(host).piePlotData()->entries()) fractions.push_back(entry->fraction);
  return fractions;
}

std::vector<std::string> keysOf(ViewHost& host) {
  std::vector<std::string> keys;
  for (const PiePlotEntryRef& entry : pieOf(host).piePlotData()->entries()) keys.push_back(entry->key.description());
  return keys;
}

std::shared_ptr<PiePlotData> dataOf(const std::vector<Value>& values) {
  std::vector<PiePlotEntryRef> entries;
  for (const Value& value : values) {
    entries.push_back(std::make_shared<PiePlotEntry>());
    entries.back()->key = "k";
    entries.back()->value = value;
  }
  return std::make_shared<PiePlotData>(std::move(entries));
}

void expectHue(const NSColor& color, double red, double green, double blue) {
  const auto rgba = color.getRedGreenBlueAlpha();
  EXPECT_NEAR(rgba.red, red, 1e-4);
  EXPECT_NEAR(rgba.green, green, 1e-4);
  EXPECT_NEAR(rgba.blue, blue, 1e-4);
  EXPECT_EQ(rgba.alpha, 1);
}

TEST(PiePlotData, ValuesBecomeSharesOfTheirSum) {
  ViewHost host;
  ASSERT_TRUE(host.call("SetPlotData", {pageAmounts({10, 30, 60})}));
  const std::vector<double> fractions = fractionsOf(host);
  ASSERT_EQ(fractions.size(), 3u);
  EXPECT_NEAR(fractions[0], 0.1, 1e-15);
  EXPECT_NEAR(fractions[1], 0.3, 1e-15);
  EXPECT_NEAR(fractions[2], 0.6, 1e-15);
  EXPECT_TRUE(host.log.empty());
}

TEST(PiePlotData, APieOfZerosHasEqualSlices) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({0, 0, 0, 0})});
  EXPECT_EQ(fractionsOf(host), (std::vector<double>{0.25, 0.25, 0.25, 0.25}));
}

TEST(PiePlotData, NegativeValuesMakeNegativeShares) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({-1, 3})});
  EXPECT_EQ(fractionsOf(host), (std::vector<double>{-0.5, 1.5}));
}

TEST(PiePlotData, AnEmptyArrayIsEmptyDataNotNone) {
  ViewHost host;
  EXPECT_EQ(host.view->plotData(), nullptr);
  host.call("SetPlotData", {pageArray({})});
  ASSERT_NE(host.view->plotData(), nullptr);
  EXPECT_EQ(host.view->plotData()->count(), 0u);
}

TEST(PiePlotData, ElementsWithoutKeyOrValueAreSkippedInOrder) {
  ViewHost host;
  host.call("SetPlotData", {pageArray({pageEntry("a", 1), pageEntry("b", 2), pageEntry("c", {}),
                                       ValueDictionary{{"value", 3}}, pageEntry("d", 4)})});
  EXPECT_EQ(keysOf(host), (std::vector<std::string>{"a", "b", "d"}));
  EXPECT_TRUE(host.log.empty());
}

TEST(PiePlotData, TheFirstUndefinedOrNullElementEndsTheArray) {
  ViewHost host;
  host.call("SetPlotData", {pageArray({pageEntry("a", 1), Value::undefined(), pageEntry("b", 2)})});
  EXPECT_EQ(keysOf(host), (std::vector<std::string>{"a"}));
  host.call("SetPlotData", {pageArray({pageEntry("a", 1), pageEntry("b", 1), Value(), pageEntry("c", 2)})});
  EXPECT_EQ(keysOf(host), (std::vector<std::string>{"a", "b"}));
}

TEST(PiePlotData, TheArrayHeldAlreadyIsNotComputedAgain) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  const auto held = pieOf(host).piePlotData();
  held->entries()[0]->fraction = 0.125;
  host.view->setPlotData(held);
  EXPECT_EQ(pieOf(host).piePlotData(), held);
  EXPECT_EQ(held->entries()[0]->fraction, 0.125);
}

TEST(PiePlotData, TheArrayHandedInIsNotChanged) {
  ViewHost host;
  const auto given = dataOf({1, 3});
  host.view->setPlotData(given);
  EXPECT_EQ(given->entries()[0]->fraction, 0);
  EXPECT_EQ(fractionsOf(host), (std::vector<double>{0.25, 0.75}));
  EXPECT_NE(pieOf(host).piePlotData()->entries()[0], given->entries()[0]);
}

TEST(PiePlotData, AmountsThatAreNoNumbersAreLoggedAndLeaveNoData) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts({1, 3})});
  ASSERT_TRUE(host.call("SetPlotData", {pageArray({pageEntry("a", "12.5")})}));
  ASSERT_EQ(host.log.size(), 2u);
  EXPECT_EQ(host.log[0], "Exception thrown while processing javascript bridge at [PiePlotView js_setPlotData:].");
  EXPECT_EQ(host.log[1].find("-[NSCFString decimalValue]: unrecognized selector sent to instance 0x"), 0u)
      << host.log[1];
  EXPECT_EQ(host.view->plotData(), nullptr) << "the old data was dropped before";
}

TEST(PiePlotData, BooleansAreNumbersAndKeysMayBeAnything) {
  ViewHost host;
  host.call("SetPlotData", {pageArray({pageEntry(7, true), pageEntry(true, 3)})});
  EXPECT_EQ(fractionsOf(host), (std::vector<double>{0.25, 0.75}));
  EXPECT_EQ(keysOf(host), (std::vector<std::string>{"7", "1"}));
}

TEST(PiePlotData, ValuesThatAreNotFiniteNeitherHangNorFail) {
  ViewHost host;
  for (const double odd : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e308}) {
    host.call("SetPlotData", {pageAmounts({1, odd, odd, 2})});
    ASSERT_EQ(fractionsOf(host).size(), 4u);
    host.setFrame(CGRectMake(0, 0, 301, 200));
    for (const CALayerRef& slice : pieOf(host).slicesLayer()->sublayers()) {
      EXPECT_TRUE(std::isfinite(slice->transform().m11));
      EXPECT_TRUE(std::isfinite(slice->position().x));
      RecordingContext context;
      slice->drawInContext(context);
      const auto list = context.snapshot();
      for (const DisplayList::Command& command : list->commands()) {
        const auto* fill = std::get_if<DisplayList::Fill>(&command);
        if (fill != nullptr) {
          EXPECT_NEAR(fill->path.boundingBox().size.height, 0, 1e-9) << "no area";
        }
      }
    }
    for (const CALayerRef& label : pieOf(host).textLabelsLayer()->sublayers())
      EXPECT_TRUE(std::isfinite(label->position().x) && std::isfinite(label->position().y));
    host.move(150, 110);
    host.click(160, 100);
    host.exit();
  }
  EXPECT_TRUE(host.log.empty());
}

TEST(PiePlotData, TheRadiusLeavesSeventeenPointsBelowAndTenAllRound) {
  ViewHost host;
  EXPECT_EQ(pieOf(host).pieRadius(), 81.5);
  host.setFrame(CGRectMake(0, 0, 100, 400));
  EXPECT_EQ(pieOf(host).pieRadius(), 40);
  host.setFrame(CGRectMake(0, 0, 20, 37));
  EXPECT_EQ(pieOf(host).pieRadius(), 0);
  host.setFrame(CGRectMake(0, 0, 10, 300));
  EXPECT_EQ(pieOf(host).pieRadius(), -5);
}

TEST(PiePlotData, HuesFollowTheNumberOfSlices) {
  ViewHost host;
  const PiePlotView& pie = pieOf(host);
  expectHue(pie._sliceColorAtIndex(0, 0), 0.205, 0.2296, 0.82);
  expectHue(pie._sliceColorAtIndex(0, 1), 0.205, 0.2296, 0.82);
  expectHue(pie._sliceColorAtIndex(1, 2), 0.2542, 0.82, 0.205);
  expectHue(pie._sliceColorAtIndex(1, 3), 0.82, 0.205, 0.2419);
  expectHue(pie._sliceColorAtIndex(2, 3), 0.2542, 0.82, 0.205);
  expectHue(pie._sliceColorAtIndex(1, 4), 0.82, 0.205, 0.7216);
  expectHue(pie._sliceColorAtIndex(2, 4), 0.82, 0.4264, 0.205);
  expectHue(pie._sliceColorAtIndex(3, 4), 0.4756, 0.82, 0.205);
  expectHue(pie._sliceColorAtIndex(4, 5), 0.205, 0.82, 0.6724);
  expectHue(pie._sliceColorAtIndex(1, 6), 0.7954, 0.205, 0.82);
  expectHue(pie._sliceColorAtIndex(2, 6), 0.82, 0.205, 0.2296);
  expectHue(pie._sliceColorAtIndex(3, 6), 0.82, 0.7954, 0.205);
}

// Back from the colour to its hue; the colours are of saturation 0.75.
double hueOf(const NSColor& color) {
  const auto rgba = color.getRedGreenBlueAlpha();
  const double highest = std::max({rgba.red, rgba.green, rgba.blue});
  const double span = highest - std::min({rgba.red, rgba.green, rgba.blue});
  EXPECT_NEAR(highest, 0.82, 1e-7);
  EXPECT_NEAR(span / highest, 0.75, 1e-12);
  double sextant = 0;
  if (highest == rgba.red)
    sextant = (rgba.green - rgba.blue) / span;
  else if (highest == rgba.green)
    sextant = 2 + (rgba.blue - rgba.red) / span;
  else
    sextant = 4 + (rgba.red - rgba.green) / span;
  return sextant < 0 ? sextant / 6 + 1 : sextant / 6;
}

TEST(PiePlotData, HuesOfPiesOfOneToSixSlices) {
  ViewHost host;
  const std::vector<std::vector<double>> table{{0.66},
                                               {0.66, 0.32},
                                               {0.66, 0.99, 0.32},
                                               {0.66, 0.86, 0.06, 0.26},
                                               {0.66, 0.86, 0.06, 0.26, 0.46},
                                               {0.66, 0.8267, 0.9933, 0.16, 0.3267, 0.4933}};
  for (const std::vector<double>& row : table)
    for (size_t i = 0; i < row.size(); ++i)
      EXPECT_NEAR(hueOf(pieOf(host)._sliceColorAtIndex(static_cast<int64_t>(i), static_cast<int64_t>(row.size()))),
                  row[i], 5e-5)
          << i << " of " << row.size();
}

TEST(PiePlotData, ConstantsOfTheHueRuleAreOfSinglePrecision) {
  ViewHost host;
  const auto first = pieOf(host)._sliceColorAtIndex(0, 1).getRedGreenBlueAlpha();
  EXPECT_NEAR(first.blue, 0.8199999928474426, 1e-16);
  EXPECT_NEAR(first.red, 0.8199999928474426 * 0.25, 1e-16);
  const double hue = 0.6600000262260437;
  EXPECT_NEAR(first.green, 0.8199999928474426 * (1 - 0.75 * (hue * 6 - 3)), 1e-15);
}

TEST(PiePlotData, TheEmptyPieIsGrey) {
  ViewHost host;
  const NSColor color = pieOf(host)._emptyPieColor();
  EXPECT_EQ(color.components(), (std::vector<double>{0.55, 1}));
  EXPECT_EQ(color.colorSpace(), CGColorSpaceCalibratedWhite());
}

TEST(PiePlotData, SliceColorAtIndexWritesTheComponentsIntoThePagesObject) {
  ViewHost host;
  const auto components = std::make_shared<MemoryScriptObject>();
  ASSERT_TRUE(host.call("SliceColorAtIndex", {1, 3, components}));
  EXPECT_NEAR(components->valueForKey("red").doubleValue(), 0.82, 1e-7);
  EXPECT_NEAR(components->valueForKey("green").doubleValue(), 0.205, 1e-7);
  EXPECT_NEAR(components->valueForKey("blue").doubleValue(), 0.2419, 1e-6);
  EXPECT_EQ(components->valueForKey("alpha").doubleValue(), 1);
}

TEST(PiePlotData, SliceColorAtIndexWritesInTheOrderRedGreenBlueAlpha) {
  struct Components : MemoryScriptObject {
    std::string keys;
    void setValue(const Value& value, std::string_view key) override {
      keys += std::string(key) + " ";
      MemoryScriptObject::setValue(value, key);
    }
  };
  ViewHost host;
  const auto components = std::make_shared<Components>();
  host.call("SliceColorAtIndex", {"1", 3.9, components});
  EXPECT_EQ(components->keys, "red green blue alpha ");
  EXPECT_NEAR(components->valueForKey("red").doubleValue(), 0.82, 1e-7) << "texts and fractions as integers";
}

TEST(PiePlotData, SliceColorAtIndexBearsAnyIndexAndCount) {
  ViewHost host;
  for (const double index : {-1.0, 1e18, -1e300, 1e300})
    for (const double count : {-3.0, 0.0, 1e18}) {
      const auto components = std::make_shared<MemoryScriptObject>();
      host.call("SliceColorAtIndex", {index, count, components});
      EXPECT_TRUE(std::isfinite(components->valueForKey("red").doubleValue()));
    }
  host.call("SliceColorAtIndex", {1, 3, Value()});
}

}  // namespace
}  // namespace zelkon
