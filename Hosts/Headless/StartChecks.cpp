#include "Hosts/Headless/StartChecks.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <system_error>
#include <thread>

#include "Hosts/Headless/PrintableText.h"

namespace zelkon {
namespace {

// What the libraries, their threads and a chart of a few entries take, and each pixel of a picture with the layers
// below it. Measured, with a fifth to spare.
constexpr double kBytesToStart = 170e6, kBytesPerPixel = 16;

constexpr const char* kFontFolder = "/etc/fonts";

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

bool isReadable(const std::string& path) { return access(path.c_str(), R_OK) == 0; }

// As fontconfig looks for it: a name with a folder is taken as it is, another one is looked for in the folders.
void checkFontConfiguration() {
  if (!variable("FONTCONFIG_SYSROOT").empty()) return;
  std::string file = variable("FONTCONFIG_FILE");
  const std::string asked = file;
  if (file.empty()) file = "fonts.conf";
  if (file.front() == '~') return;
  if (file.front() == '/') {
    if (isReadable(file)) return;
  } else {
    const std::string folders = variable("FONTCONFIG_PATH") + ":" + kFontFolder;
    for (size_t start = 0; start <= folders.size();) {
      const size_t end = std::min(folders.find(':', start), folders.size());
      if (end > start && isReadable(folders.substr(start, end - start) + "/" + file)) return;
      start = end + 1;
    }
  }
  throw ResourceError("fontconfig has no configuration: " +
                      (asked.empty() ? "there is no fonts.conf" : "FONTCONFIG_FILE is " + quotedText(asked)));
}

// Any other than the one that reads fontconfig's fonts is for another system.
void checkPangoBackend() {
  const std::string asked = variable("PANGOCAIRO_BACKEND");
  for (const char* known : {"", "fc", "fontconfig"})
    if (asked == known) return;
  throw ResourceError("Pango has no backend " + quotedText(asked) + ", which PANGOCAIRO_BACKEND asks for");
}

void checkThreads() {
  try {
    std::thread([] {}).join();
  } catch (const std::system_error& error) {
    throw ResourceError(std::string("no thread can be started: ") + error.code().message());
  }
}

// Bytes that the limit on memory still leaves; without one, infinitely many.
double bytesLeft() {
  rlimit limit;
  if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
    return std::numeric_limits<double>::infinity();
  double pages = 0;
  if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(file, "%lf", &pages) != 1) pages = 0;
    std::fclose(file);
  }
  return static_cast<double>(limit.rlim_cur) - pages * static_cast<double>(sysconf(_SC_PAGESIZE));
}

}  // namespace

void checkResources() {
  if (const double left = bytesLeft(); left < kBytesToStart) {
    char text[120];
    std::snprintf(text, sizeof text,
                  "there is not memory enough: %.0f MB are needed to start, and ulimit -v leaves %.0f",
                  kBytesToStart / 1e6, std::max(0.0, left) / 1e6);
    throw ResourceError(text);
  }
  checkThreads();
  checkPangoBackend();
  checkFontConfiguration();
}

double affordablePixels() { return (bytesLeft() - kBytesToStart) / kBytesPerPixel; }

}  // namespace zelkon
