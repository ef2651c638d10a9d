#include <gtest/gtest.h>

#include <limits>

#include "Foundation/Locale.h"

namespace zelkon {
namespace {

std::string decimal(double value, int digits = 0) {
  return NSNumberFormatter{NSNumberFormatter::Style::decimal, "", digits}.stringFromNumber(value);
}
std::string currency(double value, const char* code, int digits = 0) {
  return NSNumberFormatter{NSNumberFormatter::Style::currency, code, digits}.stringFromNumber(value);
}

TEST(BuiltInLocale, GroupsThousands) {
  EXPECT_EQ(decimal(1234567), "1,234,567");
  EXPECT_EQ(decimal(999), "999");
  EXPECT_EQ(decimal(1000), "1,000");
  EXPECT_EQ(decimal(-60), "-60");
  EXPECT_EQ(decimal(-123456), "-123,456");
}

TEST(BuiltInLocale, RoundsHalfToEven) {
  EXPECT_EQ(decimal(0.5), "0");
  EXPECT_EQ(decimal(1.5), "2");
  EXPECT_EQ(decimal(2.5), "2");
  EXPECT_EQ(decimal(-2.5), "-2");
}

TEST(BuiltInLocale, KeepsTheSignOfANegativeThatRoundsToZero) {
  EXPECT_EQ(decimal(-0.5), "-0");
  EXPECT_EQ(currency(-0.4, "USD"), "-$0");
  EXPECT_EQ(decimal(0.0), "0");
  EXPECT_EQ(decimal(-0.0), "0");
  EXPECT_EQ(currency(-0.0, "USD"), "$0");
}

TEST(BuiltInLocale, ShowsCurrencies) {
  EXPECT_EQ(currency(1234, "USD"), "$1,234");
  EXPECT_EQ(currency(-60, "USD"), "-$60");
  EXPECT_EQ(currency(1234, "EUR"), "€1,234");
  EXPECT_EQ(currency(1234, "GBP"), "£1,234");
  EXPECT_EQ(currency(1234, "JPY"), "¥1,234");
  EXPECT_EQ(currency(1234, "CHF"), "CHF\u00A01,234");
  EXPECT_EQ(currency(1, "Foo"), "FOO\u00A01");
}

TEST(BuiltInLocale, WritesFractionsOnlyWhereThereAreAny) {
  EXPECT_EQ(decimal(1234.5678, 3), "1,234.568");
  EXPECT_EQ(decimal(2, 3), "2");
  EXPECT_EQ(NSNumberFormatter{}.stringFromNumber(0.1239), "0.124");
}

TEST(BuiltInLocale, WritesWhatIsNoFiniteNumber) {
  EXPECT_EQ(decimal(std::numeric_limits<double>::quiet_NaN()), "NaN");
  EXPECT_EQ(decimal(std::numeric_limits<double>::infinity()), "∞");
  EXPECT_EQ(decimal(-std::numeric_limits<double>::infinity()), "-∞");
}

TEST(BuiltInLocale, ReadsMonthNames) {
  const NSDateFormatter formatter;
  for (const char* text : {"jan", "JAN", "January", "january", "Jan"})
    EXPECT_EQ(formatter.monthFromString(text), 1) << text;
  EXPECT_EQ(formatter.monthFromString("Sep"), 9);
  EXPECT_EQ(formatter.monthFromString("May"), 5);
  EXPECT_EQ(formatter.monthFromString("December"), 12);
  for (const char* text : {"Sept", "Jan 2010", "", " Jan", "J", "Octob", "1"})
    EXPECT_EQ(formatter.monthFromString(text), std::nullopt) << text;
}

TEST(NSCalendar, UnreadableDateCountsAsDecember) {
  EXPECT_EQ(NSCalendar::monthOfDate(3), 3);
  EXPECT_EQ(NSCalendar::monthOfDate(std::nullopt), 12);
  EXPECT_EQ(NSCalendar::monthsPerYear(), 12);
}

class OddLocale : public LocaleServices {
 public:
  std::string formatNumber(double, const std::optional<std::string>& code, int digits) const override {
    return code.value_or("none") + std::to_string(digits);
  }
  std::optional<int> monthNamed(std::string_view) const override { return 13; }
  int monthsPerYear() const override { return 13; }
};

TEST(LocaleServices, InstalledServicesAnswerUntilTheyAreTakenBack) {
  const auto odd = std::make_shared<OddLocale>();
  const auto earlier = LocaleServices::install(odd);
  EXPECT_EQ(LocaleServices::current(), odd);
  EXPECT_EQ(currency(1, "USD", 2), "USD2");
  EXPECT_EQ(decimal(1, 2), "none2");
  EXPECT_EQ(NSDateFormatter{}.monthFromString("x"), 13);
  EXPECT_EQ(NSCalendar::monthsPerYear(), 13);
  EXPECT_EQ(LocaleServices::install(nullptr), odd);
  EXPECT_EQ(decimal(1), "1");
  LocaleServices::install(earlier);
}

}  // namespace
}  // namespace zelkon
