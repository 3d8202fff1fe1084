#pragma once
// Layouts for drawings of releases that store none.

#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// When `drawing` has no layouts: adds the model layout and, when the paper
/// space holds entities, one paper-space layout, both with default plot
/// settings taken from the header's limits. Does nothing otherwise.
void SynthesiseLayouts(Drawing& drawing);

}  // namespace sheafwork::embedded
