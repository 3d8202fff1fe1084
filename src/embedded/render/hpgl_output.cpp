// The HP-GL/2 plot: the frontend draws into an HpglBackend, whose text goes
// to the file in one write.

#include <QFile>
#include <QString>

#include "embedded/render/file_outputs.h"
#include "embedded/render/frontend.h"
#include "embedded/render/hpgl_backend.h"
#include "embedded/render/messages.h"
#include "embedded/render/paint_sheet.h"

namespace sheafwork::embedded {

void WriteHpgl(const PlotJob& job, const SheetLayout& sheet) {
  const QString path = QString::fromStdString(job.outputPath);
  QFile file(path);
  if (path.isEmpty() || !file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
    throw PlotError(render_messages::FileCannotCreate("HP-GL/2", job.outputPath));
  }
  HpglBackend backend(sheet.frame.width, sheet.frame.height, job.title);
  try {
    const Box2 whole = Box2::Of({0, 0}, {sheet.frame.width, sheet.frame.height});
    DrawSheet(backend, job, sheet, whole, HpglBackend::kUnitsPerMm);
  } catch (...) {
    file.remove();
    throw;
  }
  const std::string text = backend.Finish();
  if (file.write(text.data(), static_cast<qint64>(text.size())) !=
          static_cast<qint64>(text.size()) ||
      !file.flush()) {
    file.remove();
    throw PlotError(render_messages::FileCannotWrite("HP-GL/2", job.outputPath));
  }
}

}  // namespace sheafwork::embedded
