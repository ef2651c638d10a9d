// The factory that the web host asks for a view.
#pragma once

#include <memory>

#include "Classes/Views/CALayerPlotView.h"

namespace zelkon {

struct PlotView {
  // A new view of the class that the page's "plot" attribute names, with a zero frame and no layer; `arguments` is the
  // host's dictionary, handed on unchanged. Raises NSInvalidArgumentException for an unknown or missing name.
  static std::shared_ptr<CALayerPlotView> plugInViewWithArguments(const Value& arguments);
};

}  // namespace zelkon
