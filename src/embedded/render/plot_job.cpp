#include "embedded/render/plot_job.h"

#include <QFileInfo>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QString>
#include <algorithm>

#include "embedded/render/file_outputs.h"
#include "embedded/render/messages.h"
#include "embedded/render/paint_sheet.h"
#include "embedded/render/qt_application.h"

namespace sheafwork::embedded {

namespace {

void WritePdf(const PlotJob& job, const SheetLayout& sheet) {
  const QString path = QString::fromStdString(job.outputPath);
  const int dpi = job.resolutionDpi > 0 ? job.resolutionDpi : 1200;
  {
    QPdfWriter writer(path);
    writer.setResolution(dpi);
    writer.setTitle(QString::fromStdString(job.title));
    writer.setCreator(QStringLiteral("Sheafwork"));
    if (!writer.setPageLayout(SheetPageLayout(sheet.frame, QPageSize::ExactMatch))) {
      throw PlotError(render_messages::InvalidPaper(sheet.frame.width, sheet.frame.height));
    }
    QPainter painter;
    if (path.isEmpty() || !painter.begin(&writer)) {
      throw PlotError(render_messages::FileCannotCreate("PDF", job.outputPath));
    }
    PaintOptions options;
    options.pixelsPerMm = dpi / 25.4;
    PaintSheet(painter, job, sheet, options);
    if (!painter.end()) throw PlotError(render_messages::FileCannotWrite("PDF", job.outputPath));
  }  // the writer closes the file here
  const QFileInfo written(path);
  if (!written.exists() || written.size() == 0) {
    throw PlotError(render_messages::FileCannotWrite("PDF", job.outputPath));
  }
}

void Print(const PlotJob& job, const SheetLayout& sheet) {
  const QString name = QString::fromStdString(job.printerName);
  // Qt ignores an unknown printer name and would write a PDF instead.
  if (name.isEmpty() || !QPrinterInfo::availablePrinterNames().contains(name)) {
    throw PlotError(render_messages::PrinterNotFound(job.printerName));
  }
  QPrinter printer(QPrinter::HighResolution);
  printer.setPrinterName(name);
  if (printer.printerName() != name)
    throw PlotError(render_messages::PrinterNotFound(job.printerName));
  printer.setDocName(QString::fromStdString(job.title));
  printer.setCreator(QStringLiteral("Sheafwork"));
  printer.setFullPage(true);
  printer.setCopyCount(std::max(job.copies, 1));
  if (!printer.setPageLayout(SheetPageLayout(sheet.frame, QPageSize::FuzzyMatch))) {
    throw PlotError(render_messages::PrinterRefusesPaper(job.printerName, sheet.frame.width,
                                                         sheet.frame.height));
  }
  QPainter painter;
  if (!painter.begin(&printer))
    throw PlotError(render_messages::PrinterCannotStart(job.printerName));
  PaintOptions options;
  options.pixelsPerMm = printer.resolution() / 25.4;
  options.clipToPrintable = true;
  PaintSheet(painter, job, sheet, options);
  if (!painter.end()) throw PlotError(render_messages::PrinterCannotFinish(job.printerName));
}

}  // namespace

void RunPlotJob(const PlotJob& job) {
  const SheetLayout sheet = PlanSheet(job);
  EnsureGuiApplication();
  switch (job.output) {
    case OutputKind::Pdf:
      WritePdf(job, sheet);
      return;
    case OutputKind::Printer:
      Print(job, sheet);
      return;
    case OutputKind::Png:
      WritePng(job, sheet);
      return;
    case OutputKind::Svg:
      WriteSvg(job, sheet);
      return;
    case OutputKind::Hpgl:
      WriteHpgl(job, sheet);
      return;
  }
}

}  // namespace sheafwork::embedded
