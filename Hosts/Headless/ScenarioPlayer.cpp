#include "Hosts/Headless/ScenarioPlayer.h"

#include "AppKit/NSBundle.h"
#include "Backends/Cairo/CairoDevice.h"
#include "Backends/Cairo/IcuLocaleServices.h"
#include "Foundation/NSLog.h"
#include "Hosts/Common/LoggedExceptions.h"
#include "Hosts/Headless/ChartPicture.h"
#include "Hosts/Headless/LayerDump.h"
#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/PictureLimit.h"
#include "Hosts/Headless/PlugInHost.h"
#include "Hosts/Headless/PrintableText.h"
#include "Hosts/Headless/Resources.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {
namespace {

// No opening lasts longer than its slowest bar; this only bounds a chart of absurd height.
constexpr double kLongestOpening = 60;
// Of a reason that repeats what the file says.
constexpr size_t kLongestReason = 120;

// The key of a step that writes a file, else null.
struct FileKey {
  const char* operator()(const SnapshotStep&) const { return "snapshot"; }
  const char* operator()(const LayersStep&) const { return "layers"; }
  const char* operator()(const PrintStep&) const { return "print"; }
  template <typename Other>
  const char* operator()(const Other&) const {
    return nullptr;
  }
};

// "pie.json: /steps/3/print"
std::string placeOfFile(const std::string& name, size_t index, const ScenarioStep& step) {
  const char* key = std::visit(FileKey(), step);
  return name + ": /steps/" + std::to_string(index) + (key ? std::string("/") + key : "");
}

// One scenario being played in its own session.
class Player {
 public:
  Player(const Scenario& scenario, const std::string& name, const PlayOptions& options, ChartLayout layout,
         HeadlessServices& services, const Transcript::Sink& sink)
      : scenario_(scenario),
        name_(printableName(name)),
        services_(services),
        scale_(options.scale.value_or(scenario.scale)),
        session_(services, options.locale.value_or(scenario.locale), scale_) {
    transcript_.emplace(sink);
    NSSetLogSink([this](std::string_view line) { log(line); });
    try {
      host_.emplace(scenario.plot, options.size.value_or(scenario.size), layout, *transcript_);
    } catch (const NSException& exception) {
      throw ScenarioError(name_ + ": /plot: " + printableText(exception.reason(), kLongestReason));
    }
  }
  ~Player() {
    host_.reset();
    CATransaction::deliverEndedAnimations();
  }
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  PlugInHost& host() { return *host_; }
  double scale() const { return scale_; }

  // Files that steps write go below the folder. What the chart does not take is logged, and its page goes on.
  void play(const std::string& folder) {
    folder_.emplace(folder);
    play();
  }
  // There must be no steps that write files. What the chart does not take is an error.
  void draw() {
    refuses_ = true;
    play();
    carryOut(place_, [&] { host_->settle(); });
    services_.device().requireFonts();
  }

 private:
  void play() {
    if (!scenario_.steps) {
      if (scenario_.options) carryOut("/options", [&] { host_->call("SetPlotOptions", {*scenario_.options}); });
      if (scenario_.data) carryOut("/data", [&] { host_->call("SetPlotData", {*scenario_.data}); });
      carryOut("/data", [&] { host_->waitForAnimations(kLongestOpening); });
      return;
    }
    for (size_t i = 0; i < scenario_.steps->size(); ++i) {
      const ScenarioStep& step = (*scenario_.steps)[i];
      try {
        carryOut("/steps/" + std::to_string(i), [&] { std::visit([this](const auto& s) { carryOut(s); }, step); });
      } catch (const FileError& error) {
        throw FileError(placeOfFile(name_, i, step) + ": " + error.what());
      }
    }
  }
  // Whatever is logged tells of something that the chart has not taken; the last line says most.
  template <typename Body>
  void carryOut(const std::string& place, Body body) {
    place_ = place;
    logExceptions(body);
    if (refusal_.empty()) return;
    // Without fonts no label has the width that it should have.
    services_.device().requireFonts();
    throw ScenarioError(name_ + ": " + place_ +
                        ": the chart does not take this: " + printableText(refusal_, kLongestReason));
  }
  void log(std::string_view line) {
    if (refuses_)
      refusal_ = line;
    else
      transcript_->log(line);
  }
  void carryOut(const CallStep& step) {
    const Value result = host_->call(step.name, step.arguments);
    if (!result.isNull() && !result.isUndefined()) transcript_->result(step.name, result);
  }
  void carryOut(const WaitStep& step) { host_->wait(step.seconds); }
  void carryOut(const MouseStep& step) {
    switch (step.kind) {
      case MouseStep::Kind::moved:
      case MouseStep::Kind::entered:
        return host_->mouseMoved(step.at);
      case MouseStep::Kind::down:
        return host_->mouseDown(step.at);
      case MouseStep::Kind::exited:
        return host_->mouseExited();
    }
  }
  void carryOut(const SnapshotStep& step) {
    host_->settle();
    folder_->write(step.file, screenPicture(*host_, services_.device(), scale_));
  }
  void carryOut(const LayersStep& step) {
    host_->settle();
    folder_->write(step.file, layerDump(host_->view().get(), CACurrentMediaTime()));
  }
  void carryOut(const PrintStep& step) {
    host_->settle();
    const PictureFormat format = pictureFormatOf(step.file).value_or(PictureFormat::pdf);
    folder_->write(step.file, printedPicture(*host_, services_.device(), scale_, format));
  }
  void carryOut(const FrameStep& step) { host_->setFrame(step.size); }
  void carryOut(const ResizeStep& step) { host_->resize(step.size); }
  void carryOut(const ScrollStep& step) { host_->scroll(step.offset); }
  void carryOut(const LifecycleStep& step) {
    if (step.kind == LifecycleStep::Kind::stop) return host_->stop();
    host_->destroy();
  }

  const Scenario& scenario_;
  const std::string name_;
  HeadlessServices& services_;
  double scale_;
  std::optional<OutputFolder> folder_;
  bool refuses_ = false;
  std::string refusal_;  // the last line of the log
  std::string place_;    // of what is carried out
  std::optional<Transcript> transcript_;
  HeadlessSession session_;
  std::optional<PlugInHost> host_;
};

}  // namespace

HeadlessServices::HeadlessServices() : device_(std::make_unique<CairoDevice>()) {}
HeadlessServices::~HeadlessServices() = default;

HeadlessSession::HeadlessSession(HeadlessServices& services, const std::string& locale, double scale)
    : device_(services.device()), earlierScale_(device_.screenScale()) {
  device_.setScreenScale(scale);
  GraphicsDevice::install(&device_);
  LocaleServices::install(std::make_shared<IcuLocaleServices>(locale));
  NSBundle::mainBundle().setLoader(resourceNamed);
}

HeadlessSession::~HeadlessSession() { device_.setScreenScale(earlierScale_); }

void playScenario(const Scenario& scenario, const std::string& name, const PlayOptions& options,
                  const std::string& folder, HeadlessServices& services, const Transcript::Sink& sink) {
  checkPixels(scenario, name, options, false);
  Player(scenario, name, options, ChartLayout::literal, services, sink).play(folder);
}

PictureBytes drawScenario(const Scenario& scenario, const std::string& name, const PlayOptions& options,
                          const std::string& format, HeadlessServices& services, const Transcript::Sink& sink) {
  const std::optional<PictureFormat> kind = pictureFormatOf("." + format);
  if (!kind) throw ScenarioError(printableName(name) + ": there is no picture format " + quotedText(format));
  for (size_t i = 0; scenario.steps && i < scenario.steps->size(); ++i)
    if (std::visit(FileKey(), (*scenario.steps)[i]))
      throw ScenarioError(placeOfFile(printableName(name), i, (*scenario.steps)[i]) +
                          ": a scenario that is rendered writes no files; it can be played");
  checkPixels(scenario, name, options, *kind == PictureFormat::png);
  Player player(scenario, name, options, ChartLayout::readable, services, sink);
  player.draw();
  if (*kind == PictureFormat::png)
    return drawnScreen(player.host(), services.device(), player.scale(), options.background);
  return [bytes = printedPicture(player.host(), services.device(), player.scale(), *kind, options.background)] {
    return bytes;
  };
}

std::string renderScenario(const Scenario& scenario, const std::string& name, const PlayOptions& options,
                           const std::string& format, HeadlessServices& services, const Transcript::Sink& sink) {
  return drawScenario(scenario, name, options, format, services, sink)();
}

}  // namespace zelkon
