#include "embedded/render/pdf_output.h"

#include <cmath>

#include "embedded/render/messages.h"
#include "embedded/render/paint_sheet.h"
#include "embedded/render/pdf_backend.h"

namespace sheafwork::embedded {

namespace {

constexpr double kPointsPerMm = 72 / 25.4;
bool Plausible(double points) { return std::isfinite(points) && points > 0; }

}  // namespace

PagePoints SheetPagePoints(const SheetFrame& frame) {
  return {frame.width * kPointsPerMm, frame.height * kPointsPerMm};
}

FrontendStats AddSheetPage(pdf::Document& document, const PlotJob& job, const SheetLayout& sheet,
                           int dpi) {
  const PagePoints page = SheetPagePoints(sheet.frame);
  if (!Plausible(page.width) || !Plausible(page.height)) {
    throw PlotError(render_messages::InvalidPaper(sheet.frame.width, sheet.frame.height));
  }
  struct PageScope {
    pdf::Document& document;
    ~PageScope() { document.EndPage(); }
  };
  pdf::ContentStream& content = document.BeginPage(page.width, page.height);
  const PageScope scope{document};
  PdfBackend backend(content, document.Fonts(), &document.Layers(), &document);
  const Box2 whole = Box2::Of({0, 0}, {sheet.frame.width, sheet.frame.height});
  return DrawSheet(backend, job, sheet, whole, (dpi > 0 ? dpi : kPdfDpi) / 25.4);
}

void ThrowPdfFileError(const pdf::FileError& error, const std::string& path) {
  switch (error.WhichStage()) {
    case pdf::FileError::Stage::Create:
      throw PlotError(render_messages::FileCannotCreate("PDF", path));
    case pdf::FileError::Stage::Write:
      throw PlotError(render_messages::FileCannotWrite("PDF", path));
    case pdf::FileError::Stage::Read:
      throw PlotError(render_messages::FileCannotRead("PDF", error.what(), error.Reason()));
    case pdf::FileError::Stage::Format:
      throw PlotError(render_messages::FileNotOurs("PDF", error.what()));
  }
  throw PlotError(render_messages::FileCannotWrite("PDF", path));
}

void WritePdf(const PlotJob& job, const SheetLayout& sheet) {
  try {
    pdf::DocumentInfo info;
    info.title = job.title;
    pdf::Document document(job.outputPath, info);
    AddSheetPage(document, job, sheet, job.resolutionDpi);
    document.Close();
  } catch (const pdf::FileError& error) {
    ThrowPdfFileError(error, job.outputPath);
  }
}

}  // namespace sheafwork::embedded
