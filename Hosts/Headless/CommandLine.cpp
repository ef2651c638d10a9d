#include "Hosts/Headless/CommandLine.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <sstream>

#include "Backends/Cairo/IcuLocaleServices.h"
#include "Hosts/Headless/PrintableText.h"

namespace zelkon {
namespace {

constexpr size_t kLongestComplaint = 200;
constexpr double kLargestSide = 32000, kLeastScale = 0.05, kLargestScale = 16;
constexpr const char* kMostInput = "268435456";
// Whole numbers stay exact, and no bound is reached that the machine has first.
constexpr double kLargestBound = 1e12;

UsageError wrong(const std::string& option, const std::string& expected, const std::string& text) {
  return UsageError(option + ": " + expected + " is expected, not " + quotedText(text));
}

// A number as people and JSON write it: no blanks, no hexadecimal, no words.
std::optional<double> decimal(const std::string& text) {
  if (text.empty() || text.find_first_not_of("0123456789.eE+-") != std::string::npos) return std::nullopt;
  if (text.front() != '.' && (text.front() < '0' || text.front() > '9')) return std::nullopt;
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (end != text.c_str() + text.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

CGSize sizeOf(const std::string& text) {
  const size_t x = text.find('x');
  const auto width = decimal(text.substr(0, x));
  const auto height = x == std::string::npos ? std::nullopt : decimal(text.substr(x + 1));
  if (!width || !height || !(*width > 0 && *height > 0 && *width <= kLargestSide && *height <= kLargestSide))
    throw wrong("--size", "WIDTHxHEIGHT in points, up to 32000x32000,", text);
  return {*width, *height};
}

double scaleOf(const std::string& text) {
  const auto scale = decimal(text);
  if (!scale || *scale < kLeastScale || *scale > kLargestScale)
    throw wrong("--scale", "a number from 0.05 to 16", text);
  return *scale;
}

double boundOf(const std::string& option, const std::string& text, double least, bool isWhole) {
  const auto bound = decimal(text);
  if (!bound || *bound < least || *bound > kLargestBound || (isWhole && *bound != std::floor(*bound)))
    throw wrong(option, isWhole ? "a whole number above 0" : "a number of seconds", text);
  return *bound;
}

// A default as the help shows it.
std::string shown(double number) {
  std::ostringstream text;
  text << std::fixed;
  text.precision(0);
  text << number;
  return text.str();
}

// The options as words, before they are looked at.
struct Words {
  std::optional<std::string> size, scale, locale;
  std::string entries = shown(static_cast<double>(ScenarioLimits().entries));
  std::string pixels = shown(PlayOptions().mostPixels);
  std::string waiting = shown(ScenarioLimits().waiting);
  std::string input = kMostInput;
};

void addCommon(CLI::App& command, Words& words) {
  command.add_option("--size", words.size, "Size in points, WIDTHxHEIGHT, instead of the file's")->type_name("WxH");
  command.add_option("--scale", words.scale, "Pixels per point, 0.05 to 16, instead of the file's")
      ->type_name("NUMBER");
  command.add_option("--locale", words.locale, "Locale of the texts, such as de_DE, instead of the file's")
      ->type_name("NAME");
  command.add_option("--max-entries", words.entries, "Most entries of one array")
      ->capture_default_str()
      ->type_name("N");
  command.add_option("--max-pixels", words.pixels, "Most pixels of one picture")->capture_default_str()->type_name("N");
  command.add_option("--max-wait", words.waiting, "Most seconds that the steps wait in all")
      ->capture_default_str()
      ->type_name("SECONDS");
  command.add_option("--max-input", words.input, "Most bytes of one file")->capture_default_str()->type_name("BYTES");
}

void read(const Words& words, CommandLine& line) {
  if (words.size) line.options.size = sizeOf(*words.size);
  if (words.scale) line.options.scale = scaleOf(*words.scale);
  if (words.locale && !IcuLocaleServices::isLocale(*words.locale))
    throw wrong("--locale", "a locale such as de_DE", *words.locale);
  line.options.locale = words.locale;
  line.limits.entries = static_cast<size_t>(boundOf("--max-entries", words.entries, 1, true));
  line.options.mostPixels = boundOf("--max-pixels", words.pixels, 1, true);
  line.limits.waiting = boundOf("--max-wait", words.waiting, 0, false);
  line.mostInput = static_cast<size_t>(boundOf("--max-input", words.input, 1, true));
}

void checkOutputs(const CommandLine& line) {
  if (line.files.size() != line.outputs.size())
    throw UsageError("render: as many -o as files are expected (" + std::to_string(line.files.size()) + " files, " +
                     std::to_string(line.outputs.size()) + " outputs)");
  for (const std::string& output : line.outputs)
    if (!pictureFormatOf(output)) throw wrong("-o", "a name that ends in .png, .svg or .pdf", output);
}

}  // namespace

CommandLine CommandLine::parse(int argc, char** argv) {
  CLI::App app{"Draws spending pies and charts of amounts over time."};
  app.name("zelkon-plot");
  app.set_version_flag("--version", "zelkon-plot " ZELKON_VERSION);
  app.require_subcommand(1);

  CommandLine line;
  Words words;
  CLI::App* render = app.add_subcommand("render", "Writes the finished chart of each file as PNG, SVG or PDF");
  render->add_option("files", line.files, "Charts or scenarios, JSON; - reads standard input")->required();
  render->add_option("-o,--output", line.outputs, "Picture to write, once per file; its ending decides the format")
      ->required()
      ->allow_extra_args(false);
  addCommon(*render, words);
  CLI::App* play = app.add_subcommand("play", "Plays a scenario and prints what the page is told");
  play->add_option("file", line.files, "Scenario, JSON; - reads standard input")->required()->expected(1);
  play->add_option("--out", line.folder, "Folder for the files that steps write, none of which leaves it");
  addCommon(*play, words);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) throw UsageError(printableText(error.what(), kLongestComplaint));
    std::ostringstream answer;
    app.exit(error, answer, answer);
    line.answer = answer.str();
    return line;
  }
  line.kind = render->parsed() ? Kind::render : Kind::play;
  read(words, line);
  if (line.kind == Kind::render) checkOutputs(line);
  return line;
}

}  // namespace zelkon
