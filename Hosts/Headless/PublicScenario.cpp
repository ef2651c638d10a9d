// include/zelkon/scenario.h.
#include "Hosts/Headless/PublicErrors.h"
#include "Hosts/Headless/ThreadServices.h"
#include "zelkon/scenario.h"

namespace zelkon::plot {

std::string render(const std::string& scenario, Format format) {
  const char* ending = format == Format::png ? "png" : format == Format::svg ? "svg" : "pdf";
  return withPublicErrors(Error::Reason::badScenario, Error::Reason::tooLarge, [&] {
    return renderScenario(Scenario::parse(scenario, "scenario"), "scenario", {}, ending, threadServices(),
                          [](const std::string&) {});
  });
}

void play(const std::string& scenario, const std::string& folder, const std::function<void(const std::string&)>& line) {
  withPublicErrors(Error::Reason::badScenario, Error::Reason::noFile, [&] {
    playScenario(Scenario::parse(scenario, "scenario"), "scenario", {}, folder, threadServices(), line);
  });
}

}  // namespace zelkon::plot
