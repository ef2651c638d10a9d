#include "Classes/Plotting/PlotEntry.h"

namespace zelkon {
namespace {

bool same(const PlotEntry::Text& a, const PlotEntry::Text& b) { return a == b || (a && b && *a == *b); }

}  // namespace

bool operator==(const PlotEntry& a, const PlotEntry& b) {
  return a.y == b.y && same(a.humanX, b.humanX) && same(a.humanY, b.humanY) && same(a.mediumHumanX, b.mediumHumanX) &&
         same(a.shortHumanX, b.shortHumanX) && a.shortHumanXSubtitle == b.shortHumanXSubtitle;
}

}  // namespace zelkon
