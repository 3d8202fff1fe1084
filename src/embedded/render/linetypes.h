#pragma once
// Which dash pattern an entity is drawn with, followed from the entity, its
// layer and the block reference it sits in like its colour. Complex
// linetypes keep their dashes and gaps; their shapes and texts are not drawn.

#include <string_view>

#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// The linetype `name` of `drawing` when it has a pattern worth dashing
/// (a gap and a length); null for Continuous, unknown names and the rest.
const Linetype* PatternNamed(const Drawing& drawing, std::string_view name);

/// The pattern of an entity whose linetype is stored as `name`: empty or
/// BYLAYER takes `layerPattern`, BYBLOCK `blockPattern` (null outside any
/// block reference), any other name its own. Null is a continuous line.
const Linetype* EntityPattern(const Drawing& drawing, std::string_view name,
                              const Linetype* layerPattern, const Linetype* blockPattern);

}  // namespace sheafwork::embedded
