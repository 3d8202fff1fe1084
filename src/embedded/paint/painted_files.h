#pragma once
// The outputs painted with a QPainter: a PNG raster and an SVG drawing of
// the job's sheet, written to `job.outputPath`, and the sheet on a system
// printer.

#include "embedded/render/page_geometry.h"
#include "embedded/render/painted_outputs.h"
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
/// Prints on `job.printerName`. Throws PlotError.
void Print(const PlotJob& job, const SheetLayout& sheet);

/// The three above as the plot engine's painted outputs, which turn their
/// exceptions into messages.
PaintedOutputs PaintOutputs();

}  // namespace sheafwork::embedded
