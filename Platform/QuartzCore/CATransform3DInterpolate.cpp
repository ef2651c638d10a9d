// Transforms mixed by their parts. Transforms of the plane have one turning angle and are mixed by it; those that leave
// the plane are taken apart into translation, scale, shear and a quaternion; what cannot be taken apart switches at the
// end.

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>

#include "QuartzCore/CATransform3D.h"

namespace zelkon {

namespace {

double mix(double a, double b, double f) { return a + f * (b - a); }

// ---- in the plane ----

bool staysInPlane(const CATransform3D& t) {
  return t.m13 == 0 && t.m14 == 0 && t.m23 == 0 && t.m24 == 0 && t.m31 == 0 && t.m32 == 0 && t.m34 == 0 && t.m44 == 1;
}

// linear part = shear and scale, then rotation: x axis = scaleX e, y axis = scaleY (n + shear e), with e turned by
// angle
struct PlaneParts {
  double angle, scaleX, scaleY, shear;
};

PlaneParts takeApartInPlane(const CATransform3D& t) {
  const double lengthX = std::hypot(t.m11, t.m12), lengthY = std::hypot(t.m21, t.m22);
  if (lengthX == 0) return {lengthY == 0 ? 0 : std::atan2(-t.m21, t.m22), 0, lengthY, 0};
  const bool mirrored = t.m11 * t.m22 - t.m12 * t.m21 < 0;
  // A mirror image is turned as little as possible: the axis that points backwards is the one reversed.
  const double sign = mirrored && t.m11 < t.m22 ? -1 : 1;
  const double ex = sign * t.m11 / lengthX, ey = sign * t.m12 / lengthX;
  PlaneParts parts{std::atan2(ey, ex), sign * lengthX, t.m22 * ex - t.m21 * ey, 0};
  const double along = t.m21 * ex + t.m22 * ey;
  if (parts.scaleY != 0) parts.shear = along / parts.scaleY;
  return parts;
}

CATransform3D interpolateInPlane(const CATransform3D& from, const CATransform3D& to, double f) {
  const PlaneParts a = takeApartInPlane(from), b = takeApartInPlane(to);
  double turn = b.angle - a.angle;
  if (turn > std::numbers::pi) turn -= 2 * std::numbers::pi;
  if (turn < -std::numbers::pi) turn += 2 * std::numbers::pi;
  const double angle = a.angle + f * turn, c = std::cos(angle), s = std::sin(angle);
  const double scaleX = mix(a.scaleX, b.scaleX, f), scaleY = mix(a.scaleY, b.scaleY, f);
  const double shear = mix(a.shear, b.shear, f) * scaleY;
  CATransform3D result = CATransform3DIdentity;
  result.m11 = scaleX * c;
  result.m12 = scaleX * s;
  result.m21 = shear * c - scaleY * s;
  result.m22 = shear * s + scaleY * c;
  result.m33 = mix(from.m33, to.m33, f);
  result.m41 = mix(from.m41, to.m41, f);
  result.m42 = mix(from.m42, to.m42, f);
  result.m43 = mix(from.m43, to.m43, f);
  return result;
}

// ---- in space ----

using Vector = std::array<double, 3>;
using Quaternion = std::array<double, 4>;  // x, y, z, w

double dot(const Vector& a, const Vector& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
Vector plus(const Vector& a, const Vector& b, double factor) {
  return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}
Vector times(const Vector& a, double factor) { return {a[0] * factor, a[1] * factor, a[2] * factor}; }

struct SpaceParts {
  Vector translation, scale, shear;  // shear: xy, xz, yz
  Quaternion rotation;
};

Quaternion quaternionOf(const std::array<Vector, 3>& r) {
  const double trace = r[0][0] + r[1][1] + r[2][2];
  if (trace > 0) {
    const double s = 2 * std::sqrt(trace + 1);
    return {(r[1][2] - r[2][1]) / s, (r[2][0] - r[0][2]) / s, (r[0][1] - r[1][0]) / s, s / 4};
  }
  // The largest diagonal element keeps the divisor away from zero.
  const size_t i = r[0][0] > r[1][1] ? (r[0][0] > r[2][2] ? 0 : 2) : (r[1][1] > r[2][2] ? 1 : 2);
  const size_t j = (i + 1) % 3, k = (i + 2) % 3;
  const double s = 2 * std::sqrt(std::max(0.0, 1 + r[i][i] - r[j][j] - r[k][k]));
  Quaternion q{};
  q[i] = s / 4;
  q[j] = (r[i][j] + r[j][i]) / s;
  q[k] = (r[i][k] + r[k][i]) / s;
  q[3] = (r[j][k] - r[k][j]) / s;
  return q;
}

std::optional<SpaceParts> takeApart(const CATransform3D& t) {
  if (t.m14 != 0 || t.m24 != 0 || t.m34 != 0 || t.m44 != 1) return std::nullopt;
  std::array<Vector, 3> row{Vector{t.m11, t.m12, t.m13}, Vector{t.m21, t.m22, t.m23}, Vector{t.m31, t.m32, t.m33}};
  const double determinant = dot(row[0], cross(row[1], row[2]));
  if (determinant == 0 || !std::isfinite(determinant)) return std::nullopt;
  SpaceParts parts;
  parts.translation = {t.m41, t.m42, t.m43};
  parts.scale[0] = std::sqrt(dot(row[0], row[0]));
  row[0] = times(row[0], 1 / parts.scale[0]);
  parts.shear[0] = dot(row[0], row[1]);
  row[1] = plus(row[1], row[0], -parts.shear[0]);
  parts.scale[1] = std::sqrt(dot(row[1], row[1]));
  row[1] = times(row[1], 1 / parts.scale[1]);
  parts.shear[0] /= parts.scale[1];
  parts.shear[1] = dot(row[0], row[2]);
  row[2] = plus(row[2], row[0], -parts.shear[1]);
  parts.shear[2] = dot(row[1], row[2]);
  row[2] = plus(row[2], row[1], -parts.shear[2]);
  parts.scale[2] = std::sqrt(dot(row[2], row[2]));
  row[2] = times(row[2], 1 / parts.scale[2]);
  parts.shear[1] /= parts.scale[2];
  parts.shear[2] /= parts.scale[2];
  if (determinant < 0) {
    for (size_t i = 0; i < 3; ++i) {
      parts.scale[i] = -parts.scale[i];
      row[i] = times(row[i], -1);
    }
  }
  parts.rotation = quaternionOf(row);
  return parts;
}

Quaternion slerp(const Quaternion& a, Quaternion b, double f) {
  double cosine = a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
  if (cosine < 0) {
    cosine = -cosine;
    for (double& component : b) component = -component;
  }
  double weightA = 1 - f, weightB = f;
  if (cosine < 1 - 1e-9) {
    const double angle = std::acos(cosine), sine = std::sin(angle);
    weightA = std::sin((1 - f) * angle) / sine;
    weightB = std::sin(f * angle) / sine;
  }
  Quaternion q{};
  double length = 0;
  for (size_t i = 0; i < 4; ++i) {
    q[i] = weightA * a[i] + weightB * b[i];
    length += q[i] * q[i];
  }
  length = std::sqrt(length);
  for (double& component : q) component /= length;
  return q;
}

CATransform3D putTogether(const SpaceParts& parts) {
  const auto& [x, y, z, w] = parts.rotation;
  const std::array<Vector, 3> r{Vector{1 - 2 * (y * y + z * z), 2 * (x * y + z * w), 2 * (x * z - y * w)},
                                Vector{2 * (x * y - z * w), 1 - 2 * (x * x + z * z), 2 * (y * z + x * w)},
                                Vector{2 * (x * z + y * w), 2 * (y * z - x * w), 1 - 2 * (x * x + y * y)}};
  const Vector rowX = times(r[0], parts.scale[0]);
  const Vector rowY = times(plus(r[1], r[0], parts.shear[0]), parts.scale[1]);
  const Vector rowZ = times(plus(plus(r[2], r[0], parts.shear[1]), r[1], parts.shear[2]), parts.scale[2]);
  const Vector& t = parts.translation;
  return {rowX[0], rowX[1], rowX[2], 0, rowY[0], rowY[1], rowY[2], 0,
          rowZ[0], rowZ[1], rowZ[2], 0, t[0],    t[1],    t[2],    1};
}

}  // namespace

CATransform3D CATransform3DInterpolate(const CATransform3D& from, const CATransform3D& to, double f) {
  if (f == 0) return from;
  if (f == 1) return to;
  if (staysInPlane(from) && staysInPlane(to)) return interpolateInPlane(from, to, f);
  const std::optional<SpaceParts> a = takeApart(from), b = takeApart(to);
  if (!a || !b) return f < 1 ? from : to;
  SpaceParts parts;
  for (size_t i = 0; i < 3; ++i) {
    parts.translation[i] = mix(a->translation[i], b->translation[i], f);
    parts.scale[i] = mix(a->scale[i], b->scale[i], f);
    parts.shear[i] = mix(a->shear[i], b->shear[i], f);
  }
  parts.rotation = slerp(a->rotation, b->rotation, f);
  return putTogether(parts);
}

}  // namespace zelkon
