#pragma once
// What part of a layout a plot shows, in the layout's drawing units.

#include "embedded/model/drawing.h"
#include "embedded/render/box.h"
#include "embedded/render/page_geometry.h"
#include "embedded/render/plot_job.h"

namespace sheafwork::embedded {

/// The box around the visible geometry of `layout` (blocks expanded; for a
/// paper layout its own entities and viewport frames); empty when nothing
/// is visible. The walk is bounded by `work` when given (throws PlotError).
Box2 ComputeLayoutExtents(const Drawing& drawing, const Layout& layout,
                          const PlotSettings& settings, const SheetWork* work = nullptr);

/// The region that `settings.plotType` selects:
/// display   model: the saved view, else the extents; paper: the sheet;
/// extents   the visible geometry, else the limits;
/// limits    model: the drawing's limits; paper: the layout's;
/// view      the named view, else the extents;
/// window    the settings' window;
/// layout    paper: the sheet, paper origin at the plot origin; model: limits.
PlotRegion ComputePlotRegion(const Drawing& drawing, const Layout& layout,
                             const PlotSettings& settings, const SheetWork* work = nullptr);

}  // namespace sheafwork::embedded
