// Month names of other languages thin as English ones do when the page's texts and the user's locale agree.
#include <gtest/gtest.h>

#include "Classes/Plotting/LinePlot.h"
#include "Hosts/Headless/ScenarioPlayer.h"

namespace zelkon {
namespace {

struct Language {
  const char* locale;
  std::vector<const char*> months;
};

class MonthNames : public testing::TestWithParam<Language> {};

TEST_P(MonthNames, ThinToQuarterStarts) {
  HeadlessServices services;
  const HeadlessSession session(services, GetParam().locale, 1);
  LabelRow row;
  for (int i = 0; i < 24; ++i) {
    row.labels.emplace_back(GetParam().months[static_cast<size_t>(i % 12)], BarPlot::xLabelAttributes());
    row.rects.push_back(CGRectMake(14.0 * i, 24, 14, 15));
  }
  labelfitting::fitMonths(row, 10, {});
  for (size_t i = 0; i < 24; ++i) {
    EXPECT_EQ(row.labels[i].string(), i % 3 == 0 ? GetParam().months[i % 12] : "") << i;
  }
}

INSTANTIATE_TEST_SUITE_P(
    LineCategoryAxis, MonthNames,
    testing::Values(
        Language{"en_US", {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"}},
        Language{"de_DE", {"Jan", "Feb", "Mär", "Apr", "Mai", "Jun", "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"}},
        Language{"fr_FR",
                 {"janv.", "févr.", "mars", "avr.", "mai", "juin", "juil.", "août", "sept.", "oct.", "nov.", "déc."}},
        Language{"ja_JP", {"1月", "2月", "3月", "4月", "5月", "6月", "7月", "8月", "9月", "10月", "11月", "12月"}}),
    [](const testing::TestParamInfo<Language>& test) { return std::string(test.param.locale); });

}  // namespace
}  // namespace zelkon
