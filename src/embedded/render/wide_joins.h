#pragma once
// The corner between two wide segments of a polyline: each segment is a band
// of its own, and at a vertex where the path turns the outer side of the
// corner is filled as CAD programs do, mitred up to a limit.

#include <array>
#include <cstddef>
#include <span>

#include "embedded/model/geometry.h"

namespace sheafwork::embedded {

/// How far the mitre point may lie from the vertex, in half widths of the
/// wider segment: beyond it (segments meeting at less than about 29°, the
/// default limit of SVG and PDF viewers) the corner is cut straight across
/// between the two bands' outer edges (a bevel).
inline constexpr double kMiterLimit = 4;

/// The outer wedge of the corner at `vertex`, where a segment arriving in
/// unit direction `in` with half width `halfIn` meets one leaving in unit
/// direction `out` with half width `halfOut`: the vertex, the outer edge's
/// end of the first band, the mitre point (left out for a bevel) and the
/// outer edge's start of the second. Returns how many points of `corner` it
/// fills; 0 when there is no corner to fill (no turn, a turn back on
/// itself, or a band without width there).
std::size_t WideJoin(Vec2 vertex, Vec2 in, double halfIn, Vec2 out, double halfOut,
                     std::array<Vec2, 4>& corner);

/// The unit direction of the first step of `points` that has a length (of
/// the last one when `atEnd`); (0, 0) when all points coincide.
Vec2 RunDirection(std::span<const Vec2> points, bool atEnd);

}  // namespace sheafwork::embedded
