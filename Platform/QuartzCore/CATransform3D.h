// 4x4 transforms of row vectors: [x y z 1] M, translation in m41, m42, m43.
#pragma once

#include "CoreGraphics/CGGeometry.h"

namespace zelkon {

// No member has a default: a value-initialised transform is sixteen zeros, which is not the identity.
struct CATransform3D {
  double m11, m12, m13, m14;
  double m21, m22, m23, m24;
  double m31, m32, m33, m34;
  double m41, m42, m43, m44;
  friend bool operator==(const CATransform3D&, const CATransform3D&) = default;
};
inline constexpr CATransform3D CATransform3DIdentity{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
bool CATransform3DIsIdentity(const CATransform3D& t);
CATransform3D CATransform3DConcat(const CATransform3D& first, const CATransform3D& then);
// The new operation happens before t in point order.
CATransform3D CATransform3DRotate(const CATransform3D& t, double radians, double x, double y, double z);
CATransform3D CATransform3DScale(const CATransform3D& t, double sx, double sy, double sz);
CATransform3D CATransform3DTranslate(const CATransform3D& t, double tx, double ty, double tz);
CGAffineTransform CATransform3DGetAffineTransform(const CATransform3D& t);  // (m11, m12, m21, m22, m41, m42)
bool CATransform3DIsAffine(const CATransform3D& t);
// Decomposed into translation, scale, shear and rotation (shortest arc; +180 degrees turns back through falling
// angles), parts interpolated at f and recomposed.
CATransform3D CATransform3DInterpolate(const CATransform3D& from, const CATransform3D& to, double f);

}  // namespace zelkon
