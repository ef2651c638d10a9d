// The command: renders charts to files and plays scenarios.
#include <exception>
#include <new>

#include "Backends/Cairo/CairoDevice.h"
#include "Backends/Cairo/LibraryMessages.h"
#include "Foundation/NSException.h"
#include "Hosts/Headless/ChartPicture.h"
#include "Hosts/Headless/CommandLine.h"
#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/PictureWriter.h"
#include "Hosts/Headless/PrintableText.h"
#include "Hosts/Headless/ScenarioPlayer.h"
#include "Hosts/Headless/StandardStreams.h"
#include "Hosts/Headless/StartChecks.h"
#include "Hosts/Headless/UnfinishedFile.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

using namespace zelkon;

constexpr int kBadInput = 1;
constexpr int kBadUsage = 2;

// One picture follows another of about the same size. Giving the pages of each back to the system, only to have it
// clear them and hand them out again, takes as long as a third of the drawing.
void keepFreedMemory() {
#ifdef __GLIBC__
  constexpr int separateBytes = 32 << 20, keptBytes = 256 << 20;
  mallopt(M_MMAP_THRESHOLD, separateBytes);
  mallopt(M_TRIM_THRESHOLD, keptBytes);
#endif
}

std::string displayName(const std::string& path) { return path == "-" ? "standard input" : path; }

std::string endingOf(const std::string& path) { return path.substr(path.rfind('.') + 1); }

// Does what concerns one file; what goes wrong with it names it.
template <typename Body>
auto naming(const std::string& file, Body body) {
  try {
    return body(file);
  } catch (const NSException& exception) {
    throw ScenarioError(printableName(file) + ": " + printableText(exception.description()));
  } catch (const std::bad_alloc&) {
    throw ScenarioError(printableName(file) + ": there is not memory enough for it");
  }
}

Scenario read(const std::string& path, const std::string& name, const CommandLine& line) {
  return Scenario::parse(readWholeFile(path, line.mostInput), name, line.limits);
}

void render(const CommandLine& line) {
  HeadlessServices services;
  PictureWriter writer;
  for (size_t i = 0; i < line.files.size(); ++i) {
    const std::string& output = line.outputs[i];
    PictureBytes bytes;
    try {
      bytes = naming(displayName(line.files[i]), [&](const std::string& name) {
        return drawScenario(read(line.files[i], name, line), name, line.options, endingOf(output), services,
                            [](const std::string&) {});
      });
    } catch (...) {
      // A picture before this one that cannot be written is the first thing that went wrong.
      writer.finish();
      throw;
    }
    // The last one has no other to be drawn meanwhile.
    if (i + 1 < line.files.size()) {
      writer.write(output, std::move(bytes));
    } else {
      writer.finish();
      writeWholeFile(output, bytes());
    }
  }
}

void play(const CommandLine& line) {
  StandardOutput output;
  naming(displayName(line.files.front()), [&](const std::string& name) {
    const Scenario scenario = read(line.files.front(), name, line);
    HeadlessServices services;
    services.device().requireFonts();
    playScenario(scenario, name, line.options, line.folder, services,
                 [&](const std::string& text) { output.write(text + "\n"); });
  });
  output.finish();
}

void carryOut(const CommandLine& line) {
  switch (line.kind) {
    case CommandLine::Kind::answer: {
      StandardOutput output;
      output.write(line.answer);
      return output.finish();
    }
    case CommandLine::Kind::render:
      return render(line);
    case CommandLine::Kind::play:
      return play(line);
  }
}

// Libraries that cannot have what they need end the process by a signal; this ends it as any other error does.
void reportMessage(std::string_view text, bool isFatal) {
  reportLine(text);
  if (isFatal) UnfinishedFile::removeAllAndEnd(kBadInput);
}

void run(CommandLine line) {
  if (line.kind != CommandLine::Kind::answer) {
    checkResources();
    line.options.affordablePixels = affordablePixels();
  }
  carryOut(line);
}

}  // namespace

int main(int argc, char** argv) {
  openStandardStreams();
  keepFreedMemory();
  UnfinishedFile::removeAllOnSignals();
  setLibraryMessageSink(reportMessage);
  try {
    run(CommandLine::parse(argc, argv));
  } catch (const UsageError& error) {
    reportLine(error.what());
    return kBadUsage;
  } catch (const std::bad_alloc&) {
    reportLine("there is not memory enough");
    return kBadInput;
  } catch (const std::exception& error) {
    reportLine(error.what());
    return kBadInput;
  }
  return 0;
}
