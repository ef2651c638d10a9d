// What a recording paints, as lines of text in the coordinates of the outermost user space.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "CoreGraphics/DisplayList.h"

namespace zelkon {

class CommandPrinter {
 public:
  static std::vector<std::string> print(const DisplayList& list) {
    CommandPrinter printer;
    for (const DisplayList::Command& command : list.commands()) std::visit(printer, command);
    return printer.lines_;
  }
  void operator()(const DisplayList::Save&) { saved_.push_back(ctm_); }
  void operator()(const DisplayList::Restore&) { back(); }
  void operator()(const DisplayList::Concat& c) { ctm_ = CGAffineTransformConcat(c.transform, ctm_); }
  void operator()(const DisplayList::Clip& c) { add("clip " + box(c.path.boundingBox())); }
  void operator()(const DisplayList::Fill& f) {
    add((f.evenOdd ? "eofill " : "fill ") + box(f.path.boundingBox()) + " " + color(f.color));
  }
  void operator()(const DisplayList::Stroke& s) { add("stroke " + box(s.path.boundingBox()) + " " + color(s.color)); }
  void operator()(const DisplayList::Gradient& g) {
    const CGPoint center = CGPointApplyAffineTransform(g.placement.start, ctm_);
    add("gradient at " + number(center.x) + "," + number(center.y) + " r" + number(g.placement.radius) +
        blends[static_cast<int>(g.blend)]);
  }
  void operator()(const DisplayList::Image& i) {
    add("image " + box(i.rect) + " a" + number(i.alpha) + (i.blend == CGBlendMode::overlay ? " overlay" : ""));
  }
  void operator()(const DisplayList::Text& t) { add("text " + t.run.text); }
  void operator()(const DisplayList::Clear& c) { add("clear " + box(c.rect)); }
  void operator()(const DisplayList::BeginGroup& g) {
    std::string line = "group a" + number(g.effects.alpha) + blends[static_cast<int>(g.effects.blend)];
    if (g.effects.brightness != 1) line += " x" + number(g.effects.brightness);
    if (const auto& shadow = g.effects.shadow)
      line += " shadow " + number(shadow->offset.width) + "," + number(shadow->offset.height) + " s" +
              number(shadow->sigma) + " " + color(shadow->color);
    add(line);
    saved_.push_back(ctm_);
  }
  void operator()(const DisplayList::EndGroup&) {
    back();
    add("end");
  }

 private:
  static constexpr const char* blends[] = {"", " overlay", " copy", " destinationIn", " plusLighter"};
  static std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", std::abs(value) < 1e-9 ? 0 : value);
    return text;
  }
  static std::string color(const RGBA& c) {
    return number(c.red) + "," + number(c.green) + "," + number(c.blue) + "," + number(c.alpha);
  }
  std::string box(CGRect r) const {
    const CGRect b = CGRectApplyAffineTransform(r, ctm_);
    return "[" + number(b.origin.x) + " " + number(b.origin.y) + " " + number(b.size.width) + " " +
           number(b.size.height) + "]";
  }
  void add(std::string line) { lines_.push_back(std::move(line)); }
  void back() {
    ctm_ = saved_.back();
    saved_.pop_back();
  }
  std::vector<std::string> lines_;
  std::vector<CGAffineTransform> saved_;
  CGAffineTransform ctm_;
};

}  // namespace zelkon
