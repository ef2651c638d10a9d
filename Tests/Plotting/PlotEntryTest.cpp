// Entries are equal when all that the page gave is equal; each that differs has a place of its own.
#include <gtest/gtest.h>

#include "Classes/Plotting/EntryRects.h"
#include "Support/PlotterHost.h"

namespace zelkon {
namespace {

// One entry, and for each of its fields another that differs from it in that field alone.
std::vector<PlotEntryRef> entriesThatDifferInOneField() {
  const auto make = [](auto change) {
    auto entry = std::make_shared<PlotEntry>(*plotEntry(5, "May", "Ma", "M", "2009"));
    change(*entry);
    return PlotEntryRef(entry);
  };
  return {make([](PlotEntry&) {}),
          make([](PlotEntry& entry) { entry.humanX = textOf("June"); }),
          make([](PlotEntry& entry) { entry.mediumHumanX = textOf("Mb"); }),
          make([](PlotEntry& entry) { entry.mediumHumanX = nullptr; }),
          make([](PlotEntry& entry) { entry.shortHumanX = textOf("N"); }),
          make([](PlotEntry& entry) { entry.shortHumanX = nullptr; }),
          make([](PlotEntry& entry) { entry.shortHumanXSubtitle = "2010"; }),
          make([](PlotEntry& entry) { entry.shortHumanXSubtitle = Value(); }),
          make([](PlotEntry& entry) { entry.humanY = textOf("another"); }),
          make([](PlotEntry& entry) { entry.y = 6; })};
}

TEST(PlotEntry, IsEqualToAnotherWithEqualTextsAndAmount) {
  EXPECT_EQ(*plotEntry(5, "May", "Ma", "M", "2009"), *plotEntry(5, "May", "Ma", "M", "2009"));
}

TEST(PlotEntry, DiffersByAnyOneOfItsTextsOrItsAmount) {
  const std::vector<PlotEntryRef> entries = entriesThatDifferInOneField();
  for (size_t i = 0; i < entries.size(); ++i)
    for (size_t j = 0; j < entries.size(); ++j) EXPECT_EQ(*entries[i] == *entries[j], i == j) << i << " and " << j;
}

TEST(EntryRects, EntriesThatDifferInOneTextHaveRectanglesOfTheirOwn) {
  const std::vector<PlotEntryRef> entries = entriesThatDifferInOneField();
  EntryRects rects;
  for (size_t i = 0; i < entries.size(); ++i) rects.set(entries[i], CGRectMake(10.0 * static_cast<double>(i), 0, 8, 9));
  for (size_t i = 0; i < entries.size(); ++i) {
    const double x = 10.0 * static_cast<double>(i);
    EXPECT_EQ(rects.rectFor(entries[i]), CGRectMake(x, 0, 8, 9)) << i;
    EXPECT_EQ(rects.rectFor(std::make_shared<PlotEntry>(*entries[i])), CGRectMake(x, 0, 8, 9)) << i << ", a copy";
    EXPECT_EQ(rects.entryAt({x + 1, 1}), entries[i]) << i;
  }
}

}  // namespace
}  // namespace zelkon
