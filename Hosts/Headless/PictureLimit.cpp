#include "Hosts/Headless/PictureLimit.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Hosts/Headless/PrintableText.h"

namespace zelkon {
namespace {

// The chart's size as the steps change it.
class Sizes {
 public:
  Sizes(const Scenario& scenario, const std::string& name, const PlayOptions& options)
      : name_(name),
        scale_(options.scale.value_or(scenario.scale)),
        most_(options.mostPixels),
        affordable_(options.affordablePixels),
        size_(options.size.value_or(scenario.size)),
        place_(options.size ? "--size" : "/size") {}

  void enterStep(size_t index) { step_ = "/steps/" + std::to_string(index); }
  void operator()(const FrameStep& step) { set(step.size, "/frame"); }
  void operator()(const ResizeStep& step) { set(step.size, "/resize"); }
  void operator()(const SnapshotStep&) const { check(); }
  void operator()(const PrintStep& step) const {
    if (pictureFormatOf(step.file) == PictureFormat::png) check();
  }
  template <typename Other>
  void operator()(const Other&) const {}

  void check() const {
    const double width = pixels(size_.width), height = pixels(size_.height);
    if (width * height <= std::min(most_, affordable_)) return;
    char text[160];
    if (width * height > most_)
      std::snprintf(text, sizeof text, "a picture of %.0f x %.0f pixels is larger than %.0f pixels in all", width,
                    height, most_);
    else
      std::snprintf(text, sizeof text, "there is not memory enough for a picture of %.0f x %.0f pixels", width, height);
    throw ScenarioError(printableName(name_) + ": " + place_ + ": " + text);
  }

 private:
  double pixels(double points) const { return std::max(1.0, std::ceil(points * scale_ - 1e-6)); }
  void set(CGSize size, const char* key) {
    size_ = size;
    place_ = step_ + key;
  }

  const std::string& name_;
  const double scale_, most_, affordable_;
  CGSize size_;
  std::string place_, step_;
};

}  // namespace

void checkPixels(const Scenario& scenario, const std::string& name, const PlayOptions& options, bool endsInPixels) {
  Sizes sizes(scenario, name, options);
  for (size_t i = 0; scenario.steps && i < scenario.steps->size(); ++i) {
    sizes.enterStep(i);
    std::visit([&](const auto& step) { sizes(step); }, (*scenario.steps)[i]);
  }
  if (endsInPixels) sizes.check();
}

}  // namespace zelkon
