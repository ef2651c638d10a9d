#include "Classes/Views/PlotView.h"

#include <string_view>

#include "Classes/Views/PiePlotView.h"
#include "Classes/Views/SpendingOverTimeBarView.h"
#include "Foundation/NSException.h"

namespace zelkon {

namespace {

template <typename View>
std::shared_ptr<CALayerPlotView> makeView(const Value& arguments) {
  return std::make_shared<View>(arguments);
}

struct Plot {
  std::string_view name;
  std::shared_ptr<CALayerPlotView> (*makeView)(const Value& arguments);
};

constexpr Plot plots[] = {
    {"pie", makeView<PiePlotView>},
    {"spendingOverTimeBarOrLine", makeView<SpendingOverTimeBarView>},
};

}  // namespace

std::shared_ptr<CALayerPlotView> PlotView::plugInViewWithArguments(const Value& arguments) {
  const Value name = arguments.valueForKey(WebPlugInAttributesKey).valueForKey("plot");
  for (const Plot& plot : plots) {
    if (name.isString() && name.string() == plot.name) return plot.makeView(arguments);
  }
  NSRaise(NSInvalidArgumentException, "Unknown plotName parameter \"" + name.description() + "\"");
}

}  // namespace zelkon
