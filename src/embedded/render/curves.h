#pragma once
// Curves turned into points: arcs (also from polyline bulges), B-splines and
// curves through fit points. Pure geometry in the curve's own coordinates.

#include <span>
#include <vector>

#include "embedded/model/geometry.h"

namespace sheafwork::embedded {

/// How finely curves are cut into segments.
struct Flattening {
  double tolerance = 0.01;  ///< largest gap between curve and chord, output units
  int minSegmentsPerCircle = 16;
};

/// Number of segments for an arc of `sweep` radians whose radius is
/// `outputRadius` in output units.
int ArcSegments(double outputRadius, double sweep, const Flattening& flattening);

/// Appends the points of the arc of radius `radius` around `center` from
/// angle `start` over `sweep` radians (negative = clockwise), `segments`
/// segments; the first point only when `withStart`.
void AppendArc(std::vector<Vec2>& out, Vec2 center, double radius, double start, double sweep,
               int segments, bool withStart);

/// The circle an arc-shaped polyline segment lies on.
struct BulgeArc {
  Vec2 center;
  double radius = 0;
  double startAngle = 0;  ///< radians
  double sweep = 0;       ///< radians, positive counter-clockwise
};

/// The arc from `from` to `to` with `bulge` (tan of a quarter of the
/// included angle, positive counter-clockwise). Requires bulge ≠ 0 and
/// distinct points.
BulgeArc ArcFromBulge(Vec2 from, Vec2 to, double bulge);

/// Appends the points after `from` of the segment to `to`: just `to` when
/// straight, the flattened arc otherwise. `outputScale` turns local lengths
/// into output units for the tolerance.
void AppendBulgeSegment(std::vector<Vec2>& out, Vec2 from, Vec2 to, double bulge,
                        double outputScale, const Flattening& flattening);

/// Points of the B-spline of `degree` with `knots`, control points and
/// optional weights, `samples` + 1 points evenly spread over the parameter
/// range. A knot vector of the wrong length is replaced by a clamped uniform
/// one. Nothing for fewer than two control points.
void AppendBSpline(std::vector<Vec3>& out, int degree, std::span<const double> knots,
                   std::span<const Vec3> controlPoints, std::span<const double> weights,
                   int samples);

/// A smooth curve through `fitPoints` (centripetal Catmull-Rom),
/// `samplesPerSpan` segments between successive points.
void AppendThroughPoints(std::vector<Vec3>& out, std::span<const Vec3> fitPoints, bool closed,
                         int samplesPerSpan);

}  // namespace sheafwork::embedded
