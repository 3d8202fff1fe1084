#include "embedded/render/transform.h"

namespace sheafwork::embedded {

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

Transform3 Transform3::Inverse() const {
  const auto& a = m;
  const double c00 = a[1][1] * a[2][2] - a[1][2] * a[2][1];
  const double c01 = a[1][2] * a[2][0] - a[1][0] * a[2][2];
  const double c02 = a[1][0] * a[2][1] - a[1][1] * a[2][0];
  const double det = a[0][0] * c00 + a[0][1] * c01 + a[0][2] * c02;
  if (det == 0 || !std::isfinite(det)) return {};
  Transform3 inv;
  double(&r)[3][4] = inv.m;
  r[0][0] = c00 / det;
  r[0][1] = (a[0][2] * a[2][1] - a[0][1] * a[2][2]) / det;
  r[0][2] = (a[0][1] * a[1][2] - a[0][2] * a[1][1]) / det;
  r[1][0] = c01 / det;
  r[1][1] = (a[0][0] * a[2][2] - a[0][2] * a[2][0]) / det;
  r[1][2] = (a[0][2] * a[1][0] - a[0][0] * a[1][2]) / det;
  r[2][0] = c02 / det;
  r[2][1] = (a[0][1] * a[2][0] - a[0][0] * a[2][1]) / det;
  r[2][2] = (a[0][0] * a[1][1] - a[0][1] * a[1][0]) / det;
  for (int i = 0; i < 3; ++i) {
    r[i][3] = -(r[i][0] * a[0][3] + r[i][1] * a[1][3] + r[i][2] * a[2][3]);
  }
  return inv;
}

Transform3 Transform3::FromRows(const std::array<double, 12>& rows) {
  Transform3 t;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 4; ++j) t.m[i][j] = rows[static_cast<std::size_t>(i * 4 + j)];
  }
  return t;
}

Transform3 Transform3::Translation(const Vec3& t) {
  return {{{1, 0, 0, t.x}, {0, 1, 0, t.y}, {0, 0, 1, t.z}}};
}

Transform3 Transform3::Scaling(const Vec3& s) {
  return {{{s.x, 0, 0, 0}, {0, s.y, 0, 0}, {0, 0, s.z, 0}}};
}

Transform3 Transform3::RotationZ(double degrees) {
  const double rad = Radians(degrees);
  const double cs = std::cos(rad), sn = std::sin(rad);
  return {{{cs, -sn, 0, 0}, {sn, cs, 0, 0}, {0, 0, 1, 0}}};
}

Transform3 Transform3::Ocs(const Vec3& extrusion) {
  if (IsUnitZ(extrusion)) return {};
  const Vec3 az = Normalized(extrusion);
  constexpr double kLimit = 1.0 / 64.0;
  const Vec3 ax =
      Normalized(std::fabs(az.x) < kLimit && std::fabs(az.y) < kLimit ? Cross(Vec3{0, 1, 0}, az)
                                                                      : Cross(Vec3{0, 0, 1}, az));
  const Vec3 ay = Cross(az, ax);
  return {{{ax.x, ay.x, az.x, 0}, {ax.y, ay.y, az.y, 0}, {ax.z, ay.z, az.z, 0}}};
}

Transform3 Transform3::FromAffine2(const Affine2& a) {
  return {{{a.a, a.c, 0, a.e}, {a.b, a.d, 0, a.f}, {0, 0, 1, 0}}};
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
