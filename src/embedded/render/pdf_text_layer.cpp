#include "embedded/render/pdf_text_layer.h"

#include <cmath>
#include <vector>

#include "embedded/pdf/helvetica_widths.h"
#include "embedded/pdf/pdf_strings.h"
#include "embedded/render/text_layout.h"
#include "embedded/render/truetype_text.h"
#include "text/windows1252.h"

namespace sheafwork::embedded {

namespace {

// Helvetica's cap height, in ems: the invisible letters stand as tall as
// the drawn ones.
constexpr double kHelveticaCapHeight = 0.718;

}  // namespace

void WriteTextLayer(pdf::ContentStream& out, std::string_view font, const TextRun& run,
                    double unitsPerMm, const Box2& visible) {
  const RunLines laid = LayOutRunLines(run);
  const RunPlacement& p = laid.placement;
  const double shear = laid.shear;
  const Affine2 toUnits = Affine2::Scaling(unitsPerMm, unitsPerMm) * run.toSheet;
  // Run units per Helvetica em, upwards.
  const double em = p.yScale * laid.metrics.capHeight / kHelveticaCapHeight;

  bool begun = false;
  for (std::size_t i = 0; i < laid.placements.size(); ++i) {
    const std::string_view line = laid.lines[i];
    if (line.find_first_not_of(" \t") == std::string_view::npos) continue;
    const std::string bytes = Utf8ToWindows1252(line).bytes;
    const double helvetica = pdf::HelveticaWidth(bytes);
    const double drawn = laid.widths[i] * p.xScale;
    if (!(em > 0) || !(helvetica > 0) || !(drawn > 0)) continue;
    // Text space (Helvetica of size 1, y up) onto the run's line, then the
    // page: stretched to the drawn width, slanted like the drawn glyphs.
    const Affine2 onLine{drawn / helvetica,          0, shear * em, em, laid.placements[i].x,
                         laid.placements[i].baseline};
    // The line's box on the sheet: from below the baseline to above the
    // capitals, its drawn width long.
    const Box2 box = MappedBox(run.toSheet * onLine, Box2::Of({0, -0.3}, {helvetica, 1}));
    if (!box.Intersects(visible)) continue;
    const Affine2 m = toUnits * onLine;
    if (!std::isfinite(m.a + m.b + m.c + m.d + m.e + m.f)) continue;
    if (!begun) {
      out.Op("BT");
      out.Token(font).Int(1).Op("Tf");
      out.Int(3).Op("Tr");
      begun = true;
    }
    out.Real(m.a, 5).Real(m.b, 5).Real(m.c, 5).Real(m.d, 5).Real(m.e, 2).Real(m.f, 2).Op("Tm");
    out.Token(pdf::LiteralString(bytes)).Op("Tj");
  }
  if (begun) out.Op("ET");
}

}  // namespace sheafwork::embedded
