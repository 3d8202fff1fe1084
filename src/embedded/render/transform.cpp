#include "embedded/render/transform.h"

#include <algorithm>

namespace sheafwork::embedded {

namespace {
constexpr double kPi = 3.14159265358979323846;
}

Affine2 Affine2::Inverse() const {
  const double det = Determinant();
  if (det == 0) return {};
  const double ia = d / det, ib = -b / det, ic = -c / det, id = a / det;
  return {ia, ib, ic, id, -(ia * e + ic * f), -(ib * e + id * f)};
}

Affine2 Affine2::Rotation(double radians) {
  const double cs = std::cos(radians), sn = std::sin(radians);
  return {cs, sn, -sn, cs, 0, 0};
}

Affine2 operator*(const Affine2& l, const Affine2& r) {
  return {l.a * r.a + l.c * r.b, l.b * r.a + l.d * r.b,       l.a * r.c + l.c * r.d,
          l.b * r.c + l.d * r.d, l.a * r.e + l.c * r.f + l.e, l.b * r.e + l.d * r.f + l.f};
}

double Transform3::PlanarScale() const {
  const double sx = std::hypot(m[0][0], m[1][0]);
  const double sy = std::hypot(m[0][1], m[1][1]);
  return std::max(sx, sy);
}

Transform3 Transform3::Translation(const Vec3& t) {
  Transform3 r;
  r.m[0][3] = t.x;
  r.m[1][3] = t.y;
  r.m[2][3] = t.z;
  return r;
}

Transform3 Transform3::Scaling(const Vec3& s) {
  Transform3 r;
  r.m[0][0] = s.x;
  r.m[1][1] = s.y;
  r.m[2][2] = s.z;
  return r;
}

Transform3 Transform3::RotationZ(double degrees) {
  Transform3 r;
  const double rad = degrees * kPi / 180.0;
  const double cs = std::cos(rad), sn = std::sin(rad);
  r.m[0][0] = cs;
  r.m[0][1] = -sn;
  r.m[1][0] = sn;
  r.m[1][1] = cs;
  return r;
}

namespace {

Vec3 Cross(const Vec3& a, const Vec3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vec3 Normalized(const Vec3& v) {
  const double len = std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
  if (len == 0) return kUnitZ;
  return {v.x / len, v.y / len, v.z / len};
}

}  // namespace

Transform3 Transform3::Ocs(const Vec3& extrusion) {
  if (IsUnitZ(extrusion)) return {};
  const Vec3 az = Normalized(extrusion);
  constexpr double kLimit = 1.0 / 64.0;
  const Vec3 ax =
      Normalized(std::fabs(az.x) < kLimit && std::fabs(az.y) < kLimit ? Cross(Vec3{0, 1, 0}, az)
                                                                      : Cross(Vec3{0, 0, 1}, az));
  const Vec3 ay = Cross(az, ax);
  Transform3 r;
  const Vec3 cols[3] = {ax, ay, az};
  for (int c = 0; c < 3; ++c) {
    r.m[0][c] = cols[c].x;
    r.m[1][c] = cols[c].y;
    r.m[2][c] = cols[c].z;
  }
  return r;
}

Transform3 Transform3::FromAffine2(const Affine2& a) {
  Transform3 r;
  r.m[0][0] = a.a;
  r.m[0][1] = a.c;
  r.m[0][3] = a.e;
  r.m[1][0] = a.b;
  r.m[1][1] = a.d;
  r.m[1][3] = a.f;
  return r;
}

Transform3 operator*(const Transform3& l, const Transform3& r) {
  Transform3 out;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 4; ++j) {
      double v = j == 3 ? l.m[i][3] : 0.0;
      for (int k = 0; k < 3; ++k) v += l.m[i][k] * r.m[k][j];
      out.m[i][j] = v;
    }
  }
  return out;
}

}  // namespace sheafwork::embedded
