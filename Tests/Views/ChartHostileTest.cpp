// Pages that do what they like, in any order: nothing breaks, and the page hears of its chart at most once.
#include <gtest/gtest.h>

#include <random>

#include "Foundation/NSException.h"
#include "Support/ChartHost.h"

namespace zelkon {
namespace {

class Page {
 public:
  explicit Page(unsigned seed) : random_(seed) {}
  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  Value anyValue() {
    switch (below(9)) {
      case 0:
        return {};
      case 1:
        return Value::undefined();
      case 2:
        return below(2) == 0;
      case 3:
        return below(1000) - 500.5;
      case 4:
        return "";
      case 5:
        return ValueArray{1, "two"};
      case 6:
        return ValueDictionary{{"key", "value"}};
      case 7:
        return "1e308";
      default:
        return std::to_string(below(2000) - 1000);
    }
  }
  Value entry() {
    ValueDictionary entry = chartEntry("Month", std::to_string(below(2000) - 1000));
    if (below(2) == 0) entry["shortHumanX"] = "Jan";
    if (below(2) == 0) entry["shortHumanXSubtitle"] = std::to_string(2000 + below(20));
    static const char* const keys[] = {"humanX", "humanY", "y", "mediumHumanX", "shortHumanX", "shortHumanXSubtitle"};
    if (below(20) == 0) entry[keys[below(6)]] = anyValue();
    return entry;
  }
  Value entries() {
    ValueArray elements;
    for (int i = below(80); i > 0; --i) elements.push_back(below(100) == 0 ? anyValue() : entry());
    return below(20) == 0 ? anyValue() : pageArray(std::move(elements));
  }
  ValueArray options() {
    static const char* const keys[] = {"DisplayXLabels", "DisplayYLabels", "AllValuesPositive",
                                       "YTickMarksExtendFullWidth", "CurrencyID"};
    ValueArray options;
    for (const char* key : keys)
      if (below(3) == 0) options.emplace_back(pageEntry(key, anyValue()));
    return options;
  }
  void act(ChartHost& host) {
    switch (below(9)) {
      case 0:
        return host.setOptions(options());
      case 1:
      case 2:
        return host.setData(entries());
      case 3:
        return host.setFrame(CGRectMake(below(50), below(50), below(900) - 50, below(500) - 50));
      case 4:
        return host.exit();
      case 5:
        if (below(4) == 0) host.view->webPlugInStop();
        return;
      case 6: {
        RecordingContext paper;
        return host.view->renderForPrintingInContext(paper);
      }
      case 7:
        return host.move(below(900), below(500));
      default:
        return host.turn(below(100) * 0.02);
    }
  }

 private:
  std::mt19937 random_;
};

TEST(HostilePages, MayCallAnythingInAnyOrder) {
  for (unsigned seed = 1; seed <= 150; ++seed) {
    Page page(seed);
    ChartHost host({static_cast<double>(page.below(900)), 311});
    for (int step = 0; step < 40; ++step) {
      // A frame for a chart that cannot be drawn raises to the host; script calls never do.
      try {
        page.act(host);
      } catch (const NSException&) {
      }
    }
    host.turn(1);
    host.turn(1);
    EXPECT_LE(host.page->calls.size(), 1u) << "seed " << seed;
  }
}

TEST(HostilePages, MayReplaceTheDataWhenTheyHearOfTheDisplay) {
  ChartHost host;
  host.page->onCall = [&] {
    host.setData(chartOf(40));
    host.setFrame(CGRectMake(0, 0, 300, 200));
  };
  host.show(chartOf(3));
  host.turn(2);
  EXPECT_EQ(host.page->calls.size(), 1u);
  EXPECT_EQ(host.plotter()->plotData()->count(), 3u);
  EXPECT_EQ(host.view->layer()->sublayers().size(), 3u);
}

TEST(HostilePages, MayTakeTheViewAwayWhenTheyHearOfTheDisplay) {
  ChartHost host;
  host.page->onCall = [&] {
    host.view->webPlugInStop();
    host.view->removeFromSuperview();
  };
  host.show(chartOf(3));
  host.turn(2);
  EXPECT_EQ(host.page->calls.size(), 1u);
  EXPECT_EQ(host.view->layer(), nullptr);
}

}  // namespace
}  // namespace zelkon
