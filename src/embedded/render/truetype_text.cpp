#include "embedded/render/truetype_text.h"

#include <algorithm>
#include <cmath>

#include "embedded/render/stroke_font.h"

namespace sheafwork::embedded {

namespace {

// The slant given to upright faces when italic is asked.
constexpr double kSyntheticSlant = 0.2;
// Points of glyph outlines a run gathers before they are filled.
constexpr std::size_t kOutlinePiecePoints = 16384;

bool Blank(std::string_view line) {
  return std::all_of(line.begin(), line.end(), [](char c) { return c == ' ' || c == '\t'; });
}

class Measure final : public TextMeasure {
 public:
  double Advance(const FontFace& face, std::string_view text) override {
    const ChosenFace chosen = ChooseFace(face);
    if (chosen.face == nullptr) return StrokeFont::Get().Advance(text);
    return chosen.face->Advance(text, 1) / chosen.face->CapHeight();
  }
  double Descent(const FontFace& face) override {
    const ChosenFace chosen = ChooseFace(face);
    if (chosen.face == nullptr) return TextMeasure::Descent(face);
    return chosen.face->Descent() / chosen.face->CapHeight();
  }
};

}  // namespace

RunLines LayOutRunLines(const TextRun& run) {
  RunLines laid;
  laid.font = ChooseFace({run.fontFamily, run.fontFile, run.bold, run.italic});
  laid.shear = std::tan(Radians(run.obliqueDegrees)) + (laid.font.slant ? kSyntheticSlant : 0);
  const TrueTypeFace* face = laid.font.face;
  if (face != nullptr)
    laid.metrics = {face->CapHeight(), face->Descent()};
  else
    laid.metrics = {1, kUsualDescent};
  std::string_view rest = run.text;
  while (true) {
    const auto end = rest.find('\n');
    laid.lines.push_back(rest.substr(0, end));
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  if (face != nullptr) laid.glyphs.resize(laid.lines.size());
  for (std::size_t i = 0; i < laid.lines.size(); ++i) {
    laid.widths.push_back(face != nullptr ? face->Shape(laid.lines[i], run.tracking, laid.glyphs[i])
                                          : StrokeFont::Get().Advance(laid.lines[i], run.tracking));
  }
  laid.placements.resize(laid.widths.size());
  laid.placement = PlaceRun(run, laid.metrics, laid.widths, laid.placements);
  return laid;
}

void OutlineRun(const TextRun& run, const RunLines& laid, CurvePath& out,
                const std::function<void(const CurvePath&)>& fill) {
  const TrueTypeFace* face = laid.font.face;
  if (face == nullptr) return;
  const RunPlacement& p = laid.placement;
  out.Clear();
  for (std::size_t i = 0; i < laid.lines.size(); ++i) {
    if (Blank(laid.lines[i])) continue;
    // Design units into the run's space, then onto the sheet.
    const Affine2 toSheet = run.toSheet * Affine2{p.xScale,
                                                  0,
                                                  laid.shear * p.yScale,
                                                  p.yScale,
                                                  laid.placements[i].x,
                                                  laid.placements[i].baseline};
    std::size_t first = out.points.size();
    const auto place = [&] {
      for (std::size_t k = first; k < out.points.size(); ++k) {
        out.points[k] = toSheet.Apply(out.points[k]);
      }
    };
    for (const PlacedGlyph& g : laid.glyphs[i]) {
      face->AppendOutline(g.id, g.at, out);
      if (out.points.size() < kOutlinePiecePoints) continue;
      place();
      fill(out);
      out.Clear();
      first = 0;
    }
    place();
  }
  if (!out.Empty()) fill(out);
}

TextMeasure& TrueTypeMeasure() {
  static Measure measure;
  return measure;
}

}  // namespace sheafwork::embedded
