// The printer output: the sheet painted on a system printer through
// QPrinter, on a page of the sheet's own size.

#include <QMarginsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QString>
#include <algorithm>

#include "embedded/paint/paint_sheet.h"
#include "embedded/paint/painted_files.h"
#include "embedded/render/messages.h"
#include "embedded/paint/qt_application.h"

namespace sheafwork::embedded {

namespace {

// The sheet as a printer's page: its size given portrait and turned when
// wider than tall, no margins, snapped to a standard size the printer knows
// when one is close.
QPageLayout PrinterPageLayout(const SheetFrame& frame) {
  const double shortSide = std::min(frame.width, frame.height);
  const double longSide = std::max(frame.width, frame.height);
  const QPageSize size(QSizeF(shortSide, longSide), QPageSize::Millimeter, QString(),
                       QPageSize::FuzzyMatch);
  return QPageLayout(size,
                     frame.width > frame.height ? QPageLayout::Landscape : QPageLayout::Portrait,
                     QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter);
}

}  // namespace

void Print(const PlotJob& job, const SheetLayout& sheet) {
  EnsureGuiApplication();
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
  if (!printer.setPageLayout(PrinterPageLayout(sheet.frame))) {
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

}  // namespace sheafwork::embedded
