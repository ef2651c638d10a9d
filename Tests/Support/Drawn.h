// What a recording holds, sorted by kind, so that a test can name the one drawing it is about.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CoreGraphics/DisplayList.h"

namespace zelkon {

struct Drawn {
  std::vector<CGTextRun> texts;
  std::vector<DisplayList::Stroke> strokes;
  std::vector<DisplayList::Gradient> gradients;
  std::vector<DisplayList::Clip> clips;
  std::vector<DisplayList::BeginGroup> groups;

  explicit Drawn(const DisplayList& list) {
    for (const DisplayList::Command& command : list.commands()) {
      if (const auto* text = std::get_if<DisplayList::Text>(&command)) texts.push_back(text->run);
      if (const auto* stroke = std::get_if<DisplayList::Stroke>(&command)) strokes.push_back(*stroke);
      if (const auto* gradient = std::get_if<DisplayList::Gradient>(&command)) gradients.push_back(*gradient);
      if (const auto* clip = std::get_if<DisplayList::Clip>(&command)) clips.push_back(*clip);
      if (const auto* group = std::get_if<DisplayList::BeginGroup>(&command)) groups.push_back(*group);
    }
  }
  // The run with that text, or null; the first one where there are several.
  const CGTextRun* text(const std::string& wanted) const {
    for (const CGTextRun& run : texts)
      if (run.text == wanted) return &run;
    return nullptr;
  }
  size_t countOfText(const std::string& wanted) const {
    size_t count = 0;
    for (const CGTextRun& run : texts) count += run.text == wanted ? 1 : 0;
    return count;
  }
};

// A straight line as it was stroked.
struct DrawnLine {
  CGPoint from, to;
  double gray;
  friend bool operator==(const DrawnLine&, const DrawnLine&) = default;
};
inline std::vector<DrawnLine> straightLines(const Drawn& drawn) {
  std::vector<DrawnLine> lines;
  for (const DisplayList::Stroke& stroke : drawn.strokes) {
    const std::vector<CGPathElement>& elements = stroke.path.elements();
    if (elements.size() == 2) lines.push_back({elements[0].points[0], elements[1].points[0], stroke.color.red});
  }
  return lines;
}

}  // namespace zelkon
