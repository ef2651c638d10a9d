// Months of spending in the forms in which the benchmarks of amounts over time need them, natively and in a page.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Classes/Plotting/BarPlot.h"
#include "Classes/Plotting/Gridlines.h"
#include "Classes/Plotting/LabelFitting.h"

namespace zelkon {

constexpr CGSize kChartSize{800, 400};

inline constexpr const char* kMonthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                              "July",    "August",   "September", "October", "November", "December"};

struct SampleMonth {
  std::string longName, mediumName, shortName, year, amount;
  double y;
};
inline SampleMonth sampleMonth(int64_t index) {
  const std::string name = kMonthNames[index % 12], shortName = name.substr(0, 3);
  const std::string year = std::to_string(1900 + index / 12);
  const double y = 400 + static_cast<double>(index * 7919 % 1000);
  return {name + " " + year, shortName + " " + year, shortName, year, std::to_string(static_cast<int>(y)), y};
}

// As a plotter holds them.
inline PlotEntryListRef sampleEntries(int64_t count) {
  std::vector<PlotEntryRef> result;
  for (int64_t i = 0; i < count; ++i) {
    const SampleMonth m = sampleMonth(i);
    auto entry = std::make_shared<PlotEntry>();
    entry->humanX = std::make_shared<const std::string>(m.longName);
    entry->mediumHumanX = std::make_shared<const std::string>(m.mediumName);
    entry->shortHumanX = std::make_shared<const std::string>(m.shortName);
    entry->shortHumanXSubtitle = m.year;
    entry->humanY = std::make_shared<const std::string>("$" + m.amount);
    entry->y = m.y;
    result.push_back(std::move(entry));
  }
  return std::make_shared<const PlotEntryArray>(std::move(result));
}

// Long names in slots that share 800 points. A new row measures its texts anew, as a new chart does.
inline LabelRow sampleLabels(int64_t count) {
  const double slot = kChartSize.width / static_cast<double>(count);
  LabelRow row;
  for (int64_t i = 0; i < count; ++i) {
    row.labels.emplace_back(sampleMonth(i).longName, BarPlot::xLabelAttributes());
    row.rects.push_back(CGRectMake(slot * static_cast<double>(i), 34, slot, 15));
  }
  return row;
}

// Wide enough for that many bars.
inline double sampleWidth(int64_t bars) { return bars > 15 ? 3200 : kChartSize.width; }

// Nineteen ranges from a millionth to a thousand billions. Answers the lines of all of them.
inline size_t computeSampleGridlines() {
  size_t lines = 0;
  for (double max = 1e-6; max < 2e12; max *= 10) lines += gridlines::compute(-max / 3, max * 1.7, true, 5).size();
  return lines;
}

}  // namespace zelkon
