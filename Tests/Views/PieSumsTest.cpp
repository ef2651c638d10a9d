// Shares of sums that are small, negative or nothing: only a sum of exactly zero makes equal slices.
#include <gtest/gtest.h>

#include "Classes/Views/PiePlotView.h"
#include "Support/ViewHost.h"

namespace zelkon {
namespace {

std::vector<double> sharesOf(const std::vector<double>& amounts) {
  ViewHost host;
  host.call("SetPlotData", {pageAmounts(amounts)});
  std::vector<double> shares;
  for (const PiePlotEntryRef& entry : static_cast<PiePlotView&>(*host.view).piePlotData()->entries())
    shares.push_back(entry->fraction);
  return shares;
}

TEST(PieSums, OfTinyAmountsGiveTheirShares) {
  EXPECT_EQ(sharesOf({1e-300, 3e-300}), (std::vector<double>{0.25, 0.75}));
  EXPECT_EQ(sharesOf({5e-324, 5e-324}), (std::vector<double>{0.5, 0.5}));
  EXPECT_EQ(sharesOf({5e-324, 15e-324}), (std::vector<double>{0.25, 0.75}));
}

// 1 less the number next below it: 2 to the power of -53.
TEST(PieSums, ThatNearlyCancelOutAreNotTakenForZero) {
  EXPECT_EQ(sharesOf({1, -0.99999999999999988898}), (std::vector<double>{9007199254740992, -9007199254740991}));
}

TEST(PieSums, OfNegativeAmountsAloneGivePositiveShares) {
  EXPECT_EQ(sharesOf({-1, -3}), (std::vector<double>{0.25, 0.75}));
}

TEST(PieSums, BelowZeroTurnTheSignsOfTheShares) { EXPECT_EQ(sharesOf({1, -3}), (std::vector<double>{-0.5, 1.5})); }

TEST(PieSums, OfExactlyZeroMakeEqualSlicesWhateverTheAmounts) {
  EXPECT_EQ(sharesOf({5, -5}), (std::vector<double>{0.5, 0.5}));
  EXPECT_EQ(sharesOf({3, -1, -2, 0}), (std::vector<double>{0.25, 0.25, 0.25, 0.25}));
  EXPECT_EQ(sharesOf({-0.0, -0.0}), (std::vector<double>{0.5, 0.5}));
}

}  // namespace
}  // namespace zelkon
