#pragma once
// The lines of a hatch pattern, cut to the hatch's boundary.

#include <cstddef>
#include <span>
#include <vector>

#include "embedded/model/entities.h"

namespace sheafwork::embedded {

/// Appends to `pairs` (points 2i, 2i+1 are a segment) the dashes of pattern
/// line `line` that lie inside the boundary: the loops of `points`
/// (`loopSizes` points each, closed implicitly) under the odd-even rule.
/// Everything is in the hatch's own coordinates. Stops after `maxSegments`
/// segments; returns false when it had to stop (pattern too dense).
bool AppendPatternSegments(std::span<const Vec2> points, std::span<const int> loopSizes,
                           const HatchPatternLine& line, std::vector<Vec2>& pairs,
                           std::size_t maxSegments);

}  // namespace sheafwork::embedded
