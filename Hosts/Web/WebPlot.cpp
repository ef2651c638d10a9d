#include "Hosts/Web/WebPlot.h"

#include <cmath>

#include "Hosts/Web/PageImports.h"
#include "Hosts/Web/PageJSON.h"

namespace zelkon {
namespace {

PageFunction pageFunctionsOf(int plot) {
  return [plot](std::string_view name, const ValueArray& arguments) {
    const std::string text = PageJSON(Value(arguments));
    zelkon_page_call(plot, name.data(), name.size(), text.data(), text.size());
  };
}

int pixels(double points, double scale) { return static_cast<int>(std::lround(points * scale)); }

// The device draws at that scale as long as this lives.
class ScreenScale {
 public:
  ScreenScale(CanvasDevice& device, double scale) : device_(device), earlier_(device.screenScale()) {
    device_.setScreenScale(scale);
  }
  ~ScreenScale() { device_.setScreenScale(earlier_); }
  ScreenScale(const ScreenScale&) = delete;
  ScreenScale& operator=(const ScreenScale&) = delete;

 private:
  CanvasDevice& device_;
  double earlier_;
};

}  // namespace

WebPlot::WebPlot(int id, std::optional<std::string> plot, int canvas, CGSize size, ChartLayout layout,
                 CanvasDevice& device)
    : id_(id), canvas_(canvas), device_(device), chart_(std::move(plot), size, layout, pageFunctionsOf(id)) {}

void WebPlot::step(int steps) { announce(chart_.step(steps)); }

void WebPlot::stepToEnd(bool last) { announce(chart_.stepToEnd(last)); }

void WebPlot::announce(const std::optional<ReachableEntry>& entry) const {
  if (!entry) return;
  const std::string text = PageJSON(Value(ValueArray{entry->label, entry->amount, entry->share}));
  zelkon_page_announce(id_, text.data(), text.size());
}

size_t WebPlot::readPeriods(size_t first, size_t count) const {
  const CALayerPlotView& view = *chart_.view();
  const size_t all = view.numberOfPeriods();
  for (size_t i = first; i < all && i - first < count; ++i) {
    const ReachableEntry period = view.periodAtIndex(i);
    const std::string &name = period.label.string(), &amount = period.amount.string();
    zelkon_page_period(name.data(), name.size(), amount.data(), amount.size());
  }
  return all;
}

WebPlot::Screen WebPlot::makeScreen(int canvas, double scale) const {
  const int width = pixels(chart_.size().width, scale), height = pixels(chart_.size().height, scale);
  return {device_.screenSurface(canvas, width, height), width, height};
}

void WebPlot::compose(double time) {
  if (!chart_.needsFrame(time)) return;
  const double scale = device_.screenScale();
  if (!screen_.surface || screen_.width != pixels(chart_.size().width, scale) ||
      screen_.height != pixels(chart_.size().height, scale))
    screen_ = makeScreen(canvas_, scale);
  const auto context = chart_.isAnimating(time) ? device_.contextForMovingFrame(screen_.surface, scale)
                                                : device_.contextForSurface(screen_.surface, scale);
  context->clearRect({{0, 0}, chart_.size()});
  chart_.compose(*context, scale, time);
  context->flush();
}

void WebPlot::print(int canvas, double scale) {
  if (!chart_.hasRoom()) return;
  const Screen paper = makeScreen(canvas, scale);
  const ScreenScale paperScale(device_, scale);
  const auto context = device_.contextForSurface(paper.surface, scale);
  chart_.print(*context);
  context->flush();
}

}  // namespace zelkon
