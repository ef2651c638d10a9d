#include "CoreGraphics/CGGradient.h"

#include <algorithm>
#include <iterator>

#include "Foundation/NSException.h"
#include "Foundation/VectorAlgorithms.h"

namespace zelkon {

CGGradient::CGGradient(const std::vector<RGBA>& colors, const std::vector<double>& locations) {
  if (!locations.empty() && locations.size() != colors.size())
    NSRaise(NSInvalidArgumentException, "A gradient needs as many locations as colours");
  const double last = colors.size() > 1 ? static_cast<double>(colors.size() - 1) : 1;
  for (size_t i = 0; i < colors.size(); ++i) {
    const double location = locations.empty() ? static_cast<double>(i) / last : locations[i];
    // Written so that a location that is not a number becomes 0.
    stops_.push_back({location > 0 ? std::min(location, 1.0) : 0.0, colors[i]});
  }
  StableSort(stops_, [](const CGGradientStop& a, const CGGradientStop& b) { return a.location < b.location; });
}

RGBA CGGradient::colorAt(double t) const {
  if (stops_.empty()) return {0, 0, 0, 0};
  const auto after = std::upper_bound(stops_.begin(), stops_.end(), t,
                                      [](double value, const CGGradientStop& stop) { return value < stop.location; });
  if (after == stops_.begin()) return stops_.front().color;
  if (after == stops_.end()) return stops_.back().color;
  const CGGradientStop& before = *std::prev(after);
  const double f = (t - before.location) / (after->location - before.location);
  const auto mix = [&](double a, double b) { return a + (b - a) * f; };
  return {mix(before.color.red, after->color.red), mix(before.color.green, after->color.green),
          mix(before.color.blue, after->color.blue), mix(before.color.alpha, after->color.alpha)};
}

}  // namespace zelkon
