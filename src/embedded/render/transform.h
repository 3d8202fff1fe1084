#pragma once
// Affine maps used by the plot engine: a planar one (drawing to sheet) and a
// spatial one (entity coordinates through blocks and object coordinate
// systems to the sheet, of which only x and y are kept).

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "embedded/model/geometry.h"
#include "embedded/render/box.h"

namespace sheafwork::embedded {

/// A whole turn in radians.
inline constexpr double kTwoPi = 2 * std::numbers::pi;

inline double Radians(double degrees) { return degrees * std::numbers::pi / 180.0; }
inline double Degrees(double radians) { return radians * 180.0 / std::numbers::pi; }

inline Vec3 Cross(const Vec3& a, const Vec3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// `v` scaled to length 1; +Z for the null vector.
inline Vec3 Normalized(const Vec3& v) {
  const double len = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
  return len > 0 ? Vec3{v.x / len, v.y / len, v.z / len} : kUnitZ;
}

/// x' = a·x + c·y + e, y' = b·x + d·y + f.
struct Affine2 {
  double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

  Vec2 Apply(Vec2 p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f}; }
  Vec2 ApplyLinear(Vec2 v) const { return {a * v.x + c * v.y, b * v.x + d * v.y}; }
  double Determinant() const { return a * d - b * c; }
  /// The largest length of the image of a unit step along x or y.
  double Scale() const { return std::sqrt(std::max(a * a + b * b, c * c + d * d)); }
  Affine2 Inverse() const;

  static Affine2 Translation(double x, double y) { return {1, 0, 0, 1, x, y}; }
  static Affine2 Scaling(double sx, double sy) { return {sx, 0, 0, sy, 0, 0}; }
  static Affine2 Rotation(double radians);
};

/// this ∘ other: apply `rhs` first, then `lhs`.
Affine2 operator*(const Affine2& lhs, const Affine2& rhs);

/// The box around `box`'s corners mapped by `map`; empty for an empty box.
inline Box2 MappedBox(const Affine2& map, const Box2& box) {
  Box2 out;
  if (box.Empty()) return out;
  for (const Vec2 c : {box.min, Vec2{box.max.x, box.min.y}, box.max, Vec2{box.min.x, box.max.y}}) {
    out.Extend(map.Apply(c));
  }
  return out;
}

/// A 3-D affine map: rows of [linear | translation].
struct Transform3 {
  double m[3][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}};

  Vec3 Apply(const Vec3& p) const {
    return {m[0][0] * p.x + m[0][1] * p.y + m[0][2] * p.z + m[0][3],
            m[1][0] * p.x + m[1][1] * p.y + m[1][2] * p.z + m[1][3],
            m[2][0] * p.x + m[2][1] * p.y + m[2][2] * p.z + m[2][3]};
  }
  /// The x and y of Apply(p): where p lands on the sheet.
  Vec2 ApplyXY(const Vec3& p) const {
    return {m[0][0] * p.x + m[0][1] * p.y + m[0][2] * p.z + m[0][3],
            m[1][0] * p.x + m[1][1] * p.y + m[1][2] * p.z + m[1][3]};
  }
  /// The planar map of the plane z = `z` of this space onto the sheet.
  Affine2 PlaneAt(double z) const {
    return {m[0][0], m[1][0], m[0][1], m[1][1], m[0][2] * z + m[0][3], m[1][2] * z + m[1][3]};
  }

  /// The inverse map; the identity when this one flattens space.
  Transform3 Inverse() const;

  /// From twelve numbers in rows of [linear | translation].
  static Transform3 FromRows(const std::array<double, 12>& rows);
  static Transform3 Translation(const Vec3& t);
  static Transform3 Scaling(const Vec3& s);
  static Transform3 RotationZ(double degrees);
  /// Object coordinates of `extrusion` to world coordinates (arbitrary axis
  /// algorithm); the identity for +Z.
  static Transform3 Ocs(const Vec3& extrusion);
  static Transform3 FromAffine2(const Affine2& a);
};

/// Apply `rhs` first, then `lhs`.
Transform3 operator*(const Transform3& lhs, const Transform3& rhs);

/// True when `extrusion` is (close to) +Z.
inline bool IsUnitZ(const Vec3& v) {
  return std::fabs(v.x) < 1e-12 && std::fabs(v.y) < 1e-12 && v.z > 0;
}

/// The sheet map of the plane through `origin` spanned by `xAxis`, `yAxis`.
inline Affine2 PlanarMap(const Transform3& t, const Vec3& origin, const Vec3& xAxis,
                         const Vec3& yAxis) {
  const Vec2 o = t.ApplyXY(origin);
  const Vec2 x = t.ApplyXY({origin.x + xAxis.x, origin.y + xAxis.y, origin.z + xAxis.z});
  const Vec2 y = t.ApplyXY({origin.x + yAxis.x, origin.y + yAxis.y, origin.z + yAxis.z});
  return {x.x - o.x, x.y - o.y, y.x - o.x, y.y - o.y, o.x, o.y};
}

}  // namespace sheafwork::embedded
