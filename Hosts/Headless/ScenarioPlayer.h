// Plays a scenario from its first step to its last.
#pragma once

#include <limits>
#include <string>

#include "Foundation/PlatformSession.h"
#include "Hosts/Headless/ChartPicture.h"
#include "Hosts/Headless/Scenario.h"
#include "Hosts/Headless/Transcript.h"

namespace zelkon {

class CairoDevice;

// What charts drawn one after another share: the drawing device and its fonts. A program may have several, also on as
// many threads; each is used by one thread at a time.
class HeadlessServices {
 public:
  // Throws NSException where Pango cannot be used.
  HeadlessServices();
  ~HeadlessServices();
  CairoDevice& device() { return *device_; }

 private:
  std::unique_ptr<CairoDevice> device_;
};

// A session of the platform with the services' device, the plug-in's resources and a locale ("de_DE") in it, current on
// the thread while it lives. `scale`: the device's pixels per point meanwhile. The services must outlive it.
class HeadlessSession {
 public:
  HeadlessSession(HeadlessServices& services, const std::string& locale, double scale);
  ~HeadlessSession();
  HeadlessSession(const HeadlessSession&) = delete;
  HeadlessSession& operator=(const HeadlessSession&) = delete;

 private:
  CairoDevice& device_;
  double earlierScale_;
  PlatformSession session_;
  PlatformSession::Scope scope_{session_};
};

// Overrides of what the file says, and what its pictures may be at most.
struct PlayOptions {
  std::optional<CGSize> size;
  std::optional<double> scale;
  std::optional<std::string> locale;
  std::optional<RGBA> background;  // under the chart; none in a file
  double mostPixels = 1e8;
  double affordablePixels = std::numeric_limits<double>::infinity();  // that there is memory for
};

// Plays every step in a session of its own; files that steps name are written below `folder` and never elsewhere. Times
// in the transcript start at 0. Throws ScenarioError for an unknown plot (`name` is the file in its text) and
// FileError.
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
