// Writes drawing as SVG: text stays text, recordings are replayed, and every element stands on its own in the space of
// the page (points, y down), under the chain of clip paths that was in force.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Backends/Cairo/CairoText.h"
#include "CoreGraphics/CGContext.h"

namespace zelkon {

class SVGContext : public CGContext {
 public:
  SVGContext(CGSize size, std::shared_ptr<CairoText> text);
  ~SVGContext() override;

  bool prefersRecordings() const override { return true; }
  // The document with everything drawn so far; groups still open are left out.
  std::string document() const;

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

 private:
  struct State {
    CGAffineTransform toPage;
    std::string clip;  // id of the innermost clip path; empty for none
    CGRect clipBox;    // in page space
  };
  struct Group {
    CGGroupEffects effects;
    double brightness = 1;  // of this and all enclosing groups
    std::vector<State> states;
    std::string body;
    std::string openClip;  // the clip of the <g> that the end of the body lies in
  };
  Group& top() { return groups_.back(); }
  State& state() { return top().states.back(); }
  // Adds a finished element, blended onto what the present group holds, under the clip in force.
  void add(const std::string& element, CGBlendMode blend = CGBlendMode::normal);
  void closeClip(Group& group);
  // Adds to the definitions, once for equal texts; `before` and `after` enclose the id.
  std::string define(const std::string& before, const std::string& after);
  // ` name="#rrggbb"`, with the opacity when there is any, in the brightness of the group.
  std::string paint(const char* name, const RGBA& color);
  std::string gradientDefinition(const CGGradient& gradient, const CGGradientPlacement& placement);
  std::string shadowFilter(const CGShadow& shadow);
  std::string maskDefinition(const std::string& content, bool byAlpha);
  void replayImage(const CGImage& image, CGRect rect, double alpha, CGBlendMode blend);

  CGSize size_;
  std::shared_ptr<CairoText> text_;
  std::vector<Group> groups_;  // the page first
  std::string definitions_;
  std::map<std::string, std::string> idOfDefinition_;
  int groupIds_ = 0;
};

}  // namespace zelkon
