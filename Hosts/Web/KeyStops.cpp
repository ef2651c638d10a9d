#include "Hosts/Web/KeyStops.h"

#include <cmath>

#include "Classes/Views/BarOrLineView.h"
#include "Classes/Views/PiePlotView.h"

namespace zelkon {
namespace {

constexpr double floorHeight = 17;  // what the pie leaves free below itself
constexpr double fullTurn = 6.283185307179586;

std::vector<KeyStop> stopsOfPie(const PiePlotView& pie) {
  std::vector<KeyStop> stops;
  const auto data = pie.piePlotData();
  if (!data) return stops;
  const CGSize size = pie.bounds().size;
  const double radius = pie.pieRadius() / 2;
  double before = 0;
  for (const PiePlotEntryRef& entry : data->entries()) {
    const double angle = (before + entry->fraction / 2) * fullTurn;
    before += entry->fraction;
    stops.push_back({CGPoint{size.width / 2 + std::cos(angle) * radius,
                             floorHeight + (size.height - floorHeight) / 2 + std::sin(angle) * radius},
                     entry->key, entry->value, Value(entry->fraction)});
  }
  return stops;
}

std::vector<KeyStop> stopsOfPeriods(const BarOrLineView& view) {
  std::vector<KeyStop> stops;
  const auto& plotter = view.plotter();
  if (!plotter || !plotter->plotData()) return stops;
  const PlotEntryList& entries = *plotter->plotData();
  for (size_t i = 0; i < entries.count(); ++i) {
    const PlotEntryRef entry = entries.entry(i);
    const CGRect place = CGRectIntersection(plotter->rectForEntry(entry), view.bounds());
    std::optional<CGPoint> middle;
    if (!NSIsEmptyRect(place)) middle = {CGRectGetMidX(place), CGRectGetMidY(place)};
    stops.push_back({middle, Value(*entry->humanX), Value(*entry->humanY), Value()});
  }
  return stops;
}

}  // namespace

std::vector<KeyStop> KeyStopsOfView(const CALayerPlotView& view) {
  if (const auto* pie = dynamic_cast<const PiePlotView*>(&view)) return stopsOfPie(*pie);
  if (const auto* periods = dynamic_cast<const BarOrLineView*>(&view)) return stopsOfPeriods(*periods);
  return {};
}

}  // namespace zelkon
