// What the page's entries become, whatever the page puts into them.
#include <gtest/gtest.h>

#include <cmath>

#include "Support/ChartHost.h"

namespace zelkon {
namespace {

const char* const kGuardLine =
    "Exception thrown while processing javascript bridge at [SpendingOverTimeBarView js_setPlotData:].";

TEST(ChartData, AnEntryKeepsItsTextsAndItsAmountAsANumber) {
  ChartHost host;
  ValueDictionary entry = chartEntry("September 2009", "12.5", "$12.50");
  entry["mediumHumanX"] = "Sep 2009";
  entry["shortHumanX"] = "Sep";
  entry["shortHumanXSubtitle"] = "2009";
  entry["value"] = "77";
  host.setData(pageArray({entry}));
  ASSERT_EQ(host.data()->count(), 1u);
  const PlotEntryRef kept = host.data()->entry(0);
  EXPECT_EQ(*kept->humanX, "September 2009");
  EXPECT_EQ(*kept->humanY, "$12.50");
  EXPECT_EQ(kept->y, 12.5);
  EXPECT_EQ(*kept->mediumHumanX, "Sep 2009");
  EXPECT_EQ(*kept->shortHumanX, "Sep");
  EXPECT_EQ(kept->shortHumanXSubtitle, Value("2009"));
  EXPECT_TRUE(host.log.empty());
}

TEST(ChartData, AnEmptySubtitleIsKeptAndAnEmptyShortNameIsNot) {
  ChartHost host;
  ValueDictionary entry = chartEntry("A", "1");
  entry["mediumHumanX"] = "";
  entry["shortHumanX"] = "";
  entry["shortHumanXSubtitle"] = "";
  host.setData(pageArray({entry}));
  const PlotEntryRef kept = host.data()->entry(0);
  EXPECT_EQ(kept->mediumHumanX, nullptr);
  EXPECT_EQ(kept->shortHumanX, nullptr);
  EXPECT_EQ(kept->shortHumanXSubtitle, Value(""));
}

TEST(ChartData, ASubtitleIsKeptWhateverItIsUnlessNull) {
  ChartHost host;
  ValueDictionary number = chartEntry("A", "1"), nothing = chartEntry("B", "2");
  number["shortHumanXSubtitle"] = 2009.0;
  nothing["shortHumanXSubtitle"] = Value();
  host.setData(pageArray({number, nothing, chartEntry("C", "3")}));
  EXPECT_EQ(host.data()->entry(0)->shortHumanXSubtitle, Value(2009));
  EXPECT_TRUE(host.data()->entry(1)->shortHumanXSubtitle.isNull());
  EXPECT_TRUE(host.data()->entry(2)->shortHumanXSubtitle.isNull());
}

struct Text {
  const char* text;
  double amount;
};
class ScannedAmount : public testing::TestWithParam<Text> {};

TEST_P(ScannedAmount, IsTheLongestBeginningThatIsANumber) {
  ChartHost host;
  host.setData(pageArray({chartEntry("A", GetParam().text)}));
  ASSERT_NE(host.data(), nullptr);
  ASSERT_EQ(host.data()->count(), 1u);
  EXPECT_EQ(host.data()->entry(0)->y, GetParam().amount);
}

INSTANTIATE_TEST_SUITE_P(ChartData, ScannedAmount,
                         testing::Values(Text{"12.5", 12.5}, Text{"12.5 EUR", 12.5}, Text{" \n\t12", 12}, Text{"+5", 5},
                                         Text{"-5", -5}, Text{".5", 0.5}, Text{"5.", 5}, Text{"1e3", 1000},
                                         Text{"1e", 1}, Text{"1,234", 1}, Text{"1.2.3", 1.2}, Text{"0x10", 0},
                                         Text{"1e-400", 0}));

class UnscannableAmount : public testing::TestWithParam<const char*> {};

TEST_P(UnscannableAmount, EndsTheCallWithTheEarlierDataKept) {
  ChartHost host;
  host.show(chartAmounts({"1", "2"}));
  host.log.clear();
  host.setData(pageArray({chartEntry("new", "3"), chartEntry("bad", GetParam())}));
  ASSERT_EQ(host.log.size(), 3u);
  EXPECT_NE(host.log[0].find("Assertion failure in -[SpendingOverTimeBarView js_setPlotData:]"), std::string::npos)
      << host.log[0];
  EXPECT_NE(host.log[0].find("Classes/Views/BarOrLineView:343"), std::string::npos) << host.log[0];
  EXPECT_EQ(host.log[1], kGuardLine);
  EXPECT_EQ(host.log[2], "Invalid parameter not satisfying: didScanYValue");
  EXPECT_EQ(host.names(), (std::vector<std::string>{"A", "B"}));
  EXPECT_EQ(host.plotter()->plotData()->count(), 2u);
}

INSTANTIATE_TEST_SUITE_P(ChartData, UnscannableAmount,
                         testing::Values("abc", "$12", "-", "--5", ".", "e5", " ", "nan", "NaN", "inf", "Infinity",
                                         "1e999", "-1e999",
                                         "\xE2\x88\x92"
                                         "5"));

// The labels of so many digits would leave no room for bars.
void hideValueLabels(ChartHost& host, bool allPositive = false) {
  host.setOptions({ValueDictionary{{"key", "DisplayYLabels"}, {"value", false}},
                   ValueDictionary{{"key", "AllValuesPositive"}, {"value", allPositive}}});
}

TEST(ChartData, AmountsWhoseAxisIsNotFiniteEndTheCallWithTheEarlierDataKept) {
  for (const auto& amounts : {std::vector<const char*>{"1.7e308", "-1e300"},
                              std::vector<const char*>{"-1.7e308", "1e300"}, std::vector<const char*>{"1.7e308"},
                              std::vector<const char*>{"-1.7e308"}, std::vector<const char*>{"1e308", "-1e308"}}) {
    ChartHost host;
    hideValueLabels(host);
    host.setData(chartAmounts(amounts));
    ASSERT_EQ(host.log.size(), 3u) << amounts[0];
    EXPECT_EQ(host.log[1], kGuardLine);
    EXPECT_EQ(host.log[2], "Invalid parameter not satisfying: didScanYValue");
    EXPECT_EQ(host.data(), nullptr);
    EXPECT_EQ(host.plotter(), nullptr);
    host.show(chartAmounts({"1", "2", "3"}));
    EXPECT_EQ(host.log.size(), 3u);
    host.setData(chartAmounts(amounts));
    EXPECT_EQ(host.log.size(), 6u);
    EXPECT_EQ(host.names(), (std::vector<std::string>{"A", "B", "C"}));
  }
}

TEST(ChartData, GreatAmountsWithAnAxisAreShown) {
  struct Great {
    std::vector<const char*> amounts;
    bool allPositive;
  };
  for (const Great& great :
       {Great{{"1e308"}, false}, Great{{"7e307", "-7e307"}, false}, Great{{"1e308", "-1e308"}, true}}) {
    ChartHost host;
    hideValueLabels(host, great.allPositive);
    host.show(chartAmounts(great.amounts));
    EXPECT_TRUE(host.log.empty()) << great.amounts[0];
    ASSERT_NE(host.plotter(), nullptr);
    const Gridlines& lines = host.plotter()->yTickmarks();
    EXPECT_TRUE(std::isfinite(lines.back() - lines.front()));
    EXPECT_EQ(host.view->layer()->sublayers().size(), great.amounts.size());
  }
}

TEST(ChartData, AnUnscannableAmountLeavesAViewWithoutDataWithoutThem) {
  ChartHost host;
  host.setData(pageArray({chartEntry("A", "1"), chartEntry("B", "letters")}));
  EXPECT_EQ(host.data(), nullptr);
  EXPECT_EQ(host.plotter(), nullptr);
  host.show(chartAmounts({"1"}));
  EXPECT_EQ(host.names(), (std::vector<std::string>{"A"}));
}

TEST(ChartData, EntriesWithoutANeededTextAreSkippedSilently) {
  for (const char* key : {"humanX", "humanY", "y"}) {
    ChartHost host;
    ValueDictionary missing = chartEntry("missing", "1"), null = missing, empty = missing;
    missing.erase(key);
    null[key] = Value();
    empty[key] = "";
    host.setData(pageArray({chartEntry("first", "1"), missing, null, empty, chartEntry("last", "2")}));
    EXPECT_EQ(host.names(), (std::vector<std::string>{"first", "last"})) << key;
    EXPECT_TRUE(host.log.empty()) << key;
  }
}

TEST(ChartData, ATextOfTheWrongTypeEndsTheCallWithTheEarlierDataKept) {
  const std::vector<Value> wrong{Value(12.5), Value(true), Value(ValueArray{"1"}), Value(ValueDictionary{{"a", "1"}})};
  for (const char* key : {"humanX", "humanY", "y", "mediumHumanX", "shortHumanX"}) {
    for (const Value& value : wrong) {
      ChartHost host;
      host.show(chartAmounts({"1"}));
      host.log.clear();
      ValueDictionary bad = chartEntry("bad", "1");
      bad[key] = value;
      host.setData(pageArray({chartEntry("good", "1"), bad}));
      ASSERT_EQ(host.log.size(), 2u) << key << " " << value.description();
      EXPECT_EQ(host.log[0], kGuardLine);
      EXPECT_NE(host.log[1].find("length]: unrecognized selector sent to instance"), std::string::npos) << host.log[1];
      EXPECT_EQ(host.names(), (std::vector<std::string>{"A"}));
    }
  }
}

TEST(ChartData, ANullElementEndsTheArray) {
  ChartHost host;
  host.setData(pageArray({chartEntry("A", "1"), Value(), chartEntry("C", "3")}));
  EXPECT_EQ(host.names(), (std::vector<std::string>{"A"}));
}

TEST(ChartData, AnUndefinedElementEndsTheArray) {
  ChartHost host;
  host.setData(pageArray({chartEntry("A", "1"), Value::undefined(), chartEntry("C", "3")}));
  EXPECT_EQ(host.names(), (std::vector<std::string>{"A"}));
}

TEST(ChartData, ElementsWithoutPropertiesEndTheCallWithTheEarlierDataKept) {
  for (const Value& element : {Value(5.0), Value("text"), Value(true)}) {
    ChartHost host;
    host.show(chartAmounts({"1"}));
    host.log.clear();
    host.setData(pageArray({element}));
    ASSERT_EQ(host.log.size(), 2u);
    EXPECT_EQ(host.log[0], kGuardLine);
    EXPECT_EQ(host.names(), (std::vector<std::string>{"A"}));
  }
}

TEST(ChartData, ANestedArrayIsAnElementWithoutTheTexts) {
  ChartHost host;
  host.setData(pageArray({Value(ValueArray{chartEntry("in", "1")}), chartEntry("out", "1")}));
  EXPECT_EQ(host.names(), (std::vector<std::string>{"out"}));
}

TEST(ChartData, NoArrayAtAllKeepsTheEarlierData) {
  for (const Value& argument : {Value(5.0), Value("text"), Value::undefined()}) {
    ChartHost host;
    host.show(chartAmounts({"1"}));
    host.log.clear();
    host.setData(argument);
    ASSERT_EQ(host.log.size(), 2u);
    EXPECT_EQ(host.log[0], kGuardLine);
    EXPECT_EQ(host.names(), (std::vector<std::string>{"A"}));
  }
}

TEST(ChartData, NullIsAnArrayWithoutElements) {
  ChartHost host;
  host.setData(Value());
  ASSERT_NE(host.data(), nullptr);
  EXPECT_EQ(host.data()->count(), 0u);
}

}  // namespace
}  // namespace zelkon
