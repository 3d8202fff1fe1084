#include "embedded/render/text_layout.h"

#include <algorithm>

namespace sheafwork::embedded {

RunPlacement PlaceRun(const TextRun& run, const FontMetrics& m, std::span<const double> widths,
                      std::span<LinePlacement> out) {
  RunPlacement p;
  const double cap = m.capHeight > 0 ? m.capHeight : 1.0;
  p.yScale = run.height / cap;
  p.xScale = p.yScale * run.widthFactor;
  const std::size_t lines = std::min(widths.size(), out.size());
  if (lines == 0) return p;

  if (run.attachment == 0) {  // single-line text
    const double w = widths[0];
    int h = run.horizontalAlign;
    int v = run.verticalAlign;
    if ((h == 3 || h == 5) && run.fitLength > 0 && w > 0) {
      p.xScale = run.fitLength / w;
      if (h == 3) p.yScale = p.xScale / run.widthFactor;  // aligned keeps the proportions
      h = 0;
      v = 0;
    }
    double x = 0, y = 0;
    if (h == 1 || h == 4) x = -w / 2 * p.xScale;
    if (h == 2) x = -w * p.xScale;
    if (h == 4) v = 2;
    switch (v) {
      case 1:
        y = m.descent * p.yScale;
        break;
      case 2:
        y = -cap / 2 * p.yScale;
        break;
      case 3:
        y = -cap * p.yScale;
        break;
      default:
        break;
    }
    out[0] = {x, y};
    return p;
  }

  const int column = (run.attachment - 1) % 3;  // 0 left, 1 center, 2 right
  const int row = (run.attachment - 1) / 3;     // 0 top, 1 middle, 2 bottom
  const double pitch = run.height * 5.0 / 3.0 * run.lineSpacing;
  const double n = static_cast<double>(lines);
  double first = 0;  // baseline of the first line
  switch (row) {
    case 0:
      first = -run.height;
      break;
    case 1:
      first = ((n - 1) * pitch + run.height) / 2 - run.height;
      break;
    default:
      first = (n - 1) * pitch;
      break;
  }
  for (std::size_t i = 0; i < lines; ++i) {
    const double w = widths[i] * p.xScale;
    const double x = column == 0 ? 0 : (column == 1 ? -w / 2 : -w);
    out[i] = {x, first - static_cast<double>(i) * pitch};
  }
  return p;
}

}  // namespace sheafwork::embedded
