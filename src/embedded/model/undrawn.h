#pragma once
// What a plot leaves out: the entities of kinds the host cannot draw
// (Undrawn), counted by kind among those a plot would otherwise show.

#include <map>
#include <string>

#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// Kind → count of the undrawn entities a plot of `layout` meets: in its
/// block, the blocks it references, and for a paper layout with viewports
/// the model space. Invisible entities and those on layers that are off or
/// frozen do not count; each block counts once however often it is placed.
/// Empty when the reader skipped nothing (Drawing::skippedEntities).
std::map<std::string, int> UndrawnEntities(const Drawing& drawing, const Layout& layout);

/// The same for every layout of the drawing together.
std::map<std::string, int> UndrawnEntities(const Drawing& drawing);

/// "REGION (2), MLINE (1)": the kinds in name order with their counts.
std::string FormatUndrawn(const std::map<std::string, int>& counts);

}  // namespace sheafwork::embedded
