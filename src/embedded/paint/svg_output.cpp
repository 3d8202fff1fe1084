// The SVG plot: the sheet's real size in millimetres, drawn in millimetres.

#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QSvgGenerator>
#include <cmath>
#include <exception>

#include "embedded/paint/paint_sheet.h"
#include "embedded/paint/painted_files.h"
#include "embedded/render/messages.h"
#include "embedded/paint/qt_application.h"

namespace sheafwork::embedded {

namespace {

// The generator writes width = size / resolution inches: at 2540 dots per
// inch a hundredth of a millimetre per dot, so the size keeps two decimals
// of the millimetres.
constexpr int kDotsPerInch = 2540;
constexpr double kDotsPerMm = kDotsPerInch / 25.4;

}  // namespace

void WriteSvg(const PlotJob& job, const SheetLayout& sheet) {
  EnsureGuiApplication();
  const QString path = QString::fromStdString(job.outputPath);
  const SheetFrame& frame = sheet.frame;
  std::exception_ptr failure;
  bool ended = false;
  {
    QSvgGenerator generator;
    generator.setFileName(path);
    generator.setSize(QSize(static_cast<int>(std::lround(frame.width * kDotsPerMm)),
                            static_cast<int>(std::lround(frame.height * kDotsPerMm))));
    generator.setResolution(kDotsPerInch);
    // Painter units are the view box's: millimetres.
    generator.setViewBox(QRectF(0, 0, frame.width, frame.height));
    generator.setTitle(QString::fromStdString(job.title));
    generator.setDescription(QStringLiteral("Sheafwork"));
    QPainter painter;
    if (path.isEmpty() || !painter.begin(&generator)) {
      throw PlotError(render_messages::FileCannotCreate("SVG", job.outputPath));
    }
    PaintOptions options;
    options.pixelsPerMm = 1;
    options.dotsPerMm = (job.resolutionDpi > 0 ? job.resolutionDpi : 1200) / 25.4;
    try {
      PaintSheet(painter, job, sheet, options);
    } catch (...) {
      failure = std::current_exception();
    }
    ended = painter.end();
  }  // the generator closes the file here
  if (failure) {
    QFile::remove(path);
    std::rethrow_exception(failure);
  }
  if (!ended) throw PlotError(render_messages::FileCannotWrite("SVG", job.outputPath));
  const QFileInfo written(path);
  if (!written.exists() || written.size() == 0) {
    throw PlotError(render_messages::FileCannotWrite("SVG", job.outputPath));
  }
}

}  // namespace sheafwork::embedded
