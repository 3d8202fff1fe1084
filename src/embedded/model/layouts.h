#pragma once
// Layouts for drawings of releases that store none (release 14 and older).
//
// The model layout is "Model" on "*Model_Space": the model limits and
// insertion base from the header, plotting the extents scaled to fit on an
// A3 landscape sheet (420 x 297 mm, no media name: the sheet is given by its
// size).
//
// The paper layout, made only when "*Paper_Space" holds entities, is
// "Présentation1" on "*Paper_Space" with the limits $PLIMMIN/$PLIMMAX. When
// the limits span a plausible sheet (50 mm to 10 m a side, in inches when
// $MEASUREMENT is imperial) that sheet is plotted as a layout at 1:1, the
// plot origin placed so that the lower-left limit lands on the sheet's
// corner; otherwise it plots its extents fitted on A3 landscape like the
// model.
//
// The active layout is the model when $TILEMODE is 1, else the paper layout.

#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// When `drawing` has no layouts: adds the model layout and, when the paper
/// space holds entities, one paper-space layout, both with default plot
/// settings taken from the header's limits. Does nothing otherwise.
void SynthesiseLayouts(Drawing& drawing);

}  // namespace sheafwork::embedded
