#include "embedded/paint/paint_sheet.h"

#include <QPainter>
#include <QRectF>
#include <QTransform>

#include "embedded/paint/painter_backend.h"
#include "embedded/render/paint_sheet.h"
#include "embedded/paint/qt_application.h"

namespace sheafwork::embedded {

FrontendStats PaintSheet(QPainter& painter, const PlotJob& job, const SheetLayout& sheet,
                         const PaintOptions& options) {
  EnsureGuiApplication();
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, true);
  painter.setRenderHint(QPainter::TextAntialiasing, true);
  const double k = options.pixelsPerMm;
  painter.setWorldTransform(QTransform(k, 0, 0, -k, 0, sheet.frame.height * k), true);

  Box2 cull = Box2::Of({0, 0}, {sheet.frame.width, sheet.frame.height});
  if (options.clipToPrintable) {
    const Box2& p = sheet.frame.printable;
    painter.setClipRect(QRectF(p.min.x, p.min.y, p.Width(), p.Height()), Qt::IntersectClip);
    cull = p;
  }
  FrontendStats stats;
  {
    PainterBackend backend(painter);
    stats = DrawSheet(backend, job, sheet, cull,
                      options.dotsPerMm > 0 ? options.dotsPerMm : options.pixelsPerMm);
  }
  painter.restore();
  return stats;
}

FrontendStats PaintSheet(QPainter& painter, const PlotJob& job, double pixelsPerMm) {
  const SheetLayout sheet = PlanSheet(job);
  PaintOptions options;
  options.pixelsPerMm = pixelsPerMm;
  return PaintSheet(painter, job, sheet, options);
}

}  // namespace sheafwork::embedded
