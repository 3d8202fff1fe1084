#pragma once
// Drawing one plot job's sheet into any backend, and painting it with a
// QPainter.

#include "embedded/render/frontend.h"
#include "embedded/render/page_geometry.h"
#include "embedded/render/plot_job.h"

class QPainter;

namespace sheafwork::embedded {

/// Where the job's plot goes on its sheet. Throws PlotError when the job
/// has no drawing or layout or its paper is not a real size.
SheetLayout PlanSheet(const PlotJob& job);

struct PaintOptions {
  double pixelsPerMm = 10;  ///< the painter's device units per sheet millimetre
  /// The output's dots per millimetre, which set its thinnest line; 0: the
  /// painter's units are the dots.
  double dotsPerMm = 0;
  bool clipToPrintable = false;  ///< printers: nothing outside the printable area
};

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

/// Paints the job's sheet on `painter`, whose device origin is the sheet's
/// top-left corner; the background is left as it is. Creates the Qt
/// application when there is none. Returns what was left out.
FrontendStats PaintSheet(QPainter& painter, const PlotJob& job, const SheetLayout& sheet,
                         const PaintOptions& options);

/// PlanSheet, then PaintSheet without clipping.
FrontendStats PaintSheet(QPainter& painter, const PlotJob& job, double pixelsPerMm);

}  // namespace sheafwork::embedded
