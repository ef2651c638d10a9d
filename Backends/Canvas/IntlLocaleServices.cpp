#include "Backends/Canvas/IntlLocaleServices.h"

#include "Backends/Canvas/CanvasImports.h"

namespace zelkon {

std::string IntlLocaleServices::formatNumber(double value, const std::optional<std::string>& currencyCode,
                                             int maximumFractionDigits) const {
  std::string text(64, '\0');
  const auto format = [&] {
    return zkLocaleFormatNumber(value, currencyCode ? currencyCode->data() : nullptr,
                                currencyCode ? currencyCode->size() : 0, maximumFractionDigits, text.data(),
                                text.size());
  };
  const size_t length = format();
  const bool fits = length <= text.size();
  text.resize(length);
  if (!fits) format();
  return text;
}

std::optional<int> IntlLocaleServices::monthNamed(std::string_view text) const {
  const int month = zkLocaleMonthNamed(text.data(), text.size());
  return month > 0 ? std::optional(month) : std::nullopt;
}

int IntlLocaleServices::monthsPerYear() const { return zkLocaleMonthsPerYear(); }

}  // namespace zelkon
