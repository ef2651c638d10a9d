// All drawable state of a layer, as a copyable value: the model of a layer is one, its presentation at a time is a copy
// of it with animated values in place.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "CoreImage/CIFilter.h"
#include "QuartzCore/CAAnimation.h"

namespace zelkon {

class CALayer;
using CALayerRef = std::shared_ptr<CALayer>;

enum class CAContentsGravity { resize, center };

struct CALayerProperties {
  CGRect bounds;
  CGPoint position;
  CGPoint anchorPoint{0.5, 0.5};
  CATransform3D transform = CATransform3DIdentity;
  double zPosition = 0;
  double opacity = 1;
  double hiddenFade = 1;  // 0...1: how much of the layer shows; what the key "hidden" animates
  bool hidden = false;
  bool masksToBounds = false;
  double cornerRadius = 0;
  double borderWidth = 0;
  CGColorRef borderColor, backgroundColor;
  CGImageRef contents;
  // Points of the contents, from their lower left corner, that fill the bounds: the exact size that a drawing was made
  // for, while its image is rounded up. Zero: all of the image.
  CGSize drawnSize;
  CGImageRef fadingContents;  // earlier contents, while they change
  double contentsFade = 1;    // 0...1: from the earlier contents to the present ones
  CAContentsGravity contentsGravity = CAContentsGravity::resize;
  unsigned edgeAntialiasingMask = 15;
  double shadowOpacity = 0;
  CGSize shadowOffset{0, -3};
  double shadowRadius = 3;
  CGColorRef shadowColor;  // null = black
  std::vector<CIFilterRef> filters;
  CIFilterRef compositingFilter;
  CALayerRef mask;
};

// Superlayer coordinates of a layer's own coordinates, with bounds origin, anchor point, transform and position.
CGAffineTransform CALayerToSuperlayerTransform(const CALayerProperties& p);
CGRect CALayerFrame(const CALayerProperties& p);
// The frame of a layer whose position is (0, 0).
CGRect CALayerBoxAroundAnchor(const CALayerProperties& p);

// The value under an animatable key ("bounds", "opacity", "hidden", ...); nothing for other keys. "hidden" is told as
// the number hiddenFade.
std::optional<CAAnimatableValue> CALayerValue(const CALayerProperties& p, std::string_view key);
// Puts an animated value in place; a key that is not animatable or a value of the wrong kind changes nothing.
void CALayerSetValue(CALayerProperties& p, std::string_view key, const CAAnimatableValue& value);

}  // namespace zelkon
