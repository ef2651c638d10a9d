// A recording of drawing commands, in points, y up. It is what bitmap contexts remember, what vector output replays and
// what drawing tests compare.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "CoreGraphics/CGContext.h"

namespace zelkon {

class DisplayList {
 public:
  struct Save {
    friend bool operator==(const Save&, const Save&) = default;
  };
  struct Restore {
    friend bool operator==(const Restore&, const Restore&) = default;
  };
  struct Concat {
    CGAffineTransform transform;
    friend bool operator==(const Concat&, const Concat&) = default;
  };
  struct Clip {
    CGPath path;
    bool evenOdd;
    friend bool operator==(const Clip&, const Clip&) = default;
  };
  struct Fill {
    CGPath path;
    bool evenOdd;
    RGBA color;
    CGBlendMode blend;
    friend bool operator==(const Fill&, const Fill&) = default;
  };
  struct Stroke {
    CGPath path;
    CGStrokeStyle style;
    RGBA color;
    CGBlendMode blend;
    friend bool operator==(const Stroke&, const Stroke&) = default;
  };
  struct Gradient {
    CGGradientRef gradient;
    CGGradientPlacement placement;
    double alpha;
    CGBlendMode blend;
    friend bool operator==(const Gradient&, const Gradient&) = default;
  };
  struct Image {
    CGImageRef image;
    CGRect rect;
    double alpha;
    CGBlendMode blend;
    friend bool operator==(const Image&, const Image&) = default;
  };
  struct Text {
    CGTextRun run;
    RGBA color;
    CGBlendMode blend;
    friend bool operator==(const Text&, const Text&) = default;
  };
  struct Clear {
    CGRect rect;
    friend bool operator==(const Clear&, const Clear&) = default;
  };
  struct BeginGroup {
    CGGroupEffects effects;
    CGRect bounds;
    friend bool operator==(const BeginGroup&, const BeginGroup&) = default;
  };
  struct EndGroup {
    friend bool operator==(const EndGroup&, const EndGroup&) = default;
  };
  using Command =
      std::variant<Save, Restore, Concat, Clip, Fill, Stroke, Gradient, Image, Text, Clear, BeginGroup, EndGroup>;

  const std::vector<Command>& commands() const { return commands_; }
  bool isEmpty() const { return commands_.empty(); }
  // Only plain fills, strokes and text, and few of them: replaying it each frame is cheaper and sharper than a picture.
  bool isCheapToReplay() const;
  // A rectangle in the recording's coordinates that holds all that it paints; CGRectNull when it paints nothing, and
  // nothing when that is not known without drawing: with text, gradients, groups or clearing.
  std::optional<CGRect> bounds() const;
  // Whether it is known to leave the rectangle of its coordinates opaque everywhere: an opaque linear gradient over all
  // of it, with nothing but fills, strokes, text and gradients besides, and no clips but rectangles along the axes.
  bool isOpaqueIn(CGRect rect) const;
  // The same number for equal recordings.
  size_t hash() const;
  // Command by command: equal recordings give the same picture. Gradients, images and faces have to be the very same.
  friend bool operator==(const DisplayList& a, const DisplayList& b) { return a.commands_ == b.commands_; }
  // Paints the commands into `context` through its core, unbalanced saves closed at the end.
  void replay(CGContext& context) const;

 private:
  friend class RecordingContext;
  struct Player;
  std::vector<Command> commands_;
  mutable std::optional<std::optional<CGRect>> bounds_;  // set when asked for
};

// A context that only records.
class RecordingContext : public CGContext {
 public:
  RecordingContext() = default;
  std::shared_ptr<const DisplayList> snapshot() const;  // what was drawn so far; later drawing does not alter it
  bool prefersRecordings() const override { return true; }

 protected:
  void doSave() override;
  void doRestore() override;
  void doConcat(const CGAffineTransform& t) override;
  void doClip(const CGPath& path, bool evenOdd) override;
  void doFill(const CGPath& path, bool evenOdd, const RGBA& color, CGBlendMode blend) override;
  void doStroke(const CGPath& path, const CGStrokeStyle& style, const RGBA& color, CGBlendMode blend) override;
  void doGradient(const CGGradientRef& gradient, const CGGradientPlacement& placement, double alpha,
                  CGBlendMode blend) override;
  void doImage(const CGImageRef& image, CGRect rect, double alpha, CGBlendMode blend) override;
  void doText(const CGTextRun& run, const RGBA& color, CGBlendMode blend) override;
  void doClear(CGRect rect) override;
  void doBeginGroup(const CGGroupEffects& effects, CGRect bounds) override;
  void doEndGroup() override;
  // Drops everything recorded so far: what a clear of the whole context amounts to. Precondition: neither a clip nor a
  // group is in force.
  void forget();

 private:
  DisplayList list_;
};

}  // namespace zelkon
