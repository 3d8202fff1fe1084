#pragma once
// What a plot style table and the device make of an entity's look: the
// colour number it plots under, its pen through the table, and the
// thinnest line the device shows.

#include <cstdint>

#include "embedded/model/drawing.h"
#include "embedded/plotstyle/plot_style_table.h"

namespace sheafwork::embedded {

/// A layer's colour number, 1 to 255 (7 when it has none that is valid).
int LayerAci(const Layer* layer);

/// The colour number an entity plots under: its own, its layer's
/// (`layerAci`) or its block reference's (`blockAci`, 7 outside any block).
/// A true-colour entity keeps the number stored beside its colour.
int EntityAci(const EntityProps& props, int layerAci, int blockAci);

/// The entity's colour and lineweight through `table` (null: as they are).
PlotStylePen PlottedPen(const PlotStyleTable* table, int aci, std::uint32_t rgb,
                        double lineweightMm);

/// The thinnest line a device of `dotsPerMm` shows: one dot; the usual
/// thin line when the resolution is unknown.
double ThinnestVisibleLineMm(double dotsPerMm);

}  // namespace sheafwork::embedded
