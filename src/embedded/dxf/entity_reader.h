#pragma once
// Reads a run of entity records (in the ENTITIES section or a block), keeping
// the VERTEX records with their POLYLINE and the ATTRIB records with their
// INSERT.

#include <functional>
#include <string_view>

#include "embedded/dxf/context.h"

namespace sheafwork::embedded {

/// Receives each entity read, with the owner handle and 67 flag the file
/// gave it.
using EntitySink = std::function<void(Entity&& entity, std::string_view owner, bool paperSpace)>;

/// Reads entity records up to the first record whose type is one of
/// `stops`, which is consumed and returned; returns "" at the end of the
/// input.
std::string_view ReadEntities(Context& ctx, std::initializer_list<std::string_view> stops,
                              const EntitySink& sink);

}  // namespace sheafwork::embedded
