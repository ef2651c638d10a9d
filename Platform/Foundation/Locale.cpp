#include "Foundation/Locale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "Foundation/DecimalDigits.h"
#include "Foundation/PlatformSession.h"

namespace zelkon {

namespace {

char upperCase(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return upperCase(x) == upperCase(y); });
}

// What stands before an amount. A currency without a symbol shows its code and a no-break space.
std::string currencyPrefix(std::string code) {
  std::transform(code.begin(), code.end(), code.begin(), upperCase);
  if (code.empty() || code == "USD") return "$";
  if (code == "EUR") return "€";
  if (code == "GBP") return "£";
  if (code == "JPY") return "¥";
  return code + "\u00A0";
}

std::string grouped(const std::string& digits) {
  std::string result;
  for (size_t i = 0; i < digits.size(); ++i) {
    if (i > 0 && (digits.size() - i) % 3 == 0) result += ',';
    result += digits[i];
  }
  return result;
}

class EnglishLocale : public LocaleServices {
 public:
  std::string formatNumber(double value, const std::optional<std::string>& currencyCode,
                           int maximumFractionDigits) const override {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value < 0 ? "-∞" : "∞";
    DecimalDigits number = DecimalDigits::shortest(value);
    number.roundToFractionDigits(maximumFractionDigits);
    const std::string fraction = number.fractionalPart();
    return (value < 0 ? "-" : "") + (currencyCode ? currencyPrefix(*currencyCode) : "") +
           grouped(number.integralPart()) + (fraction.empty() ? "" : "." + fraction);
  }

  std::optional<int> monthNamed(std::string_view text) const override {
    static constexpr std::array<std::string_view, 12> names = {"January",   "February", "March",    "April",
                                                               "May",       "June",     "July",     "August",
                                                               "September", "October",  "November", "December"};
    for (size_t i = 0; i < names.size(); ++i)
      if (equalIgnoringCase(text, names[i]) || equalIgnoringCase(text, names[i].substr(0, 3)))
        return static_cast<int>(i) + 1;
    return std::nullopt;
  }

  int monthsPerYear() const override { return 12; }
};

struct Installed {
  std::shared_ptr<LocaleServices> services = std::make_shared<EnglishLocale>();
};

std::shared_ptr<LocaleServices>& installed() {
  return PlatformSession::part<Installed>(PlatformSession::Key::locale).services;
}

}  // namespace

std::shared_ptr<LocaleServices> LocaleServices::current() { return installed(); }

std::shared_ptr<LocaleServices> LocaleServices::install(std::shared_ptr<LocaleServices> services) {
  if (!services) services = std::make_shared<EnglishLocale>();
  return std::exchange(installed(), std::move(services));
}

std::string NSNumberFormatter::stringFromNumber(double value) const {
  const std::optional<std::string> code = style == Style::currency ? std::optional(currencyCode) : std::nullopt;
  return LocaleServices::current()->formatNumber(value, code, maximumFractionDigits);
}

std::optional<int> NSDateFormatter::monthFromString(std::string_view text) const {
  return LocaleServices::current()->monthNamed(text);
}

int NSCalendar::monthOfDate(const std::optional<int>& month) { return month.value_or(12); }

int NSCalendar::monthsPerYear() { return LocaleServices::current()->monthsPerYear(); }

}  // namespace zelkon
