#include "QuartzCore/CAAnimation.h"

#include <type_traits>
#include <utility>

namespace zelkon {

namespace {

double mix(double a, double b, double f) { return a + f * (b - a); }
CGPoint mix(const CGPoint& a, const CGPoint& b, double f) { return {mix(a.x, b.x, f), mix(a.y, b.y, f)}; }
CGSize mix(const CGSize& a, const CGSize& b, double f) {
  return {mix(a.width, b.width, f), mix(a.height, b.height, f)};
}
CGRect mix(const CGRect& a, const CGRect& b, double f) { return {mix(a.origin, b.origin, f), mix(a.size, b.size, f)}; }

// No colour fades like the other one made clear.
CGColorRef mix(const CGColorRef& a, const CGColorRef& b, double f) {
  if (!a && !b) return nullptr;
  const auto cleared = [](const CGColor& color) {
    std::vector<double> components = color.components();
    components.back() = 0;
    return std::make_shared<const CGColor>(color.colorSpace(), std::move(components));
  };
  const CGColorRef from = a ? a : cleared(*b), to = b ? b : cleared(*a);
  if (from->colorSpace()->name == to->colorSpace()->name) {
    std::vector<double> components = from->components();
    for (size_t i = 0; i < components.size(); ++i) components[i] = mix(components[i], to->components()[i], f);
    return std::make_shared<const CGColor>(from->colorSpace(), std::move(components));
  }
  const RGBA p = from->rgba(), q = to->rgba();
  return CGColorCreateGenericRGB(mix(p.red, q.red, f), mix(p.green, q.green, f), mix(p.blue, q.blue, f),
                                 mix(p.alpha, q.alpha, f));
}

}  // namespace

CAAnimatableValue CAInterpolate(const CAAnimatableValue& from, const CAAnimatableValue& to, double f) {
  if (from.index() != to.index()) return f < 1 ? from : to;
  return std::visit(
      [&](const auto& a) -> CAAnimatableValue {
        using Kind = std::decay_t<decltype(a)>;
        const Kind& b = std::get<Kind>(to);
        if constexpr (std::is_same_v<Kind, CATransform3D>)
          return CATransform3DInterpolate(a, b, f);
        else if constexpr (std::is_same_v<Kind, bool> || std::is_same_v<Kind, CGImageRef>)
          return f < 1 ? a : b;
        else
          return mix(a, b, f);
      },
      from);
}

CABasicAnimation CABasicAnimation::animationWithKeyPath(std::string keyPath) {
  CABasicAnimation animation;
  animation.keyPath = std::move(keyPath);
  return animation;
}

void CABasicAnimation::setValue(Value value, const std::string& key) {
  if (value.isNull())
    values_.erase(key);
  else
    values_[key] = std::move(value);
}

Value CABasicAnimation::valueForKey(std::string_view key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? Value() : found->second;
}

}  // namespace zelkon
