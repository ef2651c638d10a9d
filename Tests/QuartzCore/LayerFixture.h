// A hosted root layer, a clock and a diary of what animation delegates hear.
#pragma once

#include <gtest/gtest.h>

#include "QuartzCore/CALayer.h"
#include "QuartzCore/CATransaction.h"

namespace zelkon {

struct Diary : CAAnimationDelegate {
  std::vector<std::string> lines;
  std::vector<CABasicAnimation> stopped;
  void animationDidStart(const CABasicAnimation& animation) override { lines.push_back("start " + label(animation)); }
  void animationDidStop(const CABasicAnimation& animation, bool finished) override {
    lines.push_back((finished ? "end " : "cut ") + label(animation));
    stopped.push_back(animation);
  }
  static std::string label(const CABasicAnimation& animation) {
    const Value name = animation.valueForKey("name");
    return name.isString() ? name.string() : animation.keyPath;
  }
  std::vector<std::string> take() { return std::exchange(lines, {}); }
};

class LayerFixture : public testing::Test, public CALayerTreeObserver {
 protected:
  LayerFixture() {
    root->setFrame(CGRectMake(0, 0, 400, 300));
    root->setTreeObserver(this);
    turn();
    changes = 0;
    start = CACurrentMediaTime();
  }
  ~LayerFixture() override {
    root->setTreeObserver(nullptr);
    root.reset();
    CASetCurrentMediaTime(CACurrentMediaTime() + 20);
    turn();
  }
  void layerTreeDidChange() override { ++changes; }

  static void turn() {
    CATransaction::flush();
    CATransaction::deliverEndedAnimations();
  }
  // One turn at `seconds` after the beginning of the test.
  void turnAt(double seconds) {
    CATransaction::flush();
    CASetCurrentMediaTime(start + seconds);
    CATransaction::deliverEndedAnimations();
  }
  CALayerRef addLayer(CGRect frame = CGRectMake(0, 0, 10, 10)) {
    CALayerRef layer = CALayer::layer();
    layer->setFrame(frame);
    root->addSublayer(layer);
    return layer;
  }
  CALayerRef addCommittedLayer(CGRect frame = CGRectMake(0, 0, 10, 10)) {
    CALayerRef layer = addLayer(frame);
    CATransaction::flush();
    return layer;
  }
  CABasicAnimation animation(const std::string& keyPath, double duration, const char* name = nullptr) {
    CABasicAnimation made = CABasicAnimation::animationWithKeyPath(keyPath);
    made.duration = duration;
    made.delegate = diary;
    made.fromValue = 0.0;
    made.toValue = 1.0;
    if (name != nullptr) made.setValue(name, "name");
    return made;
  }
  CALayerProperties shown(const CALayerRef& layer, double seconds) { return layer->presentation(start + seconds); }

  CALayerRef root = CALayer::layer();
  std::shared_ptr<Diary> diary = std::make_shared<Diary>();
  int changes = 0;
  double start = 0;
};

using Lines = std::vector<std::string>;

}  // namespace zelkon
