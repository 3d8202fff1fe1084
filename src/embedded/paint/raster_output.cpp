// The PNG plot: the whole sheet painted on one image at the device's
// resolution, white underneath.

#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QString>
#include <cmath>

#include "embedded/paint/paint_sheet.h"
#include "embedded/paint/painted_files.h"
#include "embedded/render/messages.h"
#include "embedded/paint/qt_application.h"

namespace sheafwork::embedded {

namespace {

// Opaque 32-bit pixels: QPainter's own format, several times faster to
// paint with antialiasing than packed 24-bit RGB for a quarter more memory;
// the PNG is written without alpha either way. An A0 sheet at 300 dpi
// (140 Mpx) takes 560 MB; beyond this the plot is refused rather than left
// to exhaust the machine.
constexpr QImage::Format kFormat = QImage::Format_RGB32;
constexpr long long kBytesPerPixel = 4;
constexpr long long kMaxImageBytes = 2LL << 30;
constexpr int kDefaultDpi = 200;

}  // namespace

PixelSize PngPixelSize(const SheetFrame& frame, int dpi) {
  const auto pixels = [dpi](double mm) { return std::max(1LL, std::llround(mm * dpi / 25.4)); };
  return {pixels(frame.width), pixels(frame.height)};
}

void WritePng(const PlotJob& job, const SheetLayout& sheet) {
  EnsureGuiApplication();
  const int dpi = job.resolutionDpi > 0 ? job.resolutionDpi : kDefaultDpi;
  const PixelSize size = PngPixelSize(sheet.frame, dpi);
  if (size.width > kMaxImageBytes / kBytesPerPixel / size.height) {
    throw PlotError(render_messages::ImageTooLarge(size.width, size.height, dpi));
  }
  const QString path = QString::fromStdString(job.outputPath);
  QFile file(path);
  if (path.isEmpty() || !file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
    throw PlotError(render_messages::FileCannotCreate("PNG", job.outputPath));
  }
  const auto fail = [&](const std::string& message) {
    file.remove();
    throw PlotError(message);
  };

  QImage image(static_cast<int>(size.width), static_cast<int>(size.height), kFormat);
  if (image.isNull()) fail(render_messages::ImageNoMemory(size.width, size.height));
  image.fill(Qt::white);
  const int dotsPerMetre = static_cast<int>(std::lround(dpi / 0.0254));
  image.setDotsPerMeterX(dotsPerMetre);
  image.setDotsPerMeterY(dotsPerMetre);
  image.setText(QStringLiteral("Title"), QString::fromStdString(job.title));
  image.setText(QStringLiteral("Software"), QStringLiteral("Sheafwork"));
  {
    QPainter painter;
    if (!painter.begin(&image)) fail(render_messages::ImageNoMemory(size.width, size.height));
    PaintOptions options;
    options.pixelsPerMm = dpi / 25.4;
    try {
      PaintSheet(painter, job, sheet, options);
    } catch (...) {
      file.remove();
      throw;
    }
    painter.end();
  }
  QImageWriter writer(&file, "png");
  if (!writer.write(image) || !file.flush()) {
    fail(render_messages::FileCannotWrite("PNG", job.outputPath));
  }
}

}  // namespace sheafwork::embedded
