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

/// What ReadEntities returns when it stopped before a 0/SECTION tag: the
/// run's section lost its end in a damaged file, and the next one starts.
inline constexpr std::string_view kNextSection = "SECTION";

/// Reads entity records up to the first record whose type is one of
/// `stops`, which is consumed and returned; stops before a 0/SECTION tag,
/// which is left unread (kNextSection); returns "" at the end of the input.
std::string_view ReadEntities(Context& ctx, std::initializer_list<std::string_view> stops,
                              const EntitySink& sink);

}  // namespace sheafwork::embedded
