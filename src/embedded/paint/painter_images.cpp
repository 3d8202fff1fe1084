// Raster images on a QPainter: PNG, BMP and TIFF through the plot engine's
// decoders, JPEG through Qt's; each file turned into a QImage once per
// backend.

#include <QImage>
#include <QPainter>
#include <QRectF>

#include "embedded/paint/painter_backend.h"
#include "embedded/render/raster_cache.h"

namespace sheafwork::embedded {

namespace {

QImage ToQImage(const RasterFile& file) {
  if (file.encoding == RasterFile::Encoding::Jpeg) {
    return QImage::fromData(reinterpret_cast<const uchar*>(file.bytes.data()),
                            static_cast<int>(file.bytes.size()), "JPG");
  }
  // A deep copy: the QImage outlives no buffer of ours.
  return QImage(reinterpret_cast<const uchar*>(file.bytes.data()), file.width, file.height,
                static_cast<qsizetype>(file.width) * 3, QImage::Format_RGB888)
      .copy();
}

}  // namespace

bool PainterBackend::DrawImage(const ImageRun& image) {
  const std::string path(image.path);
  auto it = images_.find(path);
  if (it == images_.end()) {
    const std::shared_ptr<const RasterFile> file = LoadRasterImage(path);
    it = images_.emplace(path, file ? ToQImage(*file) : QImage()).first;
  }
  const QImage& pixels = it->second;
  if (pixels.isNull()) return false;
  Flush();
  const Affine2& m = image.toSheet;
  // The image's rows run down from y = 1 of the unit square.
  const QTransform flip(1, 0, 0, -1, 0, 1);
  painter_.save();
  painter_.setRenderHint(QPainter::SmoothPixmapTransform);
  painter_.setWorldTransform(flip * QTransform(m.a, m.b, m.c, m.d, m.e, m.f) * base_);
  painter_.drawImage(QRectF(0, 0, 1, 1), pixels);
  painter_.restore();
  return true;
}

}  // namespace sheafwork::embedded
