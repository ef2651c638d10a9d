// The user's locale as the browser's Intl knows it.
#pragma once

#include <string>

#include "Foundation/Locale.h"

namespace zelkon {

class IntlLocaleServices : public LocaleServices {
 public:
  std::string formatNumber(double value, const std::optional<std::string>& currencyCode,
                           int maximumFractionDigits) const override;
  std::optional<int> monthNamed(std::string_view text) const override;
  int monthsPerYear() const override;
};

}  // namespace zelkon
