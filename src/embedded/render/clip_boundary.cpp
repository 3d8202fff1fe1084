#include "embedded/render/clip_boundary.h"

#include <algorithm>
#include <cmath>
#include <variant>

#include "embedded/render/transform.h"

namespace sheafwork::embedded {

namespace {

void AppendPolyline(const Polyline& g, const Flattening& flattening, double outputScale,
                    std::vector<Vec2>& out) {
  const std::size_t n = g.vertices.size();
  if (g.is3d) {
    for (const PolylineVertex& v : g.vertices) out.push_back({v.point.x, v.point.y});
    return;
  }
  const Affine2 a = Transform3::Ocs(g.extrusion).PlaneAt(g.elevation);
  std::vector<Vec2> local{{g.vertices[0].point.x, g.vertices[0].point.y}};
  for (std::size_t i = 0; i < n; ++i) {
    const PolylineVertex& from = g.vertices[i];
    const PolylineVertex& to = g.vertices[(i + 1) % n];
    AppendBulgeSegment(local, {from.point.x, from.point.y}, {to.point.x, to.point.y}, from.bulge,
                       outputScale, flattening);
  }
  local.pop_back();  // back at the first vertex
  for (const Vec2& p : local) out.push_back(a.Apply(p));
}

void AppendCircle(const Circle& g, const Flattening& flattening, double outputScale,
                  std::vector<Vec2>& out) {
  const Affine2 a = Transform3::Ocs(g.extrusion).PlaneAt(g.center.z);
  std::vector<Vec2> local;
  const int n = ArcSegments(g.radius * outputScale, kTwoPi, flattening);
  AppendArc(local, {g.center.x, g.center.y}, g.radius, 0, kTwoPi, n, true);
  local.pop_back();
  for (const Vec2& p : local) out.push_back(a.Apply(p));
}

void AppendEllipse(const Ellipse& g, const Flattening& flattening, double outputScale,
                   std::vector<Vec2>& out) {
  const Vec3 minorDir = Cross(Normalized(g.extrusion), g.majorAxis);
  const double major = std::hypot(g.majorAxis.x, g.majorAxis.y);
  const int n = ArcSegments(major * outputScale, kTwoPi, flattening);
  for (int i = 0; i < n; ++i) {
    const double u = kTwoPi * i / n;
    const double c = std::cos(u), s = std::sin(u) * g.ratio;
    out.push_back({g.center.x + c * g.majorAxis.x + s * minorDir.x,
                   g.center.y + c * g.majorAxis.y + s * minorDir.y});
  }
}

void AppendSpline(const Spline& g, std::vector<Vec2>& out) {
  std::vector<Vec3> points;
  if (g.controlPoints.size() >= 2) {
    const int spans = static_cast<int>(g.controlPoints.size()) - std::max(g.degree, 1);
    AppendBSpline(points, g.degree, g.knots, g.controlPoints, g.weights,
                  std::clamp(16 * std::max(spans, 1), 16, 4096));
  } else if (g.fitPoints.size() >= 2) {
    AppendThroughPoints(points, g.fitPoints, true, 16);
  }
  for (const Vec3& p : points) out.push_back({p.x, p.y});
}

}  // namespace

const Entity* FindByHandle(const Block& block, std::string_view handle) {
  if (handle.empty()) return nullptr;
  const std::string key = NameKey(handle);
  for (const Entity& e : block.entities) {
    if (e.handle.size() == handle.size() && NameKey(e.handle) == key) return &e;
  }
  return nullptr;
}

bool AppendBoundaryOutline(const Entity& e, const Flattening& flattening, double outputScale,
                           std::vector<Vec2>& out) {
  const std::size_t first = out.size();
  if (const auto* g = std::get_if<Polyline>(&e.geometry); g != nullptr && !g->vertices.empty()) {
    AppendPolyline(*g, flattening, outputScale, out);
  } else if (const auto* c = std::get_if<Circle>(&e.geometry); c != nullptr && c->radius > 0) {
    AppendCircle(*c, flattening, outputScale, out);
  } else if (const auto* el = std::get_if<Ellipse>(&e.geometry)) {
    AppendEllipse(*el, flattening, outputScale, out);
  } else if (const auto* s = std::get_if<Spline>(&e.geometry)) {
    AppendSpline(*s, out);
  }
  if (out.size() - first < 3) {
    out.resize(first);
    return false;
  }
  return true;
}

}  // namespace sheafwork::embedded
