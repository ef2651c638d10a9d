// Plays a scenario from its first step to its last.
#pragma once

#include <limits>
#include <string>

#include "Hosts/Headless/ChartPicture.h"
#include "Hosts/Headless/Scenario.h"
#include "Hosts/Headless/Transcript.h"

namespace zelkon {

class CairoDevice;

// What a process needs once: the drawing device, the plug-in's resources. Installs them for as long as it lives.
class HeadlessServices {
 public:
  // Throws NSException where Pango cannot be used.
  HeadlessServices();
  ~HeadlessServices();
  CairoDevice& device() { return *device_; }

 private:
  std::unique_ptr<CairoDevice> device_;
};

// Overrides of what the file says, and what its pictures may be at most.
struct PlayOptions {
  std::optional<CGSize> size;
  std::optional<double> scale;
  std::optional<std::string> locale;
  double mostPixels = 1e8;
  double affordablePixels = std::numeric_limits<double>::infinity();  // that there is memory for
};

// Plays every step; files that steps name are written below `folder` and never elsewhere. Times in the transcript start
// at 0. Throws ScenarioError for an unknown plot (`name` is the file in its text) and FileError.
void playScenario(const Scenario& scenario, const std::string& name, const PlayOptions& options,
                  const std::string& folder, HeadlessServices& services, const Transcript::Sink& sink);
// Plays the scenario and draws the chart at its end: for PNG as on the screen, for SVG and PDF as printed. Throws
// ScenarioError, also for a scenario with steps that write files and for calls that the chart does not take, FileError
// and NSException. The services must outlive what it answers.
PictureBytes drawScenario(const Scenario& scenario, const std::string& name, const PlayOptions& options,
                          const std::string& format, HeadlessServices& services, const Transcript::Sink& sink);
// The same as the bytes of the picture's file.
std::string renderScenario(const Scenario& scenario, const std::string& name, const PlayOptions& options,
                           const std::string& format, HeadlessServices& services, const Transcript::Sink& sink);

}  // namespace zelkon
