#pragma once
// PDF plot files, written by our own PDF writer: a sheet as a page, and the
// single-sheet PDF file.

#include "embedded/pdf/document.h"
#include "embedded/render/frontend.h"
#include "embedded/render/page_geometry.h"
#include "embedded/render/plot_job.h"

namespace sheafwork::embedded {

/// The grid of a PDF's coordinates when the job names no resolution, and of
/// every page of a combined PDF; its dot is also the thinnest line.
inline constexpr int kPdfDpi = 1200;

/// The sheet's size in points: the page's MediaBox (a landscape sheet is a
/// wide page).
struct PagePoints {
  double width = 0;
  double height = 0;
};
PagePoints SheetPagePoints(const SheetFrame& frame);

/// Draws the job's sheet as the next page of `document`, the page the size
/// of the sheet. `dpi` sets the thinnest line (one dot). Throws PlotError
/// (InvalidPaper) for a sheet no page can have; a page once begun is ended
/// also when drawing throws.
FrontendStats AddSheetPage(pdf::Document& document, const PlotJob& job, const SheetLayout& sheet,
                           int dpi);

/// Writes the job's sheet as a one-page PDF file at `job.outputPath`,
/// titled `job.title`, at `job.resolutionDpi` (1200 when 0). The file is
/// written beside it and renamed into place once complete. Throws PlotError.
void WritePdf(const PlotJob& job, const SheetLayout& sheet);

/// PlotError for a document's FileError, naming `path` (the document's);
/// a file read to import pages from is named by the error itself.
[[noreturn]] void ThrowPdfFileError(const pdf::FileError& error, const std::string& path);

}  // namespace sheafwork::embedded
