#pragma once
// The plot files other than PDF that need no Qt: an HP-GL/2 plot of the
// job's sheet, written to `job.outputPath`. The painted ones (PNG, SVG) are
// in embedded/paint.

#include "embedded/render/page_geometry.h"
#include "embedded/render/plot_job.h"

namespace sheafwork::embedded {

/// Throws PlotError; a file left half-written is removed.
void WriteHpgl(const PlotJob& job, const SheetLayout& sheet);

}  // namespace sheafwork::embedded
