#include "CoreGraphics/DisplayList.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <initializer_list>

namespace zelkon {

namespace {

// Beyond this many path elements and glyph bytes a picture is cheaper than drawing again.
constexpr size_t cheapWork = 256;

struct ReplayCost {
  size_t work = 0;
  bool plain = true;

  void operator()(const DisplayList::Save&) {}
  void operator()(const DisplayList::Restore&) {}
  void operator()(const DisplayList::Concat&) {}
  void operator()(const DisplayList::Fill& fill) { add(fill.path.elements().size(), fill.blend); }
  void operator()(const DisplayList::Stroke& stroke) { add(stroke.path.elements().size(), stroke.blend); }
  void operator()(const DisplayList::Text& text) { add(text.run.text.size(), text.blend); }
  template <typename Other>
  void operator()(const Other&) {
    plain = false;
  }
  void add(size_t amount, CGBlendMode blend) {
    work += 1 + amount;
    plain = plain && blend == CGBlendMode::normal;
  }
};

// A miter reaches at most so many half line widths beyond its corner.
constexpr double miterLimit = 10;

// Adds up the area that commands paint; clips are not taken into account.
struct PaintedArea {
  CGRect area = CGRectNull;
  bool isKnown = true;
  CGAffineTransform toRecording = CGAffineTransformIdentity;
  std::vector<CGAffineTransform> saved;

  void operator()(const DisplayList::Save&) { saved.push_back(toRecording); }
  void operator()(const DisplayList::Restore&) {
    if (saved.empty()) return;
    toRecording = saved.back();
    saved.pop_back();
  }
  void operator()(const DisplayList::Concat& c) { toRecording = CGAffineTransformConcat(c.transform, toRecording); }
  void operator()(const DisplayList::Clip&) {}
  void operator()(const DisplayList::Fill& c) { add(c.path.boundingBox()); }
  void operator()(const DisplayList::Stroke& c) {
    const double reach = c.style.width > 0 ? c.style.width / 2 * miterLimit : 0;
    if (const CGRect box = c.path.boundingBox(); reach > 0 && !CGRectIsNull(box)) add(NSInsetRect(box, -reach, -reach));
  }
  void operator()(const DisplayList::Image& c) { add(c.rect); }
  template <typename Other>
  void operator()(const Other&) {
    isKnown = false;
  }
  void add(CGRect rect) {
    if (CGRectIsNull(rect)) return;
    const CGRect placed = CGRectApplyAffineTransform(rect, toRecording);
    area = CGRectIsNull(area) ? placed : CGRectUnion(area, placed);
  }
};

// Whether commands cover a rectangle of the recording's coordinates.
struct OpaqueCover {
  struct State {
    CGAffineTransform toRecording = CGAffineTransformIdentity;
    bool isClipped = false;
  };
  CGRect rect;
  bool covers = false, isPlain = true;
  State state = {};
  std::vector<State> saved = {};

  void operator()(const DisplayList::Save&) { saved.push_back(state); }
  void operator()(const DisplayList::Restore&) {
    if (saved.empty()) return;
    state = saved.back();
    saved.pop_back();
  }
  void operator()(const DisplayList::Concat& c) {
    state.toRecording = CGAffineTransformConcat(c.transform, state.toRecording);
  }
  void operator()(const DisplayList::Clip& c) {
    state.isClipped = true;
    isPlain = isPlain && c.path.rect() && state.toRecording.b == 0 && state.toRecording.c == 0;
  }
  void operator()(const DisplayList::Fill& c) { note(c.blend); }
  void operator()(const DisplayList::Stroke& c) { note(c.blend); }
  void operator()(const DisplayList::Text& c) { note(c.blend); }
  void operator()(const DisplayList::Gradient& c) {
    note(c.blend);
    covers = covers || (!state.isClipped && c.alpha == 1 && reachesAll(c) &&
                        std::all_of(c.gradient->stops().begin(), c.gradient->stops().end(),
                                    [](const CGGradientStop& stop) { return stop.color.alpha == 1; }));
  }
  template <typename Other>
  void operator()(const Other&) {
    isPlain = false;
  }
  void note(CGBlendMode blend) { isPlain = isPlain && blend == CGBlendMode::normal; }
  // A radial gradient begins where it ends. A linear one covers the points whose projection on its axis lies between
  // its ends, and beyond those as far as its options say.
  bool reachesAll(const DisplayList::Gradient& c) const {
    const CGGradientPlacement& g = c.placement;
    const double dx = g.end.x - g.start.x, dy = g.end.y - g.start.y, length = dx * dx + dy * dy;
    const CGAffineTransform& t = state.toRecording;
    const double determinant = t.a * t.d - t.b * t.c;
    if (!(length > 0) || !std::isfinite(length) || determinant == 0 || !std::isfinite(determinant)) return false;
    const CGAffineTransform toUser = CGAffineTransformInvert(t);
    for (const double x : {CGRectGetMinX(rect), CGRectGetMaxX(rect)}) {
      for (const double y : {CGRectGetMinY(rect), CGRectGetMaxY(rect)}) {
        const CGPoint p = CGPointApplyAffineTransform({x, y}, toUser);
        const double along = ((p.x - g.start.x) * dx + (p.y - g.start.y) * dy) / length;
        if (!(along >= 0 || g.options & kCGGradientDrawsBeforeStartLocation)) return false;
        if (!(along <= 1 || g.options & kCGGradientDrawsAfterEndLocation)) return false;
      }
    }
    return true;
  }
};

// Takes in what tells drawings of the same kind apart: places, sizes, colours and texts.
struct Hash {
  size_t value = 0;

  void operator()(const DisplayList::Concat& c) {
    add({c.transform.a, c.transform.b, c.transform.c, c.transform.d, c.transform.tx, c.transform.ty});
  }
  void operator()(const DisplayList::Clip& c) { add(c.path); }
  void operator()(const DisplayList::Fill& c) {
    add(c.path);
    add(c.color);
  }
  void operator()(const DisplayList::Stroke& c) {
    add(c.path);
    add(c.color);
    add({c.style.width});
  }
  void operator()(const DisplayList::Gradient& c) { add(std::hash<CGGradientRef>()(c.gradient)); }
  void operator()(const DisplayList::Image& c) {
    add(std::hash<CGImageRef>()(c.image));
    add({c.rect.origin.x, c.rect.origin.y, c.rect.size.width, c.rect.size.height});
  }
  void operator()(const DisplayList::Text& c) {
    add(std::hash<std::string>()(c.run.text));
    add({c.run.origin.x, c.run.origin.y, c.run.size});
    add(c.color);
  }
  template <typename Other>
  void operator()(const Other&) {}
  void add(const CGPath& path) {
    for (const CGPathElement& element : path.elements()) add({element.points[0].x, element.points[0].y});
  }
  void add(const RGBA& color) { add({color.red, color.green, color.blue, color.alpha}); }
  void add(std::initializer_list<double> numbers) {
    for (const double number : numbers) add(std::hash<double>()(number));
  }
  void add(size_t number) { value = value * 31 + number; }
};

}  // namespace

size_t DisplayList::hash() const {
  Hash hash;
  for (const Command& command : commands_) {
    hash.add(command.index());
    std::visit(hash, command);
  }
  return hash.value;
}

bool DisplayList::isOpaqueIn(CGRect rect) const {
  OpaqueCover cover{rect};
  for (const Command& command : commands_) {
    std::visit(cover, command);
    if (!cover.isPlain) return false;
  }
  return cover.covers;
}

std::optional<CGRect> DisplayList::bounds() const {
  if (!bounds_) {
    PaintedArea painted;
    for (const Command& command : commands_) std::visit(painted, command);
    bounds_ = painted.isKnown ? std::optional(painted.area) : std::nullopt;
  }
  return *bounds_;
}

bool DisplayList::isCheapToReplay() const {
  ReplayCost cost;
  for (const Command& command : commands_) {
    std::visit(cost, command);
    if (!cost.plain || cost.work > cheapWork) return false;
  }
  return true;
}

// Calls the context's core for one command, keeping the context's own state in step.
struct DisplayList::Player {
  CGContext& context;
  size_t depth = context.stack_.size();

  void operator()(const Save&) { context.saveGState(); }
  void operator()(const Restore&) {
    if (context.stack_.size() > depth) context.restoreGState();
  }
  void operator()(const Concat& c) { context.concatCTM(c.transform); }
  void operator()(const Clip& c) { context.clipToPath(c.path, c.evenOdd); }
  void operator()(const Fill& c) { context.doFill(c.path, c.evenOdd, c.color, c.blend); }
  void operator()(const Stroke& c) { context.doStroke(c.path, c.style, c.color, c.blend); }
  void operator()(const Gradient& c) { context.doGradient(c.gradient, c.placement, c.alpha, c.blend); }
  void operator()(const Image& c) { context.doImage(c.image, c.rect, c.alpha, c.blend); }
  void operator()(const Text& c) { context.doText(c.run, c.color, c.blend); }
  void operator()(const Clear& c) { context.doClear(c.rect); }
  void operator()(const BeginGroup& c) { context.enterGroup(c.effects, c.bounds); }
  void operator()(const EndGroup&) {
    if (context.stack_.size() > depth) context.leaveGroup();
  }
  // Ends whatever the recording left open.
  void finish() {
    while (context.stack_.size() > depth) {
      if (context.stack_.back().group)
        context.leaveGroup();
      else
        context.restoreGState();
    }
  }
};

void DisplayList::replay(CGContext& context) const {
  Player player{context};
  for (const Command& command : commands_) std::visit(player, command);
  player.finish();
}

std::shared_ptr<const DisplayList> RecordingContext::snapshot() const {
  return std::make_shared<const DisplayList>(list_);
}

void RecordingContext::doSave() { list_.commands_.emplace_back(DisplayList::Save{}); }
void RecordingContext::doRestore() { list_.commands_.emplace_back(DisplayList::Restore{}); }
void RecordingContext::doConcat(const CGAffineTransform& t) { list_.commands_.emplace_back(DisplayList::Concat{t}); }
void RecordingContext::doClip(const CGPath& path, bool evenOdd) {
  list_.commands_.emplace_back(DisplayList::Clip{path, evenOdd});
}
void RecordingContext::doFill(const CGPath& path, bool evenOdd, const RGBA& color, CGBlendMode blend) {
  list_.commands_.emplace_back(DisplayList::Fill{path, evenOdd, color, blend});
}
void RecordingContext::doStroke(const CGPath& path, const CGStrokeStyle& style, const RGBA& color, CGBlendMode blend) {
  list_.commands_.emplace_back(DisplayList::Stroke{path, style, color, blend});
}
void RecordingContext::doGradient(const CGGradientRef& gradient, const CGGradientPlacement& placement, double alpha,
                                  CGBlendMode blend) {
  list_.commands_.emplace_back(DisplayList::Gradient{gradient, placement, alpha, blend});
}
void RecordingContext::doImage(const CGImageRef& image, CGRect rect, double alpha, CGBlendMode blend) {
  list_.commands_.emplace_back(DisplayList::Image{image, rect, alpha, blend});
}
void RecordingContext::doText(const CGTextRun& run, const RGBA& color, CGBlendMode blend) {
  list_.commands_.emplace_back(DisplayList::Text{run, color, blend});
}
void RecordingContext::doClear(CGRect rect) { list_.commands_.emplace_back(DisplayList::Clear{rect}); }
void RecordingContext::doBeginGroup(const CGGroupEffects& effects, CGRect bounds) {
  list_.commands_.emplace_back(DisplayList::BeginGroup{effects, bounds});
}
void RecordingContext::doEndGroup() { list_.commands_.emplace_back(DisplayList::EndGroup{}); }

void RecordingContext::forget() {
  list_.commands_.clear();
  // The saves and transforms still in force have to be in the recording for what follows.
  CGAffineTransform inForce = CGAffineTransformIdentity;
  const std::vector<CGAffineTransform> saved = savedTransforms();
  const auto concatTo = [&](const CGAffineTransform& t) {
    if (t == inForce) return;
    doConcat(CGAffineTransformConcat(t, CGAffineTransformInvert(inForce)));
    inForce = t;
  };
  for (const CGAffineTransform& t : saved) {
    concatTo(t);
    doSave();
  }
  concatTo(ctm());
}

}  // namespace zelkon
