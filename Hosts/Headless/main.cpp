// The command: renders charts to files and plays scenarios.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>

#include "Foundation/NSException.h"
#include "Hosts/Headless/ChartPicture.h"
#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/PictureWriter.h"
#include "Hosts/Headless/PrintableText.h"
#include "Hosts/Headless/ScenarioPlayer.h"
#include "Hosts/Headless/UnfinishedFile.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

using namespace zelkon;

constexpr int kBadInput = 1;
constexpr int kBadUsage = 2;

// Thrown for words of the command line that do not fit together.
struct UsageError {
  std::string text;
};

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

CGSize parseSize(const std::string& text) {
  double width = 0, height = 0;
  int used = 0;
  if (std::sscanf(text.c_str(), "%lfx%lf%n", &width, &height, &used) != 2 || used != static_cast<int>(text.size()) ||
      !(width > 0 && height > 0 && width <= 32000 && height <= 32000))
    throw UsageError{"--size: WIDTHxHEIGHT in points is expected, not \"" + text + "\""};
  return {width, height};
}

std::string endingOf(const std::string& path) { return path.substr(path.rfind('.') + 1); }

// Of a chart that is only drawn, what the plug-in logs is worth a word and what its page is told is not.
void logToStandardError(const std::string& line) {
  if (const size_t kind = line.find(' ') + 1; line.compare(kind, 4, "log ") == 0)
    std::cerr << "zelkon-plot: " << line.substr(kind + 4) << '\n';
}

void render(const std::vector<std::string>& files, const std::vector<std::string>& outputs,
            const PlayOptions& options) {
  if (files.size() != outputs.size())
    throw UsageError{"render: as many -o as files are expected (" + std::to_string(files.size()) + " files, " +
                     std::to_string(outputs.size()) + " outputs)"};
  for (const std::string& output : outputs)
    if (!pictureFormatOf(output)) throw UsageError{printableName(output) + ": the name must end in .png, .svg or .pdf"};
  HeadlessServices services;
  PictureWriter writer;
  for (size_t i = 0; i < files.size(); ++i) {
    PictureBytes bytes;
    try {
      const std::string name = displayName(files[i]);
      const Scenario scenario = Scenario::parse(readWholeFile(files[i]), name);
      bytes = drawScenario(scenario, name, options, endingOf(outputs[i]), services, logToStandardError);
    } catch (...) {
      // A picture before this one that cannot be written is the first thing that went wrong.
      writer.finish();
      throw;
    }
    // The last one has no other to be drawn meanwhile.
    if (i + 1 < files.size()) {
      writer.write(outputs[i], std::move(bytes));
    } else {
      writer.finish();
      writeWholeFile(outputs[i], bytes());
    }
  }
}

void play(const std::string& file, const std::string& folder, const PlayOptions& options) {
  const std::string name = displayName(file);
  const Scenario scenario = Scenario::parse(readWholeFile(file), name);
  HeadlessServices services;
  playScenario(scenario, name, options, folder, services, [](const std::string& line) { std::cout << line << '\n'; });
}

}  // namespace

int main(int argc, char** argv) {
  keepFreedMemory();
  UnfinishedFile::removeAllOnSignals();
  CLI::App app{"Draws spending pies and charts of amounts over time."};
  app.name("zelkon-plot");
  app.set_version_flag("--version", "zelkon-plot " ZELKON_VERSION);
  app.require_subcommand(1);

  std::vector<std::string> files, outputs;
  std::string size, locale, folder;
  double scale = 0;
  const auto addCommon = [&](CLI::App* command) {
    command->add_option("--size", size, "Size in points, WIDTHxHEIGHT, instead of the file's");
    command->add_option("--scale", scale, "Pixels per point, instead of the file's")->check(CLI::Range(0.05, 16.0));
    command->add_option("--locale", locale, "Locale of the texts, such as de_DE, instead of the file's");
  };
  CLI::App* renderCommand = app.add_subcommand("render", "Writes the finished chart of each file as PNG, SVG or PDF");
  renderCommand->add_option("files", files, "Charts or scenarios, JSON; - reads standard input")->required();
  renderCommand->add_option("-o,--output", outputs, "Picture to write, once per file; its ending decides the format")
      ->required()
      ->allow_extra_args(false);
  addCommon(renderCommand);
  CLI::App* playCommand = app.add_subcommand("play", "Plays a scenario and prints what the page is told");
  playCommand->add_option("file", files, "Scenario, JSON; - reads standard input")->required()->expected(1);
  playCommand->add_option("--out", folder, "Folder for the files that steps write");
  addCommon(playCommand);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::cerr << "zelkon-plot: " << error.what() << '\n';
    return kBadUsage;
  }

  try {
    PlayOptions options;
    if (!size.empty()) options.size = parseSize(size);
    if (scale > 0) options.scale = scale;
    if (!locale.empty()) options.locale = locale;
    if (renderCommand->parsed())
      render(files, outputs, options);
    else
      play(files.front(), folder, options);
  } catch (const UsageError& error) {
    std::cerr << "zelkon-plot: " << error.text << '\n';
    return kBadUsage;
  } catch (const NSException& exception) {
    std::cerr << "zelkon-plot: " << exception.description() << '\n';
    return kBadInput;
  } catch (const std::exception& error) {
    std::cerr << "zelkon-plot: " << error.what() << '\n';
    return kBadInput;
  }
  return 0;
}
