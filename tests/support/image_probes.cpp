#include "support/image_probes.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "embedded/paint/paint_sheet.h"
#include "embedded/render/paint_sheet.h"

namespace sheafwork::embedded::testing {

QImage RenderSheet(const Drawing& drawing, const Layout& layout, const PlotSettings& settings,
                   double pixelsPerMm) {
  PlotJob job;
  job.drawing = &drawing;
  job.layout = &layout;
  job.settings = settings;
  const SheetLayout sheet = PlanSheet(job);
  QImage image(static_cast<int>(std::lround(sheet.frame.width * pixelsPerMm)),
               static_cast<int>(std::lround(sheet.frame.height * pixelsPerMm)),
               QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  PaintOptions options;
  options.pixelsPerMm = pixelsPerMm;
  PaintSheet(painter, job, sheet, options);
  painter.end();
  return image;
}

bool InkNear(const QImage& image, double k, Vec2 at, double radiusMm) {
  const int cx = static_cast<int>(std::floor(at.x * k));
  const int cy = static_cast<int>(std::floor(image.height() - at.y * k));
  const int r = std::max(0, static_cast<int>(std::ceil(radiusMm * k)));
  for (int y = cy - r; y <= cy + r; ++y) {
    for (int x = cx - r; x <= cx + r; ++x) {
      if (x < 0 || y < 0 || x >= image.width() || y >= image.height()) continue;
      if (qGray(image.pixel(x, y)) < 200) return true;
    }
  }
  return false;
}

std::uint32_t ColorAt(const QImage& image, double k, Vec2 at) {
  const int x = static_cast<int>(std::floor(at.x * k));
  const int y = static_cast<int>(std::floor(image.height() - at.y * k));
  return image.pixel(x, y) & 0xFFFFFFu;
}

double DarkCovered(const QImage& a, const QImage& b) {
  const auto dark = [](const QImage& image, int x, int y) {
    return x >= 0 && y >= 0 && x < image.width() && y < image.height() &&
           qGray(image.pixel(x, y)) < 160;
  };
  long long total = 0, covered = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) {
      if (!dark(a, x, y)) continue;
      ++total;
      bool near = false;
      for (int dy = -1; dy <= 1 && !near; ++dy) {
        for (int dx = -1; dx <= 1 && !near; ++dx) near = dark(b, x + dx, y + dy);
      }
      covered += near ? 1 : 0;
    }
  }
  return total == 0 ? 0 : static_cast<double>(covered) / static_cast<double>(total);
}

}  // namespace sheafwork::embedded::testing
