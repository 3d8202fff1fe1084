// Construction lines, meshes and multileaders.

#include <cmath>
#include <limits>

#include "embedded/render/frontend.h"

namespace sheafwork::embedded {

void Frontend::DrawArrowhead(const Vec3& tip, const Vec3& next, double size, const Transform3& t,
                             const Style& s) {
  const double dx = next.x - tip.x, dy = next.y - tip.y;
  const double length = std::hypot(dx, dy);
  if (length <= 0 || !(size > 0)) return;
  const double ux = dx / length, uy = dy / length;
  const double half = size / 6;
  const Vec3 corners[3] = {tip,
                           {tip.x + ux * size - uy * half, tip.y + uy * size + ux * half, tip.z},
                           {tip.x + ux * size + uy * half, tip.y + uy * size - ux * half, tip.z}};
  out_.clear();
  for (const Vec3& c : corners) out_.push_back(t.ApplyXY(c));
  if (!InCull(out_)) return;
  const int size3 = 3;
  backend_.FillLoops(out_, {&size3, 1}, s);
}

void Frontend::DrawConstructionLine(const ConstructionLine& g, const Transform3& t,
                                    const Style& s) {
  if (!options_.cull) return;
  const Vec2 p = t.ApplyXY(g.base);
  const Vec3& d3 = g.direction;
  const Vec2 q = t.ApplyXY({g.base.x + d3.x, g.base.y + d3.y, g.base.z + d3.z});
  const double dx = q.x - p.x, dy = q.y - p.y;
  if (dx == 0 && dy == 0) return;  // seen end on
  // The part of p + u·d inside the cull box (Liang and Barsky).
  const Box2& box = *options_.cull;
  double lo = g.ray ? 0.0 : -std::numeric_limits<double>::infinity();
  double hi = std::numeric_limits<double>::infinity();
  const auto cut = [&](double delta, double from, double min, double max) {
    if (delta == 0) return from >= min && from <= max;
    double a = (min - from) / delta, b = (max - from) / delta;
    if (a > b) std::swap(a, b);
    lo = std::max(lo, a);
    hi = std::min(hi, b);
    return lo <= hi;
  };
  if (!cut(dx, p.x, box.min.x, box.max.x) || !cut(dy, p.y, box.min.y, box.max.y)) return;
  out_.clear();
  out_.push_back({p.x + lo * dx, p.y + lo * dy});
  out_.push_back({p.x + hi * dx, p.y + hi * dy});
  Stroke(out_, false, s);
}

void Frontend::DrawMeshEdges(const MeshEdges& g, const Transform3& t, const Style& s) {
  if (g.edges.empty()) return;
  out_.clear();
  for (const Vec3& v : g.vertices) out_.push_back(t.ApplyXY(v));
  if (!InCull(out_)) return;
  pairs_.clear();
  for (const std::uint32_t i : g.edges) pairs_.push_back(out_[i]);
  if (dasher_.Active()) {
    for (std::size_t i = 0; i + 1 < pairs_.size(); i += 2) {
      dasher_.Restart();
      Stroke(std::span<const Vec2>(pairs_).subspan(i, 2), false, s);
    }
  } else {
    backend_.DrawLines(pairs_, s);
  }
}

void Frontend::DrawMultiLeader(const MultiLeader& g, const Transform3& t, const Resolved& r) {
  std::size_t begin = 0;
  for (const std::uint32_t end : g.lineEnds) {
    const std::span<const Vec3> line(g.points.data() + begin, end - begin);
    begin = end;
    if (line.size() < 2) continue;
    out_.clear();
    for (const Vec3& v : line) out_.push_back(t.ApplyXY(v));
    dasher_.Restart();
    EmitPolyline(false, r.style);
    if (g.arrowhead) DrawArrowhead(line[0], line[1], g.arrowSize, t, r.style);
  }
  for (const MText& text : g.text) DrawMText(text, t, r);
  if (g.block.empty()) return;
  const Block* block = drawing_->FindBlock(g.block);
  if (block == nullptr) {
    ++stats_.missingBlocks;
    return;
  }
  Insert placement;
  placement.scale = g.blockScale;
  const Transform3 placed =
      t * Transform3::Translation(g.blockInsert) * Transform3::RotationZ(g.blockRotation);
  DrawBlockReference(r, *block, placed, &placement, t);
}

}  // namespace sheafwork::embedded
