// What the user's locale decides: number and currency texts, month names, the calendar. The host installs the services
// (ICU natively, Intl in a page); nothing here reads the process's own locale.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zelkon {

class LocaleServices {
 public:
  virtual ~LocaleServices() = default;
  // The number in decimal style (no currency code) or in the currency's style, with at most `maximumFractionDigits`
  // decimals and no minimum, grouped, rounded half to even. An exact zero never has a sign. UTF-8.
  virtual std::string formatNumber(double value, const std::optional<std::string>& currencyCode,
                                   int maximumFractionDigits) const = 0;
  // The month (1...) whose abbreviated or full name the whole text is, regardless of case; nothing otherwise.
  virtual std::optional<int> monthNamed(std::string_view text) const = 0;
  // Months in the longest year of the user's calendar: 12 for the Gregorian one.
  virtual int monthsPerYear() const = 0;

  // The session's.
  static std::shared_ptr<LocaleServices> current();
  // Replaces the session's services; null restores a plain built-in English service. Returns the earlier ones.
  static std::shared_ptr<LocaleServices> install(std::shared_ptr<LocaleServices> services);
};

// Formats whole amounts of the value axis.
struct NSNumberFormatter {
  enum class Style { decimal, currency };
  Style style = Style::decimal;
  std::string currencyCode;
  int maximumFractionDigits = 3;
  std::string stringFromNumber(double value) const;
};

// Reads month names ("MMM").
struct NSDateFormatter {
  // The month of the date that the text reads as; nothing when it does not.
  std::optional<int> monthFromString(std::string_view text) const;
};

struct NSCalendar {
  // A date that could not be read counts as month 12: neither a January nor the start of a quarter, half or year, so
  // that nothing is kept or ticked for it.
  static int monthOfDate(const std::optional<int>& month);
  static int monthsPerYear();
};

}  // namespace zelkon
