// An array that offers a table becomes the same entries, and fails in the same way, as one read element by element.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "Classes/Views/ScriptEntries.h"
#include "Foundation/NSException.h"
#include "Support/ChartHost.h"

namespace zelkon {
namespace {

const std::vector<std::string> kKeys = {"humanX", "mediumHumanX", "shortHumanX", "shortHumanXSubtitle", "humanY", "y"};
using Kind = WebScriptTable::Kind;

bool isObject(const Value& value) { return value.isDictionary() || value.isArray(); }

// The leading elements of an array that are dictionaries, as a table.
class MemoryTable : public WebScriptTable {
 public:
  explicit MemoryTable(const ValueArray& elements) {
    for (const Value& element : elements) {
      if (!element.isDictionary()) break;
      for (const std::string& key : kKeys) {
        const Value cell = element.valueForKey(key);
        cells_.push_back(cell.isUndefined() ? Value() : MemoryScriptObject::valueFromPage(cell));
        kinds_.push_back(kindOf(cell));
      }
      amounts_.push_back(plainAmount(cells_.back()));
    }
  }
  size_t rowCount() const override { return amounts_.size(); }
  const Kind* kinds() const override { return kinds_.data(); }
  const double* amounts() const override { return amounts_.data(); }
  Value value(size_t row, size_t column) const override {
    ++valuesRead;
    return cells_[row * kKeys.size() + column];
  }
  mutable size_t valuesRead = 0;

 private:
  static Kind kindOf(const Value& cell) {
    if (cell.isNull() || cell.isUndefined()) return Kind::null;
    if (cell.isBoolean()) return cell.boolValue() ? Kind::yes : Kind::no;
    if (cell.isNumber()) return Kind::number;
    if (isObject(cell)) return Kind::object;
    return cell.length() > 0 ? Kind::text : Kind::emptyText;
  }
  // Digits only; everything else is left to the chart.
  static double plainAmount(const Value& cell) {
    if (!cell.isString() || cell.string().empty() || cell.string().size() > 15) return NAN;
    for (const char c : cell.string())
      if (c < '0' || c > '9') return NAN;
    return std::stod(cell.string());
  }
  std::vector<Value> cells_;
  std::vector<Kind> kinds_;
  std::vector<double> amounts_;
};

class TableArray : public MemoryScriptObject {
 public:
  explicit TableArray(const ValueArray& elements)
      : MemoryScriptObject(elements), table(std::make_shared<MemoryTable>(elements)) {}
  std::shared_ptr<const WebScriptTable> webScriptTable(const std::vector<std::string_view>& keys) override {
    return std::equal(keys.begin(), keys.end(), kKeys.begin(), kKeys.end()) ? table : nullptr;
  }
  std::shared_ptr<MemoryTable> table;
};

struct Outcome {
  std::vector<PlotEntry> entries;
  std::string failure;
};

Outcome read(const std::shared_ptr<MemoryScriptObject>& array) {
  Outcome outcome;
  try {
    const PlotEntryListRef list = ScriptEntries(Value(array), [&](bool isAmount) {
      if (!isAmount) NSRaise(NSInvalidArgumentException, "no amount");
    });
    for (size_t i = 0; i < list->count(); ++i) {
      outcome.entries.push_back(*list->entry(i));
      EXPECT_EQ(list->y(i), outcome.entries.back().y);
    }
  } catch (const NSException& exception) {
    outcome.failure = exception.name() + ": " + exception.reason();
  }
  return outcome;
}

// Reasons name the object by where it lies in memory, which is another place for each reading.
std::string withoutAddress(const std::string& reason) { return reason.substr(0, reason.find("0x")); }

void expectSame(const ValueArray& elements) {
  const Outcome one = read(std::make_shared<MemoryScriptObject>(Value(elements)));
  const Outcome table = read(std::make_shared<TableArray>(elements));
  EXPECT_EQ(withoutAddress(one.failure), withoutAddress(table.failure));
  ASSERT_EQ(one.entries.size(), table.entries.size());
  for (size_t i = 0; i < one.entries.size(); ++i) EXPECT_TRUE(one.entries[i] == table.entries[i]) << i;
}

TEST(ScriptTable, EntriesAreThoseOfReadingOneByOne) {
  ValueDictionary full = chartEntry("September 2009", "12", "$12.00");
  full["mediumHumanX"] = "Sep 2009";
  full["shortHumanX"] = "Sep";
  full["shortHumanXSubtitle"] = "2009";
  const ValueArray elements = {chartEntry("", "1"), full, chartEntry("B", "1", ""), chartEntry("C", "7.25 EUR")};
  const PlotEntryListRef list = ScriptEntries(Value(std::make_shared<TableArray>(elements)), [](bool) {});
  ASSERT_EQ(list->count(), 2u);
  EXPECT_EQ(list->y(0), 12);
  EXPECT_EQ(list->y(1), 7.25);
  EXPECT_EQ(*list->entry(0)->humanX, "September 2009");
  EXPECT_EQ(*list->entry(0)->mediumHumanX, "Sep 2009");
  EXPECT_EQ(*list->entry(0)->shortHumanX, "Sep");
  EXPECT_EQ(list->entry(0)->shortHumanXSubtitle, Value("2009"));
  EXPECT_EQ(*list->entry(0)->humanY, "$12.00");
  EXPECT_EQ(*list->entry(1)->humanX, "C");
  expectSame(elements);
}

TEST(ScriptTable, TextsOfPlainEntriesAreNotReadBeforeTheyAreNeeded) {
  const auto array = std::make_shared<TableArray>(ValueArray(1000, chartEntry("A", "5")));
  const PlotEntryListRef list = ScriptEntries(Value(array), [](bool) {});
  EXPECT_EQ(list->count(), 1000u);
  EXPECT_EQ(array->table->valuesRead, 0u);
  EXPECT_EQ(*list->entry(999)->humanX, "A");
  EXPECT_GT(array->table->valuesRead, 0u);
}

TEST(ScriptTable, WhatEndsTheReadingEndsItWithATableToo) {
  for (const Value& last : {Value(), Value::undefined(), Value(1.0), Value("text"), Value(true), Value(ValueArray{})})
    expectSame({chartEntry("A", "1"), last, chartEntry("B", "2")});
  for (const char* amount : {"abc", "-", "1e999", ".", " "})
    expectSame({chartEntry("A", "1"), chartEntry("B", amount), chartEntry("C", "3")});
}

// Every key of each element gets anything a page may put there.
TEST(ScriptTable, MalformedEntriesMakeNoDifference) {
  const std::vector<Value> odd = {Value(),
                                  Value::undefined(),
                                  Value(""),
                                  Value(true),
                                  Value(3.5),
                                  Value(ValueArray{}),
                                  Value(ValueDictionary{}),
                                  Value("12"),
                                  Value("x"),
                                  Value("-4.5e1 kr"),
                                  Value("1e999"),
                                  Value("\xC3\xA9\xE2\x82\xAC")};
  for (const std::string& key : kKeys) {
    for (const Value& value : odd) {
      ValueDictionary entry = chartEntry("B", "2");
      entry[key] = value;
      SCOPED_TRACE(key + " " + value.description());
      if (isObject(value) && key == "shortHumanXSubtitle") continue;  // objects are equal only to themselves
      expectSame({chartEntry("A", "1"), entry, chartEntry("C", "3")});
    }
  }
  std::mt19937 random(7);
  for (int round = 0; round < 400; ++round) {
    ValueArray elements;
    for (int i = 0; i < 6; ++i) {
      ValueDictionary entry = chartEntry("B", "2");
      for (const std::string& key : kKeys) {
        const Value& value = odd[random() % odd.size()];
        if (random() % 8 == 0 && !isObject(value)) entry[key] = value;
      }
      elements.emplace_back(entry);
    }
    SCOPED_TRACE(round);
    expectSame(elements);
  }
}

TEST(ScriptTable, AFailureIsLoggedAndTheEarlierDataKept) {
  ChartHost host;
  host.show(Value(std::make_shared<TableArray>(ValueArray{chartEntry("A", "1"), chartEntry("B", "2")})));
  host.setData(Value(std::make_shared<TableArray>(ValueArray{chartEntry("C", "1"), chartEntry("D", "none")})));
  EXPECT_EQ(host.names(), (std::vector<std::string>{"A", "B"}));
  EXPECT_EQ(std::count(host.log.begin(), host.log.end(),
                       "Exception thrown while processing javascript bridge at [SpendingOverTimeBarView "
                       "js_setPlotData:]."),
            1);
}

TEST(ScriptTable, AThinnedLineReadsTheTextsOfWhatItShowsOnly) {
  ChartHost host;
  const auto array = std::make_shared<TableArray>(ValueArray(20000, chartEntry("A", "5")));
  host.show(Value(array));
  ASSERT_TRUE(host.isLine());
  EXPECT_EQ(host.data()->count(), 20000u);
  EXPECT_LT(array->table->valuesRead, 20000u);
}

}  // namespace
}  // namespace zelkon
