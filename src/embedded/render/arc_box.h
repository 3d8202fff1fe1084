#pragma once
// The box around a circular arc, exactly: its two ends and whichever of
// the circle's four extreme points the arc passes.

#include "embedded/model/geometry.h"
#include "embedded/render/box.h"

namespace sheafwork::embedded {

/// The arc from angle `start` over `sweep` radians (negative runs
/// clockwise); the whole circle when |sweep| ≥ 2π.
Box2 ArcBox(Vec2 center, double radius, double start, double sweep);

}  // namespace sheafwork::embedded
