#pragma once
// Plain geometric values of a drawing.

namespace sheafwork::embedded {

struct Vec2 {
  double x = 0;
  double y = 0;
};

struct Vec3 {
  double x = 0;
  double y = 0;
  double z = 0;
};

inline constexpr Vec3 kUnitZ{0, 0, 1};

}  // namespace sheafwork::embedded
