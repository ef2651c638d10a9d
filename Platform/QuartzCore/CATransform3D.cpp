#include "QuartzCore/CATransform3D.h"

#include <cmath>

namespace zelkon {

bool CATransform3DIsIdentity(const CATransform3D& t) { return t == CATransform3DIdentity; }

CATransform3D CATransform3DConcat(const CATransform3D& p, const CATransform3D& q) {
  CATransform3D r;
  r.m11 = p.m11 * q.m11 + p.m12 * q.m21 + p.m13 * q.m31 + p.m14 * q.m41;
  r.m12 = p.m11 * q.m12 + p.m12 * q.m22 + p.m13 * q.m32 + p.m14 * q.m42;
  r.m13 = p.m11 * q.m13 + p.m12 * q.m23 + p.m13 * q.m33 + p.m14 * q.m43;
  r.m14 = p.m11 * q.m14 + p.m12 * q.m24 + p.m13 * q.m34 + p.m14 * q.m44;
  r.m21 = p.m21 * q.m11 + p.m22 * q.m21 + p.m23 * q.m31 + p.m24 * q.m41;
  r.m22 = p.m21 * q.m12 + p.m22 * q.m22 + p.m23 * q.m32 + p.m24 * q.m42;
  r.m23 = p.m21 * q.m13 + p.m22 * q.m23 + p.m23 * q.m33 + p.m24 * q.m43;
  r.m24 = p.m21 * q.m14 + p.m22 * q.m24 + p.m23 * q.m34 + p.m24 * q.m44;
  r.m31 = p.m31 * q.m11 + p.m32 * q.m21 + p.m33 * q.m31 + p.m34 * q.m41;
  r.m32 = p.m31 * q.m12 + p.m32 * q.m22 + p.m33 * q.m32 + p.m34 * q.m42;
  r.m33 = p.m31 * q.m13 + p.m32 * q.m23 + p.m33 * q.m33 + p.m34 * q.m43;
  r.m34 = p.m31 * q.m14 + p.m32 * q.m24 + p.m33 * q.m34 + p.m34 * q.m44;
  r.m41 = p.m41 * q.m11 + p.m42 * q.m21 + p.m43 * q.m31 + p.m44 * q.m41;
  r.m42 = p.m41 * q.m12 + p.m42 * q.m22 + p.m43 * q.m32 + p.m44 * q.m42;
  r.m43 = p.m41 * q.m13 + p.m42 * q.m23 + p.m43 * q.m33 + p.m44 * q.m43;
  r.m44 = p.m41 * q.m14 + p.m42 * q.m24 + p.m43 * q.m34 + p.m44 * q.m44;
  return r;
}

CATransform3D CATransform3DRotate(const CATransform3D& t, double radians, double x, double y, double z) {
  const double length = std::sqrt(x * x + y * y + z * z);
  if (!(length > 0)) return t;
  x /= length;
  y /= length;
  z /= length;
  const double c = std::cos(radians), s = std::sin(radians), k = 1 - c;
  const CATransform3D rotation{c + x * x * k,
                               x * y * k + z * s,
                               x * z * k - y * s,
                               0,  //
                               x * y * k - z * s,
                               c + y * y * k,
                               y * z * k + x * s,
                               0,  //
                               x * z * k + y * s,
                               y * z * k - x * s,
                               c + z * z * k,
                               0,  //
                               0,
                               0,
                               0,
                               1};
  return CATransform3DConcat(rotation, t);
}

CATransform3D CATransform3DScale(const CATransform3D& t, double sx, double sy, double sz) {
  return CATransform3DConcat({sx, 0, 0, 0, 0, sy, 0, 0, 0, 0, sz, 0, 0, 0, 0, 1}, t);
}

CATransform3D CATransform3DTranslate(const CATransform3D& t, double tx, double ty, double tz) {
  return CATransform3DConcat({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, tx, ty, tz, 1}, t);
}

CGAffineTransform CATransform3DGetAffineTransform(const CATransform3D& t) {
  return {t.m11, t.m12, t.m21, t.m22, t.m41, t.m42};
}

bool CATransform3DIsAffine(const CATransform3D& t) {
  return t.m13 == 0 && t.m14 == 0 && t.m23 == 0 && t.m24 == 0 && t.m31 == 0 && t.m32 == 0 && t.m34 == 0 && t.m43 == 0 &&
         t.m33 == 1 && t.m44 == 1;
}

}  // namespace zelkon
