// include/zelkon/charts.h and picture.h.
#include <cctype>
#include <charconv>
#include <cmath>

#include "Backends/Cairo/IcuLocaleServices.h"
#include "Hosts/Headless/PublicErrors.h"
#include "Hosts/Headless/ThreadServices.h"
#include "zelkon/charts.h"

namespace zelkon {
namespace {

using plot::Error;
using plot::Picture;

constexpr double kLargestSide = 32000, kLargestScale = 16, kMostPixels = 1e8;
constexpr size_t kMostEntries = 1 << 20;

// Shortest text that reads as the same number.
std::string textOf(double number) {
  char text[64];
  return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

void check(const Picture& picture) {
  const auto isWithin = [](double value, double most) { return value > 0 && value <= most; };
  const auto refuse = [](const std::string& text) { throw Error(Error::Reason::badPicture, text); };
  if (!isWithin(picture.width, kLargestSide)) refuse("picture.width is not above 0 and up to 32000");
  if (!isWithin(picture.height, kLargestSide)) refuse("picture.height is not above 0 and up to 32000");
  if (!isWithin(picture.scale, kLargestScale)) refuse("picture.scale is not above 0 and up to 16");
  if (!IcuLocaleServices::isLocale(picture.locale))
    refuse("picture.locale is no locale: " + quotedText(picture.locale));
  if (picture.format == plot::Format::png &&
      std::ceil(picture.width * picture.scale) * std::ceil(picture.height * picture.scale) > kMostPixels)
    throw Error(Error::Reason::tooLarge, "the picture has more than 100 million pixels");
}

void checkCount(size_t count, const char* name) {
  if (count > kMostEntries)
    throw Error(Error::Reason::tooLarge,
                std::string(name) + ": more than " + std::to_string(kMostEntries) + " entries");
}

[[noreturn]] void refuseEntry(const char* list, size_t index, const char* problem) {
  throw Error(Error::Reason::badData, std::string(list) + "[" + std::to_string(index) + "]" + problem);
}

std::string draw(const char* plot, const Value& options, const Value& data, const Picture& picture) {
  Scenario scenario;
  scenario.plot = plot;
  scenario.size = {picture.width, picture.height};
  scenario.scale = picture.scale;
  scenario.locale = picture.locale;
  scenario.options = options;
  scenario.data = data;
  PlayOptions play;
  if (const auto& color = picture.background)
    play.background = RGBA{color->red, color->green, color->blue, color->alpha};
  const char* format = picture.format == plot::Format::png   ? "png"
                       : picture.format == plot::Format::svg ? "svg"
                                                             : "pdf";
  return withPublicErrors(Error::Reason::notDrawn, Error::Reason::tooLarge, [&] {
    return renderScenario(scenario, "the chart", play, format, threadServices(), [](const std::string&) {});
  });
}

}  // namespace

HeadlessServices& threadServices() {
  thread_local HeadlessServices services;
  return services;
}

namespace plot {

std::string pie(std::span<const Slice> slices, const Picture& picture) {
  check(picture);
  checkCount(slices.size(), "slices");
  ValueArray data;
  data.reserve(slices.size());
  for (size_t i = 0; i < slices.size(); ++i) {
    if (!std::isfinite(slices[i].amount)) refuseEntry("slices", i, ".amount is not a finite number");
    if (slices[i].amount < 0) refuseEntry("slices", i, ".amount is below 0");
    data.emplace_back(ValueDictionary{{"key", slices[i].name}, {"value", slices[i].amount}});
  }
  return draw("pie", ValueArray{}, std::move(data), picture);
}

std::string overTime(std::span<const Period> periods, const AxisOptions& options, const Picture& picture) {
  check(picture);
  checkCount(periods.size(), "periods");
  const IcuLocaleServices locale(picture.locale);
  const std::optional<std::string> currency =
      options.currency.empty() ? std::nullopt : std::optional<std::string>(options.currency);
  ValueArray data;
  data.reserve(periods.size());
  for (size_t i = 0; i < periods.size(); ++i) {
    const Period& period = periods[i];
    if (period.name.empty()) refuseEntry("periods", i, ".name is empty");
    if (!std::isfinite(period.amount)) refuseEntry("periods", i, ".amount is not a finite number");
    ValueDictionary entry{{"humanX", period.name}, {"y", textOf(period.amount)}};
    entry["humanY"] = period.text.empty() ? Value(locale.formatNumber(period.amount, currency, 2)) : Value(period.text);
    if (!period.medium.empty()) entry["mediumHumanX"] = period.medium;
    if (!period.small.empty()) entry["shortHumanX"] = period.small;
    if (!period.subtitle.empty()) entry["shortHumanXSubtitle"] = period.subtitle;
    data.emplace_back(std::move(entry));
  }
  ValueArray given;
  const auto give = [&](const char* key, Value value) {
    given.emplace_back(ValueDictionary{{"key", key}, {"value", std::move(value)}});
  };
  give("DisplayXLabels", options.showsNames);
  give("DisplayYLabels", options.showsValues);
  give("AllValuesPositive", options.magnitudesOnly);
  if (currency) give("CurrencyID", *currency);
  return draw("spendingOverTimeBarOrLine", std::move(given), std::move(data), picture);
}

void save(const std::string& path, const std::string& bytes) {
  withPublicErrors(Error::Reason::noFile, Error::Reason::noFile, [&] { writeWholeFile(path, bytes); });
}

}  // namespace plot
}  // namespace zelkon
