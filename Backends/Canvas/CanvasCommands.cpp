#include "Backends/Canvas/CanvasCommands.h"

#include <iterator>
#include <utility>

#include "Backends/Canvas/CanvasImports.h"

namespace zelkon {

namespace {

// The page need not wait for the end of a huge frame, nor memory hold it all.
constexpr size_t longBuffer = size_t{1} << 17;
// Texts known to the page and the bytes of all of them; beyond this the page forgets them and the numbers start over.
constexpr size_t mostStrings = 4096;
constexpr size_t mostStringBytes = size_t{1} << 18;
constexpr size_t noGroup = static_cast<size_t>(-1);

}  // namespace

void CanvasCommands::add(int context, CanvasOp op, std::initializer_list<double> arguments) {
  if (commands_.size() > longBuffer) flush();
  if (context != 0 && context != selected_) {
    selected_ = context;
    commands_.insert(commands_.end(), {static_cast<double>(CanvasOp::select), 1, static_cast<double>(context)});
  }
  commands_.push_back(static_cast<double>(op));
  countAt_ = commands_.size();
  commands_.push_back(0);
  more(arguments);
}

void CanvasCommands::more(std::initializer_list<double> arguments) {
  commands_.insert(commands_.end(), arguments);
  commands_[countAt_] += static_cast<double>(arguments.size());
}

void CanvasCommands::path(const CGPath& path) {
  for (const CGPathElement& element : path.elements()) {
    const CGPoint* p = element.points;
    const auto type = static_cast<double>(element.type);
    switch (element.type) {
      case CGPathElement::Type::move:
      case CGPathElement::Type::line:
        more({type, p[0].x, p[0].y});
        break;
      case CGPathElement::Type::curve:
        more({type, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y});
        break;
      case CGPathElement::Type::close:
        more({type});
        break;
    }
  }
}

void CanvasCommands::color(const RGBA& color) { more({color.red, color.green, color.blue, color.alpha}); }

bool CanvasCommands::foldGroup() {
  const size_t groupAt = std::exchange(groupAt_, noGroup);
  constexpr CanvasOp folded[] = {CanvasOp::beginGroup, CanvasOp::save, CanvasOp::clip, CanvasOp::gradient,
                                 CanvasOp::restore};
  const double* arguments[std::size(folded)];
  size_t counts[std::size(folded)];
  size_t at = groupAt;
  for (size_t i = 0; i < std::size(folded); ++i) {
    if (at >= commands_.size() || commands_[at] != static_cast<double>(folded[i])) return false;
    counts[i] = static_cast<size_t>(commands_[at + 1]);
    arguments[i] = &commands_[at + 2];
    at += 2 + counts[i];
  }
  if (at != commands_.size()) return false;
  const double *group = arguments[0], *clip = arguments[2], *gradient = arguments[3];
  const bool isPlainShadow = group[4] == 1 && group[5] == 0 && group[6] == 1 && group[7] == 1;
  const bool fills = gradient[4] == 0 && gradient[5] == 3 && gradient[6] == 1 && gradient[7] == 0;
  if (!isPlainShadow || !fills) return false;
  std::vector<double> command{group + 8, group + 15};
  command.push_back(clip[0]);
  command.insert(command.end(), gradient, gradient + 4);
  command.push_back(static_cast<double>((counts[3] - 8) / 5));
  for (size_t i = 8; i < counts[3]; i += 5)
    if (gradient[i + 4] != 1) return false;
  command.insert(command.end(), gradient + 8, gradient + counts[3]);
  command.insert(command.end(), clip + 1, clip + counts[2]);
  commands_.resize(groupAt);
  commands_.insert(commands_.end(), {static_cast<double>(CanvasOp::shadowFill), static_cast<double>(command.size())});
  commands_.insert(commands_.end(), command.begin(), command.end());
  return true;
}

int CanvasCommands::string(const std::string& text) {
  if (const auto known = numbers_.find(text); known != numbers_.end()) return known->second;
  knownBytes_ += text.size();
  if (numbers_.size() >= mostStrings || knownBytes_ > mostStringBytes) {
    numbers_.clear();
    knownBytes_ = text.size();
  }
  const int number = static_cast<int>(numbers_.size());
  numbers_.emplace(text, number);
  add(0, CanvasOp::string, {static_cast<double>(number), static_cast<double>(text.size())});
  strings_ += text;
  return number;
}

void CanvasCommands::flush() {
  if (commands_.empty()) return;
  zkCanvasReplay(commands_.data(), commands_.size(), strings_.data(), strings_.size());
  commands_.clear();
  strings_.clear();
  groupAt_ = noGroup;
}

}  // namespace zelkon
