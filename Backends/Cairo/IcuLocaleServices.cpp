#include "Backends/Cairo/IcuLocaleServices.h"

#include <unicode/calendar.h>
#include <unicode/currunit.h>
#include <unicode/dcfmtsym.h>
#include <unicode/dtfmtsym.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/uchar.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace zelkon {

namespace {

constexpr int mostFractionDigits = 20;
constexpr size_t rememberedFormatters = 64;  // then the table starts over; pages use one or two

bool isCurrencyCode(const std::string& text) {
  return text.size() == 3 &&
         std::all_of(text.begin(), text.end(), [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); });
}

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

}  // namespace

struct IcuLocaleServices::Data {
  icu::Locale locale;
  std::vector<std::pair<icu::UnicodeString, int>> monthNames;  // case folded
  int monthsPerYear = 12;
  bool hasCalendar = false;
  std::map<std::pair<std::optional<std::string>, int>, icu::number::LocalizedNumberFormatter> formatters;

  explicit Data(const std::string& name) : locale(icu::Locale::createFromName(name.c_str())) {}

  // Most charts know no months; reading the calendar takes longer than drawing them.
  void readCalendar() {
    if (hasCalendar) return;
    hasCalendar = true;
    readMonthNames();
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(locale, status));
    if (U_SUCCESS(status) && calendar) monthsPerYear = calendar->getMaximum(UCAL_MONTH) + 1;
  }

  void readMonthNames() {
    UErrorCode status = U_ZERO_ERROR;
    const icu::DateFormatSymbols symbols(locale, status);
    if (U_FAILURE(status)) return;
    for (auto context : {icu::DateFormatSymbols::FORMAT, icu::DateFormatSymbols::STANDALONE}) {
      for (auto width : {icu::DateFormatSymbols::ABBREVIATED, icu::DateFormatSymbols::WIDE}) {
        int32_t count = 0;
        const icu::UnicodeString* names = symbols.getMonths(count, context, width);
        for (int32_t month = 0; month < count; ++month)
          if (!names[month].isEmpty()) monthNames.emplace_back(icu::UnicodeString(names[month]).foldCase(), month + 1);
      }
    }
  }

  icu::number::LocalizedNumberFormatter makeFormatter(const std::optional<std::string>& currencyCode,
                                                      int digits) const {
    UErrorCode status = U_ZERO_ERROR;
    auto formatter = icu::number::NumberFormatter::withLocale(locale)
                         .precision(icu::number::Precision::minMaxFraction(0, digits))
                         .roundingMode(UNUM_ROUND_HALFEVEN);
    if (!currencyCode) return formatter;
    if (isCurrencyCode(*currencyCode)) {
      const icu::CurrencyUnit unit(icu::StringPiece(*currencyCode), status);
      return formatter.unit(unit);
    }
    // Not the shape of a code: a currency nobody knows, whose symbol is the text itself.
    icu::DecimalFormatSymbols symbols(locale, status);
    const icu::UnicodeString symbol = icu::UnicodeString::fromUTF8(*currencyCode);
    symbols.setSymbol(icu::DecimalFormatSymbols::kCurrencySymbol, symbol);
    symbols.setSymbol(icu::DecimalFormatSymbols::kIntlCurrencySymbol, symbol);
    return formatter.unit(icu::CurrencyUnit("XXX", status)).symbols(symbols);
  }

  const icu::number::LocalizedNumberFormatter& formatterFor(const std::optional<std::string>& currencyCode,
                                                            int digits) {
    const auto key = std::make_pair(currencyCode, digits);
    const auto known = formatters.find(key);
    if (known != formatters.end()) return known->second;
    if (formatters.size() >= rememberedFormatters) formatters.clear();
    return formatters.emplace(key, makeFormatter(currencyCode, digits)).first->second;
  }
};

IcuLocaleServices::IcuLocaleServices(const std::string& localeName) : data_(std::make_unique<Data>(localeName)) {}
IcuLocaleServices::~IcuLocaleServices() = default;

bool IcuLocaleServices::isLocale(const std::string& name) {
  const auto isAllowed = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("_-@=;.").find(c) != std::string_view::npos;
  };
  if (name.empty() || name.size() >= ULOC_FULLNAME_CAPACITY || !std::all_of(name.begin(), name.end(), isAllowed))
    return false;
  const icu::Locale locale = icu::Locale::createFromName(name.c_str());
  const std::string script = locale.getScript(), region = locale.getCountry();
  if (locale.isBogus() || *locale.getISO3Language() == 0) return false;
  if (!script.empty() && u_getPropertyValueEnum(UCHAR_SCRIPT, script.c_str()) == UCHAR_INVALID_CODE) return false;
  return region.empty() || *locale.getISO3Country() != 0 ||
         std::all_of(region.begin(), region.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string IcuLocaleServices::formatNumber(double value, const std::optional<std::string>& currencyCode,
                                            int maximumFractionDigits) const {
  if (value == 0) value = 0;  // drops the sign of a negative zero
  UErrorCode status = U_ZERO_ERROR;
  const int digits = std::clamp(maximumFractionDigits, 0, mostFractionDigits);
  const icu::UnicodeString text =
      data_->formatterFor(currencyCode, digits).formatDouble(value, status).toString(status);
  return U_SUCCESS(status) ? utf8(text) : std::string{};
}

std::optional<int> IcuLocaleServices::monthNamed(std::string_view text) const {
  const icu::UnicodeString wanted =
      icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size()))).foldCase();
  data_->readCalendar();
  for (const auto& [name, month] : data_->monthNames)
    if (name == wanted) return month;
  return std::nullopt;
}

int IcuLocaleServices::monthsPerYear() const {
  data_->readCalendar();
  return data_->monthsPerYear;
}

}  // namespace zelkon
