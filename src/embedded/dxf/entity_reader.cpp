#include "embedded/dxf/entity_reader.h"

#include <algorithm>
#include <optional>
#include <variant>

#include "embedded/dxf/entity_decoders.h"
#include "embedded/dxf/mesh_decoder.h"

namespace sheafwork::embedded {

std::string_view ReadEntities(Context& ctx, std::initializer_list<std::string_view> stops,
                              const EntitySink& sink) {
  Record r;
  Record part;
  while (!ctx.stream.AtRecord("SECTION") && ReadRecord(ctx.stream, r)) {
    if (std::find(stops.begin(), stops.end(), r.type) != stops.end()) return r.type;
    if (r.type == "SEQEND") continue;
    if (r.type == "VERTEX" || r.type == "ATTRIB") {
      ctx.Skip(r.type);  // outside the entity it belongs to
      continue;
    }
    Entity entity;
    bool paperSpace = false;
    const Decoded decoded = DecodeEntity(ctx, r, entity, paperSpace);
    if (r.type == "POLYLINE") {
      auto* polyline = std::get_if<Polyline>(&entity.geometry);
      std::optional<PolylineMeshBuilder> mesh;
      if (std::holds_alternative<MeshEdges>(entity.geometry)) mesh.emplace(ctx, r);
      while (ctx.stream.AtRecord("VERTEX")) {
        ReadRecord(ctx.stream, part);
        if (polyline != nullptr) AddVertex(ctx, part, r, *polyline);
        if (mesh) mesh->AddVertex(part);
      }
      if (ctx.stream.AtRecord("SEQEND")) ReadRecord(ctx.stream, part);
      if (mesh) entity.geometry = mesh->Finish();
    } else if (r.type == "INSERT") {
      auto* insert = std::get_if<Insert>(&entity.geometry);
      bool any = false;
      while (ctx.stream.AtRecord("ATTRIB")) {
        ReadRecord(ctx.stream, part);
        if (insert != nullptr) insert->attributes.push_back(DecodeAttribute(ctx, part));
        any = true;
      }
      if (any && ctx.stream.AtRecord("SEQEND")) ReadRecord(ctx.stream, part);
    }
    if (decoded != Decoded::kEntity) continue;
    sink(std::move(entity), r.owner, paperSpace);
  }
  return ctx.stream.AtRecord("SECTION") ? kNextSection : std::string_view();
}

}  // namespace sheafwork::embedded
