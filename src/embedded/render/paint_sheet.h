#pragma once
// Drawing one plot job's sheet into any backend (the QPainter one is in
// embedded/paint).

#include "embedded/render/frontend.h"
#include "embedded/render/page_geometry.h"
#include "embedded/render/plot_job.h"

namespace sheafwork::embedded {

/// Where the job's plot goes on its sheet. Throws PlotError when the job
/// has no drawing or layout or its paper is not a real size.
SheetLayout PlanSheet(const PlotJob& job);

/// How the frontend draws the job's sheet for any backend: lineweights,
/// flattening and viewport order from the settings, primitives outside
/// `cull` (sheet mm) dropped, the thinnest line one dot of a device with
/// `dotsPerMm`.
FrontendOptions SheetFrontendOptions(const PlotJob& job, const SheetLayout& sheet, Box2 cull,
                                     double dotsPerMm);

/// Draws the job's sheet into `backend` with SheetFrontendOptions; TrueType
/// text is measured with the Qt fonts, the Qt application created for the
/// first one. Returns what was left out.
FrontendStats DrawSheet(Backend& backend, const PlotJob& job, const SheetLayout& sheet, Box2 cull,
                        double dotsPerMm);

}  // namespace sheafwork::embedded
