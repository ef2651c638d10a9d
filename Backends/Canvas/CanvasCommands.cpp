#include "Backends/Canvas/CanvasCommands.h"

#include "Backends/Canvas/CanvasImports.h"

namespace zelkon {

namespace {

// The page need not wait for the end of a huge frame, nor memory hold it all.
constexpr size_t longBuffer = size_t{1} << 17;
// Texts known to the page and the bytes of all of them; beyond this the page forgets them and the numbers start over.
constexpr size_t mostStrings = 4096;
constexpr size_t mostStringBytes = size_t{1} << 18;

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
}

}  // namespace zelkon
