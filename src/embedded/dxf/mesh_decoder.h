#pragma once
// Meshes as the edges they show: polyface and polygon meshes (a POLYLINE
// with flag 64 or 16 and its VERTEX records) and MESH.

#include <span>

#include "embedded/dxf/context.h"

namespace sheafwork::embedded {

/// True when the POLYLINE tags `own` are a polyface or polygon mesh.
bool IsPolylineMesh(const Context& ctx, std::span<const DataTag* const> own);

/// Gathers a mesh POLYLINE's VERTEX records as they are read.
class PolylineMeshBuilder {
 public:
  PolylineMeshBuilder(Context& ctx, const Record& polyline);
  void AddVertex(const Record& vertex);
  /// The mesh's visible edges.
  MeshEdges Finish();

 private:
  struct Face {
    std::int32_t index[4] = {0, 0, 0, 0};  ///< 1-based; negative: the edge from it is invisible
  };
  Context& ctx_;
  bool polyface_ = false;
  bool closedM_ = false;
  bool closedN_ = false;
  int m_ = 0, n_ = 0;                ///< vertex counts of a polygon mesh
  int densityM_ = 0, densityN_ = 0;  ///< of its smoothed surface
  MeshEdges mesh_;
  std::vector<Face> faces_;
};

/// MESH (the subdivision mesh at level 0): the edges of its faces.
MeshEdges DecodeSubDMesh(Context& ctx, std::span<const DataTag* const> own);

}  // namespace sheafwork::embedded
