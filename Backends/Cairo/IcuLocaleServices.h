// Numbers, currencies, month names and the calendar of a locale, from ICU's data.
#pragma once

#include <memory>
#include <string>

#include "Foundation/Locale.h"

namespace zelkon {

class IcuLocaleServices : public LocaleServices {
 public:
  // A name as "de_DE", with keywords where wanted: "he_IL@calendar=hebrew". A locale without data is formatted by its
  // nearest relative.
  explicit IcuLocaleServices(const std::string& localeName);
  ~IcuLocaleServices() override;
  // Whether the name is made of a language that there is, with a script and a region that there are where it has them.
  static bool isLocale(const std::string& name);

  std::string formatNumber(double value, const std::optional<std::string>& currencyCode,
                           int maximumFractionDigits) const override;
  std::optional<int> monthNamed(std::string_view text) const override;
  int monthsPerYear() const override;

 private:
  struct Data;
  std::unique_ptr<Data> data_;
};

}  // namespace zelkon
