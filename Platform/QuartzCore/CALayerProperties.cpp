#include "QuartzCore/CALayerProperties.h"

#include <type_traits>
#include <variant>

namespace zelkon {

namespace {

using Member = std::variant<double CALayerProperties::*, CGPoint CALayerProperties::*, CGSize CALayerProperties::*,
                            CGRect CALayerProperties::*, CATransform3D CALayerProperties::*,
                            CGColorRef CALayerProperties::*, CGImageRef CALayerProperties::*>;

struct AnimatableKey {
  std::string_view name;
  Member member;
};

const AnimatableKey animatableKeys[] = {
    {"bounds", &CALayerProperties::bounds},
    {"position", &CALayerProperties::position},
    {"anchorPoint", &CALayerProperties::anchorPoint},
    {"transform", &CALayerProperties::transform},
    {"zPosition", &CALayerProperties::zPosition},
    {"opacity", &CALayerProperties::opacity},
    {"hidden", &CALayerProperties::hiddenFade},
    {"cornerRadius", &CALayerProperties::cornerRadius},
    {"borderWidth", &CALayerProperties::borderWidth},
    {"borderColor", &CALayerProperties::borderColor},
    {"backgroundColor", &CALayerProperties::backgroundColor},
    {"contents", &CALayerProperties::contents},
    {"shadowOpacity", &CALayerProperties::shadowOpacity},
    {"shadowOffset", &CALayerProperties::shadowOffset},
    {"shadowRadius", &CALayerProperties::shadowRadius},
    {"shadowColor", &CALayerProperties::shadowColor},
};

const Member* memberForKey(std::string_view key) {
  for (const AnimatableKey& candidate : animatableKeys)
    if (candidate.name == key) return &candidate.member;
  return nullptr;
}

}  // namespace

CGAffineTransform CALayerToSuperlayerTransform(const CALayerProperties& p) {
  CGAffineTransform t = CATransform3DGetAffineTransform(p.transform);
  t.tx += p.position.x;
  t.ty += p.position.y;
  const CGAffineTransform toAnchor =
      CGAffineTransformMakeTranslation(-p.bounds.origin.x - p.anchorPoint.x * p.bounds.size.width,
                                       -p.bounds.origin.y - p.anchorPoint.y * p.bounds.size.height);
  return CGAffineTransformConcat(toAnchor, t);
}

CGRect CALayerBoxAroundAnchor(const CALayerProperties& p) {
  const CGSize size = p.bounds.size;
  const CGRect aroundAnchor{{-p.anchorPoint.x * size.width, -p.anchorPoint.y * size.height}, size};
  return CGRectApplyAffineTransform(aroundAnchor, CATransform3DGetAffineTransform(p.transform));
}

CGRect CALayerFrame(const CALayerProperties& p) {
  return CGRectOffset(CALayerBoxAroundAnchor(p), p.position.x, p.position.y);
}

std::optional<CAAnimatableValue> CALayerValue(const CALayerProperties& p, std::string_view key) {
  const Member* member = memberForKey(key);
  if (member == nullptr) return std::nullopt;
  return std::visit([&](auto pointer) { return CAAnimatableValue(p.*pointer); }, *member);
}

void CALayerSetValue(CALayerProperties& p, std::string_view key, const CAAnimatableValue& value) {
  const Member* member = memberForKey(key);
  if (member == nullptr) return;
  std::visit(
      [&](auto pointer) {
        if (const auto* typed = std::get_if<std::decay_t<decltype(p.*pointer)>>(&value)) p.*pointer = *typed;
      },
      *member);
}

}  // namespace zelkon
