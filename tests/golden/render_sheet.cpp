#include "golden/render_sheet.h"

#include <QPainter>
#include <cmath>

#include "embedded/paint/paint_sheet.h"
#include "embedded/render/paint_sheet.h"

namespace sheafwork::golden {

QImage RenderSheet(const embedded::Drawing& drawing, const embedded::Layout& layout) {
  embedded::PlotJob job;
  job.drawing = &drawing;
  job.layout = &layout;
  job.settings = layout.settings;
  const embedded::SheetLayout sheet = embedded::PlanSheet(job);
  QImage image(static_cast<int>(std::lround(sheet.frame.width * kPixelsPerMm)),
               static_cast<int>(std::lround(sheet.frame.height * kPixelsPerMm)),
               QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  embedded::PaintOptions options;
  options.pixelsPerMm = kPixelsPerMm;
  embedded::PaintSheet(painter, job, sheet, options);
  painter.end();
  return image;
}

}  // namespace sheafwork::golden
