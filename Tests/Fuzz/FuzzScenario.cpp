// Scenarios, as text and as bytes that say what happens. Both are kept small: the time goes to what is new in an input,
// not to large pictures and long waits.
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "Fuzz/ByteChooser.h"
#include "Fuzz/FuzzServices.h"
#include "Fuzz/FuzzTargets.h"
#include "Hosts/Headless/OutputFile.h"

namespace zelkon {
namespace {

constexpr size_t kMostSteps = 40;
constexpr size_t kManyEntries = 500;
constexpr double kLongestWait = 1;
constexpr double kLargestSide = 1000;
constexpr double kLargestScale = 2;

// Where the pictures go: each over the one before it.
class PictureFolder {
 public:
  PictureFolder() : path_(std::filesystem::temp_directory_path() / ("zelkon-fuzz-" + std::to_string(getpid()))) {
    std::filesystem::create_directories(path_);
  }
  ~PictureFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  PictureFolder(const PictureFolder&) = delete;
  PictureFolder& operator=(const PictureFolder&) = delete;
  std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

void bound(CGSize& size) {
  size.width = std::min(size.width, kLargestSide);
  size.height = std::min(size.height, kLargestSide);
}

// The name with its ending alone, so that nothing is written anywhere else.
void bound(std::string& file) {
  const std::string ending = std::filesystem::path(file).extension().string();
  file = "picture" + (ending == ".png" || ending == ".svg" || ending == ".pdf" ? ending : "");
}

struct Bounding {
  void operator()(WaitStep& step) const { step.seconds = std::min(step.seconds, kLongestWait); }
  void operator()(SnapshotStep& step) const { bound(step.file); }
  void operator()(LayersStep& step) const { bound(step.file); }
  void operator()(PrintStep& step) const { bound(step.file); }
  void operator()(FrameStep& step) const { bound(step.size); }
  void operator()(ResizeStep& step) const { bound(step.size); }
  template <typename Other>
  void operator()(Other&) const {}
};

void play(Scenario scenario) {
  bound(scenario.size);
  scenario.scale = std::min(scenario.scale, kLargestScale);
  if (scenario.steps) {
    if (scenario.steps->size() > kMostSteps) scenario.steps->resize(kMostSteps, WaitStep{0});
    for (ScenarioStep& step : *scenario.steps) std::visit(Bounding(), step);
  }
  const PictureFolder folder;
  try {
    playScenario(scenario, "fuzz", {}, folder.path(), fuzzServices(), [](const std::string&) {});
    if (!scenario.steps)
      for (const char* format : {"png", "svg", "pdf"})
        renderScenario(scenario, "fuzz", {}, format, fuzzServices(), [](const std::string&) {});
  } catch (const ScenarioError&) {
  } catch (const FileError&) {
  }
}

// Options and entries as pages hand them over, with anything in place of what they should be.
Value pageArray(ByteChooser& choose, std::initializer_list<const char*> keys) {
  if (choose.below(16) == 15) return choose.value(3);
  ValueArray array;
  for (size_t i = choose.below(40); i > 0; --i) {
    if (choose.below(32) == 31) {
      array.push_back(choose.value(2));
      continue;
    }
    ValueDictionary entry;
    for (const char* key : keys)
      if (choose.below(8) != 7) entry[key] = choose.below(8) == 7 ? choose.value(2) : Value(choose.text());
    array.push_back(entry);
  }
  // Now and then so many that a line has to leave some out.
  if (choose.below(8) == 7 && !array.empty())
    for (size_t i = 0; array.size() < kManyEntries; ++i) array.push_back(array[i]);
  return array;
}

CallStep chooseCall(ByteChooser& choose, bool isPie) {
  switch (choose.below(6)) {
    case 0: {
      ValueArray options;
      for (const char* key :
           {"DisplayXLabels", "DisplayYLabels", "AllValuesPositive", "YTickMarksExtendFullWidth", "CurrencyID"})
        if (choose.yes()) options.push_back(ValueDictionary{{"key", key}, {"value", choose.value(1)}});
      return {"SetPlotOptions", {options}};
    }
    case 1:
      return {"SetPlotOptions", {pageArray(choose, {"key", "value"})}};
    case 2:
      return {"HoverEntryAtIndex", {choose.value(1), choose.value(1)}};
    case 3:
      return {"SliceColorAtIndex", {choose.value(1), choose.value(1), choose.value(2)}};
    default:
      break;
  }
  if (!isPie)
    return {"SetPlotData",
            {pageArray(choose, {"humanX", "humanY", "y", "mediumHumanX", "shortHumanX", "shortHumanXSubtitle"})}};
  if (choose.yes()) return {"SetPlotData", {pageArray(choose, {"key", "value"})}};
  ValueArray slices;
  for (size_t i = choose.below(20); i > 0; --i)
    slices.push_back(ValueDictionary{{"key", choose.text()}, {"value", choose.number()}});
  return {"SetPlotData", {slices}};
}

ScenarioStep chooseStep(ByteChooser& choose, bool isPie) {
  switch (choose.below(12)) {
    case 0:
    case 1:
    case 2:
      return chooseCall(choose, isPie);
    case 3:
      return WaitStep{choose.length(kLongestWait)};
    case 4:
    case 5:
      return MouseStep{choose.oneOf({MouseStep::Kind::moved, MouseStep::Kind::down, MouseStep::Kind::exited,
                                     MouseStep::Kind::entered}),
                       choose.point()};
    case 6:
      return FrameStep{choose.size()};
    case 7:
      return ResizeStep{choose.size()};
    case 8:
      return ScrollStep{choose.point()};
    case 9:
      return PrintStep{choose.oneOf({"picture.pdf", "picture.svg", "picture.png"})};
    case 10:
      if (choose.yes()) return SnapshotStep{"picture.png"};
      return LayersStep{"layers.json"};
    default:
      if (choose.below(4) == 3)
        return LifecycleStep{choose.oneOf({LifecycleStep::Kind::stop, LifecycleStep::Kind::destroy})};
      return WaitStep{choose.length(kLongestWait)};
  }
}

}  // namespace

void fuzzScenario(const uint8_t* bytes, size_t size) {
  try {
    play(Scenario::parse(std::string(bytes, bytes + size), "fuzz"));
  } catch (const ScenarioError&) {
  }
}

void fuzzSteps(const uint8_t* bytes, size_t size) {
  ByteChooser choose(bytes, size);
  Scenario scenario;
  const bool isPie = choose.yes();
  scenario.plot = isPie ? "pie" : "spendingOverTimeBarOrLine";
  scenario.size = choose.size();
  scenario.scale = choose.oneOf({1.0, 2.0, 0.5, 1.3});
  scenario.locale = choose.oneOf({"en_US", "de_DE", "fr_FR", "ja_JP", "ar_EG", "he_IL@calendar=hebrew", "xx", ""});
  scenario.steps.emplace();
  while (!choose.isEmpty() && scenario.steps->size() < kMostSteps) scenario.steps->push_back(chooseStep(choose, isPie));
  play(std::move(scenario));
}

}  // namespace zelkon
