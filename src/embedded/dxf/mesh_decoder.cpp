#include "embedded/dxf/mesh_decoder.h"

#include <algorithm>
#include <cstdlib>

namespace sheafwork::embedded {
namespace {

constexpr int kPolygonMesh = 16;
constexpr int kPolyfaceMesh = 64;

void AddEdge(MeshEdges& mesh, std::size_t a, std::size_t b) {
  if (a == b || a >= mesh.vertices.size() || b >= mesh.vertices.size()) return;
  mesh.edges.push_back(static_cast<std::uint32_t>(a));
  mesh.edges.push_back(static_cast<std::uint32_t>(b));
}

}  // namespace

bool IsPolylineMesh(const Context& ctx, std::span<const DataTag* const> own) {
  for (const DataTag* d : own) {
    if (d->tag.code == 70) return (ctx.Short(d->tag) & (kPolygonMesh | kPolyfaceMesh)) != 0;
  }
  return false;
}

PolylineMeshBuilder::PolylineMeshBuilder(Context& ctx, const Record& polyline) : ctx_(ctx) {
  for (const DataTag& d : polyline.data) {
    const Tag& t = d.tag;
    switch (t.code) {
      case 70: {
        const int flags = ctx.Short(t);
        polyface_ = (flags & kPolyfaceMesh) != 0;
        closedM_ = (flags & 1) != 0;
        closedN_ = (flags & 32) != 0;
        break;
      }
      case 71:
        m_ = ctx.Short(t);
        break;
      case 72:
        n_ = ctx.Short(t);
        break;
      case 73:
        densityM_ = ctx.Short(t);
        break;
      case 74:
        densityN_ = ctx.Short(t);
        break;
      default:
        break;
    }
  }
}

void PolylineMeshBuilder::AddVertex(const Record& vertex) {
  Vec3 point;
  Face face;
  int flags = 0;
  for (const DataTag& d : vertex.data) {
    const Tag& t = d.tag;
    if (SetPoint(ctx_, t, 10, point)) continue;
    if (t.code == 70) flags = ctx_.Short(t);
    if (t.code >= 71 && t.code <= 74) face.index[t.code - 71] = ctx_.Long(t);
  }
  // A polyface's face records carry flag 128 without 64; its points and a
  // polygon mesh's carry 64. Frame control points (16) are not on the surface.
  if (polyface_ && (flags & 128) != 0 && (flags & 64) == 0) {
    faces_.push_back(face);
  } else if ((flags & 16) == 0) {
    mesh_.vertices.push_back(point);
  }
}

MeshEdges PolylineMeshBuilder::Finish() {
  if (polyface_) {
    for (const Face& f : faces_) {
      const int count = f.index[3] != 0 ? 4 : 3;
      for (int i = 0; i < count; ++i) {
        const std::int32_t from = f.index[i];
        const std::int32_t to = f.index[(i + 1) % count];
        if (from <= 0 || to == 0) continue;  // invisible edge, or a missing corner
        AddEdge(mesh_, static_cast<std::size_t>(from - 1),
                static_cast<std::size_t>(std::abs(to) - 1));
      }
    }
    return std::move(mesh_);
  }
  // A smoothed surface stores its fitted vertices on the density grid.
  int m = m_, n = n_;
  const std::size_t count = mesh_.vertices.size();
  if (static_cast<std::size_t>(std::max(m, 0) * std::max(n, 0)) != count && densityM_ > 0 &&
      densityN_ > 0 && static_cast<std::size_t>(densityM_ * densityN_) == count) {
    m = densityM_;
    n = densityN_;
  }
  if (m <= 0 || n <= 0) return std::move(mesh_);
  auto at = [n](int i, int j) { return static_cast<std::size_t>(i * n + j); };
  for (int i = 0; i < m; ++i) {
    for (int j = 0; j < n; ++j) {
      if (j + 1 < n || (closedN_ && n > 2)) AddEdge(mesh_, at(i, j), at(i, (j + 1) % n));
      if (i + 1 < m || (closedM_ && m > 2)) AddEdge(mesh_, at(i, j), at((i + 1) % m, j));
    }
  }
  return std::move(mesh_);
}

MeshEdges DecodeSubDMesh(Context& ctx, std::span<const DataTag* const> own) {
  MeshEdges mesh;
  std::vector<std::int32_t> faceList;
  enum class List { None, Faces, Other } list = List::None;
  for (const DataTag* d : own) {
    const Tag& t = d->tag;
    switch (t.code) {
      case 10:
        mesh.vertices.emplace_back().x = ctx.Real(t);
        break;
      case 20:
      case 30:
        if (!mesh.vertices.empty()) SetPoint(ctx, t, 10, mesh.vertices.back());
        break;
      case 93:
        list = List::Faces;
        break;
      case 94:
      case 95:
        list = List::Other;  // edges and creases: the faces show them already
        break;
      case 90:
        if (list == List::Faces) faceList.push_back(ctx.Long(t));
        break;
      default:
        break;
    }
  }
  // Each face: its corner count, then that many vertex indexes.
  for (std::size_t i = 0; i < faceList.size();) {
    const std::size_t corners = static_cast<std::size_t>(std::max(faceList[i], 0));
    const std::size_t first = i + 1;
    if (corners == 0 || first + corners > faceList.size()) break;
    for (std::size_t k = 0; k < corners; ++k) {
      const std::int32_t a = faceList[first + k];
      const std::int32_t b = faceList[first + (k + 1) % corners];
      if (a >= 0 && b >= 0) AddEdge(mesh, static_cast<std::size_t>(a), static_cast<std::size_t>(b));
    }
    i = first + corners;
  }
  return mesh;
}

}  // namespace sheafwork::embedded
