#pragma once
// Painting one plot job's sheet with a QPainter: the PNG, SVG and printer
// outputs, and the tests' pictures.

#include "embedded/render/frontend.h"
#include "embedded/render/page_geometry.h"
#include "embedded/render/plot_job.h"

class QPainter;

namespace sheafwork::embedded {

struct PaintOptions {
  double pixelsPerMm = 10;  ///< the painter's device units per sheet millimetre
  /// The output's dots per millimetre, which set its thinnest line; 0: the
  /// painter's units are the dots.
  double dotsPerMm = 0;
  bool clipToPrintable = false;  ///< printers: nothing outside the printable area
};

/// Paints the job's sheet on `painter`, whose device origin is the sheet's
/// top-left corner; the background is left as it is. Creates the Qt
/// application when there is none. Returns what was left out.
FrontendStats PaintSheet(QPainter& painter, const PlotJob& job, const SheetLayout& sheet,
                         const PaintOptions& options);

/// PlanSheet, then PaintSheet without clipping.
FrontendStats PaintSheet(QPainter& painter, const PlotJob& job, double pixelsPerMm);

}  // namespace sheafwork::embedded
