#include "Hosts/Web/WebHost.h"

#include "AppKit/NSBundle.h"
#include "Backends/Canvas/IntlLocaleServices.h"
#include "Foundation/NSLog.h"
#include "Foundation/NSRunLoop.h"
#include "Hosts/Common/Turn.h"
#include "Hosts/Web/PageImports.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {
namespace {

std::optional<std::vector<uint8_t>> loadResource(const std::string& name) {
  std::vector<uint8_t> bytes(zelkon_page_resource(name.data(), name.size(), nullptr, 0));
  if (bytes.empty()) return std::nullopt;
  zelkon_page_resource(name.data(), name.size(), bytes.data(), bytes.size());
  return bytes;
}

}  // namespace

WebHost& WebHost::shared() {
  static WebHost host;
  return host;
}

WebHost::WebHost() {
  GraphicsDevice::install(&device_);
  LocaleServices::install(std::make_shared<IntlLocaleServices>());
  NSSetLogSink([](std::string_view line) { zelkon_page_log(line.data(), line.size()); });
  NSBundle::mainBundle().setLoader(loadResource);
}

bool WebHost::create(int id, std::optional<std::string> plot, int canvas, CGSize size) {
  bool made = false;
  enter([&] {
    try {
      plots_[id] = std::make_unique<WebPlot>(id, std::move(plot), canvas, size, layout_, device_);
      made = true;
    } catch (const NSException& exception) {
      report(exception);
    }
  });
  if (!made) plots_.erase(id);
  return made;
}

void WebHost::destroy(int id) {
  if (plots_.count(id) > 0) destroyed_.insert(id);
  if (depth_ == 0) dropDestroyed();
}

WebPlot* WebHost::plot(int id) {
  if (destroyed_.count(id) > 0) return nullptr;
  const auto found = plots_.find(id);
  return found == plots_.end() ? nullptr : found->second.get();
}

void WebHost::setScreenScale(double scale) {
  if (scale == device_.screenScale()) return;
  device_.setScreenScale(scale);
  for (const auto& [id, plot] : plots_) plot->chart().setNeedsFreshView();
}

std::vector<HostedChart*> WebHost::charts() const {
  std::vector<HostedChart*> charts;
  for (const auto& [id, plot] : plots_) {
    if (destroyed_.count(id) == 0) charts.push_back(&plot->chart());
  }
  return charts;
}

void WebHost::beginTurn(double now) { zelkon::beginTurn(charts(), now, reducesMotion_); }

void WebHost::compose(int id) {
  if (WebPlot* found = plot(id)) found->compose(CACurrentMediaTime());
}

bool WebHost::endTurn() {
  zelkon::endTurn(charts());
  bool due = NSRunLoop::mainRunLoop().nextDue().has_value();
  for (HostedChart* chart : charts()) due |= chart->needsFrame(CACurrentMediaTime());
  return due;
}

void WebHost::report(const std::exception& exception) {
  const std::string_view text = exception.what();
  zelkon_page_error(text.data(), text.size());
}

void WebHost::dropDestroyed() {
  while (!destroyed_.empty()) {
    const int id = *destroyed_.begin();
    auto dropped = plots_.extract(id);
    destroyed_.erase(id);
    // Whatever a chart's end still calls is an entry like any other.
    enter([&] { dropped = {}; });
  }
}

}  // namespace zelkon
