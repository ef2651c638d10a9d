// Animations as values: what moves from where to where, how long and by which curve. They are evaluated at a time that
// the caller passes and never name a layer.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "CoreGraphics/CGColor.h"
#include "CoreGraphics/CGImage.h"
#include "Foundation/Value.h"
#include "QuartzCore/CATransform3D.h"

namespace zelkon {

using CAAnimatableValue = std::variant<double, bool, CGPoint, CGSize, CGRect, CATransform3D, CGColorRef, CGImageRef>;
// Componentwise for numbers and geometry, decomposed for transforms; what cannot be mixed switches at the end.
CAAnimatableValue CAInterpolate(const CAAnimatableValue& from, const CAAnimatableValue& to, double f);

// Cubic Bézier from (0,0) to (1,1).
struct CAMediaTimingFunction {
  double x1, y1, x2, y2;
  double solve(double t) const;
  friend bool operator==(const CAMediaTimingFunction&, const CAMediaTimingFunction&) = default;
};
inline constexpr CAMediaTimingFunction kCAMediaTimingFunctionLinear{0, 0, 1, 1};
inline constexpr CAMediaTimingFunction kCAMediaTimingFunctionEaseIn{0.42, 0, 1, 1};
inline constexpr CAMediaTimingFunction kCAMediaTimingFunctionEaseOut{0, 0, 0.58, 1};
inline constexpr CAMediaTimingFunction kCAMediaTimingFunctionEaseInEaseOut{0.42, 0, 0.58, 1};
inline constexpr CAMediaTimingFunction kCAMediaTimingFunctionDefault{0.25, 0.1, 0.25, 1};

enum class CAFillMode { removed, forwards, backwards, both };

class CABasicAnimation;
class CAAnimationDelegate {
 public:
  virtual ~CAAnimationDelegate() = default;
  virtual void animationDidStart(const CABasicAnimation&) {}
  // Once per animation: finished true when its time ran out, false when it was removed or its layer left the tree.
  virtual void animationDidStop(const CABasicAnimation& animation, bool finished) = 0;
};

class CABasicAnimation {
 public:
  static CABasicAnimation animationWithKeyPath(std::string keyPath);

  std::string keyPath;  // "bounds", "opacity", "transform", ...
  std::optional<CAAnimatableValue> fromValue, toValue;
  double duration = 0;   // seconds; 0 takes the transaction's duration when the animation is added
  double beginTime = 0;  // seconds after the start of the transaction's commit
  std::optional<CAMediaTimingFunction> timingFunction;  // none = linear
  CAFillMode fillMode = CAFillMode::removed;
  bool removedOnCompletion = true;
  std::weak_ptr<CAAnimationDelegate> delegate;  // not owned

  // Ad-hoc values; a null value removes the key, a key never set reads null.
  void setValue(Value value, const std::string& key);
  Value valueForKey(std::string_view key) const;

 private:
  ValueDictionary values_;
};

}  // namespace zelkon
