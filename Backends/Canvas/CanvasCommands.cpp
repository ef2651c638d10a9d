#include "Backends/Canvas/CanvasCommands.h"

#include <iterator>
#include <span>
#include <utility>

#include "Backends/Canvas/CanvasImports.h"

namespace zelkon {

namespace {

// The page need not wait for the end of a huge frame, nor memory hold it all.
constexpr size_t longBuffer = size_t{1} << 17;
// Texts known to the page and the bytes of all of them; beyond this the page forgets them and the numbers start over.
constexpr size_t mostStrings = 4096;
constexpr size_t mostStringBytes = size_t{1} << 18;
constexpr double normalBlend = static_cast<double>(CGBlendMode::normal);
constexpr double everywhere = kCGGradientDrawsBeforeStartLocation | kCGGradientDrawsAfterEndLocation;
constexpr size_t stopSize = 5;  // location and rgba

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
  more(std::span<const double>(arguments.begin(), arguments.size()));
}

void CanvasCommands::more(std::span<const double> arguments) {
  commands_.insert(commands_.end(), arguments.begin(), arguments.end());
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

bool CanvasCommands::foldGroup(int context) {
  const size_t groupAt = std::exchange(groupAt_, noGroup);
  if (groupAt == noGroup || context != selected_) return false;
  constexpr CanvasOp plain[] = {CanvasOp::beginGroup, CanvasOp::save, CanvasOp::clip, CanvasOp::gradient,
                                CanvasOp::restore};
  std::span<const double> arguments[std::size(plain)];
  std::span<const double> rest = std::span<const double>(commands_).subspan(groupAt);
  for (size_t i = 0; i < std::size(plain); ++i) {
    if (rest.empty() || rest[0] != static_cast<double>(plain[i])) return false;
    const auto count = static_cast<size_t>(rest[1]);
    arguments[i] = rest.subspan(2, count);
    rest = rest.subspan(2 + count);
  }
  if (!rest.empty()) return false;
  const std::span<const double> group = arguments[0], clip = arguments[2], gradient = arguments[3];
  const double alpha = group[4], blend = group[5], brightness = group[6], hasShadow = group[7];
  if (alpha != 1 || blend != normalBlend || brightness != 1 || hasShadow != 1) return false;
  const double radius = gradient[4], options = gradient[5], gradientAlpha = gradient[6], gradientBlend = gradient[7];
  if (radius > 0 || options != everywhere || gradientAlpha != 1 || gradientBlend != normalBlend) return false;
  const std::span<const double> shadow = group.subspan(8), ends = gradient.first(4), stops = gradient.subspan(8);
  for (size_t i = 0; i < stops.size(); i += stopSize)
    if (stops[i + stopSize - 1] != 1) return false;
  std::vector<double> folded(shadow.begin(), shadow.end());
  folded.push_back(clip[0]);
  folded.insert(folded.end(), ends.begin(), ends.end());
  folded.push_back(static_cast<double>(stops.size() / stopSize));
  folded.insert(folded.end(), stops.begin(), stops.end());
  folded.insert(folded.end(), clip.begin() + 1, clip.end());
  commands_.resize(groupAt);
  add(context, CanvasOp::shadowFill);
  more(folded);
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
