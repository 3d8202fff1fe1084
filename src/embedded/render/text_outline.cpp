// The default of Backend::DrawText: the run's glyphs as filled outlines,
// for backends that draw no text of their own (plotters).

#include <QFontMetricsF>
#include <QList>
#include <QPainterPath>
#include <QPolygonF>
#include <QString>
#include <QStringList>
#include <cmath>
#include <vector>

#include "embedded/render/backend.h"
#include "embedded/render/qt_application.h"
#include "embedded/render/qt_text_fonts.h"
#include "embedded/render/text_layout.h"

namespace sheafwork::embedded {

void Backend::DrawText(const TextRun& run, const Style& style) {
  EnsureGuiApplication();  // the fonts need one
  const QtRunLines laid = LayOutRunLines(run);
  const RunPlacement& p = laid.placement;
  const double shear = laid.shear;

  std::vector<Vec2> points;
  std::vector<int> sizes;
  for (std::size_t i = 0; i < laid.placements.size(); ++i) {
    const QString& line = laid.lines[static_cast<qsizetype>(i)];
    if (line.trimmed().isEmpty()) continue;
    QPainterPath path;
    path.addText(0, 0, laid.font.font, line);
    // Flattened in glyph units (y down), then into the run's space and
    // onto the sheet.
    const QList<QPolygonF> loops = path.toSubpathPolygons();
    for (const QPolygonF& loop : loops) {
      qsizetype n = loop.size();
      if (n > 1 && loop.front() == loop.back()) --n;  // closed by FillLoops
      if (n < 3) continue;
      for (qsizetype k = 0; k < n; ++k) {
        const double gx = loop[k].x(), gy = -loop[k].y();
        const Vec2 local{p.xScale * gx + shear * p.yScale * gy + laid.placements[i].x,
                         p.yScale * gy + laid.placements[i].baseline};
        points.push_back(run.toSheet.Apply(local));
      }
      sizes.push_back(static_cast<int>(n));
    }
  }
  if (!sizes.empty()) FillLoops(points, sizes, style);
}

}  // namespace sheafwork::embedded
