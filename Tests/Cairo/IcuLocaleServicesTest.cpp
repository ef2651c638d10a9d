#include <gtest/gtest.h>

#include "Backends/Cairo/IcuLocaleServices.h"

namespace zelkon {
namespace {

const std::string nbsp = "\xc2\xa0";        // no-break space
const std::string narrow = "\xe2\x80\xaf";  // narrow no-break space
const std::string euro = "\xe2\x82\xac";
const std::string yen = "\xc2\xa5";
const std::string wideYen = "\xef\xbf\xa5";

struct Row {
  std::string locale, number, negative, dollars, negativeDollars, euros, yens, francs;
};

class NumbersOfLocale : public ::testing::TestWithParam<Row> {};

TEST_P(NumbersOfLocale, AreWrittenAsThereUsual) {
  const Row& row = GetParam();
  const IcuLocaleServices services(row.locale);
  EXPECT_EQ(services.formatNumber(1234567, std::nullopt, 0), row.number);
  EXPECT_EQ(services.formatNumber(-60, std::nullopt, 0), row.negative);
  EXPECT_EQ(services.formatNumber(1234, "USD", 0), row.dollars);
  EXPECT_EQ(services.formatNumber(-60, "USD", 0), row.negativeDollars);
  EXPECT_EQ(services.formatNumber(1234, "EUR", 0), row.euros);
  EXPECT_EQ(services.formatNumber(1234, "JPY", 0), row.yens);
  EXPECT_EQ(services.formatNumber(1234, "CHF", 0), row.francs);
}

INSTANTIATE_TEST_SUITE_P(Table, NumbersOfLocale,
                         ::testing::Values(Row{"en_US", "1,234,567", "-60", "$1,234", "-$60", euro + "1,234",
                                               yen + "1,234", "CHF" + nbsp + "1,234"},
                                           Row{"en_GB", "1,234,567", "-60", "US$1,234", "-US$60", euro + "1,234",
                                               "JP" + yen + "1,234", "CHF" + nbsp + "1,234"},
                                           Row{"de_DE", "1.234.567", "-60", "1.234" + nbsp + "$", "-60" + nbsp + "$",
                                               "1.234" + nbsp + euro, "1.234" + nbsp + yen, "1.234" + nbsp + "CHF"},
                                           Row{"fr_FR", "1" + narrow + "234" + narrow + "567", "-60",
                                               "1" + narrow + "234" + nbsp + "$US", "-60" + nbsp + "$US",
                                               "1" + narrow + "234" + nbsp + euro, "1" + narrow + "234" + nbsp + "JPY",
                                               "1" + narrow + "234" + nbsp + "CHF"},
                                           Row{"ja_JP", "1,234,567", "-60", "$1,234", "-$60", euro + "1,234",
                                               wideYen + "1,234", "CHF" + nbsp + "1,234"}),
                         [](const auto& row) { return row.param.locale; });

TEST(IcuLocaleServices, RoundsHalfToEven) {
  const IcuLocaleServices services("en_US");
  EXPECT_EQ(services.formatNumber(0.5, std::nullopt, 0), "0");
  EXPECT_EQ(services.formatNumber(1.5, std::nullopt, 0), "2");
  EXPECT_EQ(services.formatNumber(2.5, std::nullopt, 0), "2");
  EXPECT_EQ(services.formatNumber(-2.5, std::nullopt, 0), "-2");
}

TEST(IcuLocaleServices, OnlyANegativeNumberThatRoundsToZeroKeepsItsSign) {
  const IcuLocaleServices services("en_US");
  EXPECT_EQ(services.formatNumber(-0.5, std::nullopt, 0), "-0");
  EXPECT_EQ(services.formatNumber(-0.4, "USD", 0), "-$0");
  EXPECT_EQ(services.formatNumber(0.0, std::nullopt, 0), "0");
  EXPECT_EQ(services.formatNumber(-0.0, std::nullopt, 0), "0");
  EXPECT_EQ(services.formatNumber(-0.0, "USD", 0), "$0");
}

TEST(IcuLocaleServices, FractionsAreShownUpToTheLimitAndNeverFilledUp) {
  const IcuLocaleServices services("en_US");
  EXPECT_EQ(services.formatNumber(1234.5678, std::nullopt, 3), "1,234.568");
  EXPECT_EQ(services.formatNumber(12, std::nullopt, 3), "12");
  EXPECT_EQ(services.formatNumber(2.5, "USD", 2), "$2.5");
  EXPECT_EQ(services.formatNumber(1, std::nullopt, -4), "1");
}

TEST(IcuLocaleServices, AnUnknownCurrencyIsShownAsItself) {
  const IcuLocaleServices services("en_US");
  EXPECT_EQ(services.formatNumber(1234, "ZZZ", 0), "ZZZ" + nbsp + "1,234");
  EXPECT_EQ(services.formatNumber(1234, "Credits", 0), "Credits" + nbsp + "1,234");
  EXPECT_EQ(services.formatNumber(7, "Credits", 0), "Credits" + nbsp + "7");
  EXPECT_EQ(services.formatNumber(1234, "$", 0), "$1,234");
}

TEST(IcuLocaleServices, WhatIsNoNumberIsSaid) {
  const IcuLocaleServices services("en_US");
  EXPECT_EQ(services.formatNumber(std::stod("nan"), std::nullopt, 0), "NaN");
  EXPECT_EQ(services.formatNumber(std::stod("inf"), std::nullopt, 0), "\xe2\x88\x9e");
}

TEST(IcuLocaleServices, MonthsAreKnownByShortAndLongNamesInAnyCase) {
  const IcuLocaleServices english("en_US");
  EXPECT_EQ(english.monthNamed("Jan"), 1);
  EXPECT_EQ(english.monthNamed("JAN"), 1);
  EXPECT_EQ(english.monthNamed("january"), 1);
  EXPECT_EQ(english.monthNamed("Sep"), 9);
  EXPECT_EQ(english.monthNamed("December"), 12);
  const IcuLocaleServices german("de_DE");
  EXPECT_EQ(german.monthNamed("M\xc3\xa4r"), 3);
  EXPECT_EQ(german.monthNamed("M\xc3\x84RZ"), 3);
  EXPECT_EQ(german.monthNamed("Dez"), 12);
  const IcuLocaleServices french("fr_FR");
  EXPECT_EQ(french.monthNamed("janv."), 1);
  EXPECT_EQ(french.monthNamed("ao\xc3\xbbt"), 8);
  EXPECT_EQ(german.monthNamed("Okt"), 10);
  EXPECT_EQ(french.monthNamed("f\xc3\xa9vr."), 2);
  EXPECT_EQ(french.monthNamed("mars"), 3);
  EXPECT_EQ(french.monthNamed("juil."), 7);
  EXPECT_EQ(french.monthNamed("d\xc3\xa9"
                              "c."),
            12);
  EXPECT_EQ(IcuLocaleServices("en_GB").monthNamed("Sept"), 9);
  EXPECT_EQ(IcuLocaleServices("ja_JP").monthNamed("1\xe6\x9c\x88"), 1);
}

TEST(IcuLocaleServices, OnlyAWholeTextIsAMonth) {
  const IcuLocaleServices services("en_US");
  for (const char* text : {"", "Sept", "Jan 2010", " Jan", "Ja", "\xff"})
    EXPECT_FALSE(services.monthNamed(text)) << text;
}

TEST(IcuLocaleServices, TheCalendarSaysHowManyMonthsAYearHas) {
  EXPECT_EQ(IcuLocaleServices("en_US").monthsPerYear(), 12);
  EXPECT_EQ(IcuLocaleServices("ja_JP@calendar=japanese").monthsPerYear(), 12);
  EXPECT_EQ(IcuLocaleServices("th_TH@calendar=buddhist").monthsPerYear(), 12);
  EXPECT_EQ(IcuLocaleServices("ar_SA@calendar=islamic").monthsPerYear(), 12);
  EXPECT_EQ(IcuLocaleServices("he_IL@calendar=hebrew").monthsPerYear(), 13);
  EXPECT_EQ(IcuLocaleServices("ar_EG@calendar=coptic").monthsPerYear(), 13);
}

TEST(IcuLocaleServices, ALocaleNobodyKnowsStillFormats) {
  EXPECT_EQ(IcuLocaleServices("xx_nowhere").formatNumber(5, std::nullopt, 0), "5");
  EXPECT_EQ(IcuLocaleServices("").formatNumber(5, std::nullopt, 0), "5");
}

}  // namespace
}  // namespace zelkon
