#pragma once
// The plot files other than PDF: a PNG raster, an SVG drawing and an
// HP-GL/2 plot of the job's sheet, written to `job.outputPath`.

#include "embedded/render/page_geometry.h"
#include "embedded/render/plot_job.h"

namespace sheafwork::embedded {

/// The PNG image's size in pixels: the sheet at `dpi`, at least 1 × 1.
struct PixelSize {
  long long width = 0;
  long long height = 0;
};
PixelSize PngPixelSize(const SheetFrame& frame, int dpi);

/// Each throws PlotError; a file left half-written is removed.
void WritePng(const PlotJob& job, const SheetLayout& sheet);
void WriteSvg(const PlotJob& job, const SheetLayout& sheet);
void WriteHpgl(const PlotJob& job, const SheetLayout& sheet);

}  // namespace sheafwork::embedded
