// What the page does, read from a JSON file: which chart, how large, and the steps in order.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "CoreGraphics/CGGeometry.h"
#include "Foundation/Value.h"

namespace zelkon {

// Bad input of a scenario: one printable line that names the file and the place in it.
class ScenarioError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct CallStep {
  std::string name;
  ValueArray arguments;
};
struct WaitStep {
  double seconds;
};
struct MouseStep {
  enum class Kind { moved, down, entered, exited };
  Kind kind;
  CGPoint at;  // points from the view's top left corner, y down; not used by `exited`
};
struct SnapshotStep {
  std::string file;
};
struct LayersStep {
  std::string file;
};
struct PrintStep {
  std::string file;
};
struct FrameStep {
  CGSize size;
};
struct ResizeStep {
  CGSize size;
};
struct ScrollStep {
  CGPoint offset;  // points, right and down, as a page counts
};
struct LifecycleStep {
  enum class Kind { stop, destroy };
  Kind kind;
};
using ScenarioStep = std::variant<CallStep, WaitStep, MouseStep, SnapshotStep, LayersStep, PrintStep, FrameStep,
                                  ResizeStep, ScrollStep, LifecycleStep>;

// What a file may hold at most. Each bound can be raised; the time and the memory it takes grow with it.
struct ScenarioLimits {
  size_t entries = size_t{1} << 20;  // of one array, as many as a page's array is read for
  double waiting = 3600;             // of all its steps, seconds
};

struct Scenario {
  std::string plot;
  CGSize size{600, 400};
  double scale = 1;
  std::string locale = "en_US";
  // Set when the file has steps; without them `options` and `data` are handed over and the chart is shown.
  std::optional<std::vector<ScenarioStep>> steps;
  std::optional<Value> options, data;

  // `name` is what error texts call the file. Throws ScenarioError.
  static Scenario parse(const std::string& text, const std::string& name, const ScenarioLimits& limits = {});
};

}  // namespace zelkon
