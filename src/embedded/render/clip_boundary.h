#pragma once
// The outline of a paper-space entity that clips a viewport instead of its
// rectangle.

#include <string_view>
#include <vector>

#include "embedded/model/drawing.h"
#include "embedded/render/curves.h"

namespace sheafwork::embedded {

/// The entity of `block` whose handle is `handle` (case ignored), null when
/// none.
const Entity* FindByHandle(const Block& block, std::string_view handle);

/// Appends to `out` the outline of `e` in paper units, flattened with
/// `flattening` where `outputScale` output units make one paper unit:
/// polylines (bulges followed, closed whether flagged or not), circles,
/// ellipses and splines. False, with `out` as it was, for other kinds or
/// when fewer than three points result.
bool AppendBoundaryOutline(const Entity& e, const Flattening& flattening, double outputScale,
                           std::vector<Vec2>& out);

}  // namespace sheafwork::embedded
