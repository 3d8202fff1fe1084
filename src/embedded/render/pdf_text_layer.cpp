#include "embedded/render/pdf_text_layer.h"

#include <cmath>

#include "embedded/pdf/pdf_strings.h"
#include "embedded/render/text_layout.h"
#include "embedded/render/truetype_text.h"

namespace sheafwork::embedded {

namespace {

// Helvetica's cap height, in ems: the invisible letters stand as tall as
// the drawn ones.
constexpr double kHelveticaCapHeight = 0.718;
// Helvetica's descent, in ems: how far below the baseline a line's box goes.
constexpr double kHelveticaDescent = 0.3;

}  // namespace

TextLayer::TextLayer(pdf::ContentStream& out, pdf::TextFonts& fonts, double unitsPerMm,
                     const Box2& visible)
    : out_(out), fonts_(fonts), unitsPerMm_(unitsPerMm), visible_(visible) {}

void TextLayer::Line(std::string_view text, const Affine2& lineToSheet) {
  if (text.find_first_not_of(" \t") == std::string_view::npos) return;
  // The line's box on the sheet: from below the baseline to above the
  // capitals, its drawn width long.
  const double em = 1 / kHelveticaCapHeight;
  const Box2 box = MappedBox(lineToSheet, Box2::Of({0, -kHelveticaDescent * em}, {1, em}));
  if (!box.Intersects(visible_)) return;
  // Reused from line to line.
  thread_local pdf::TextFonts::Line encoded;
  fonts_.Encode(text, encoded);
  if (!(encoded.width > 0)) return;
  // Text space (Helvetica of size 1, y up) onto the line's box, then the
  // page: stretched to the drawn width, slanted like the drawn glyphs.
  const Affine2 m = Affine2::Scaling(unitsPerMm_, unitsPerMm_) * lineToSheet *
                    Affine2::Scaling(1 / encoded.width, em);
  if (!std::isfinite(m.a + m.b + m.c + m.d + m.e + m.f)) return;
  if (!begun_) {
    out_.Op("BT");
    out_.Int(3).Op("Tr");
    begun_ = true;
    font_ = encoded.pieces.front().font;
    out_.Token(pdf::TextFonts::Resource(font_)).Int(1).Op("Tf");
  }
  // The line's start on the page's grid of whole units, as the drawing is.
  out_.Real(m.a, 3).Real(m.b, 3).Real(m.c, 3).Real(m.d, 3);
  out_.Int(std::llround(m.e)).Int(std::llround(m.f)).Op("Tm");
  for (const pdf::TextFonts::Piece& piece : encoded.pieces) {
    if (piece.font != font_) {
      font_ = piece.font;
      out_.Token(pdf::TextFonts::Resource(font_)).Int(1).Op("Tf");
    }
    out_.Token(pdf::LiteralString(piece.bytes)).Op("Tj");
  }
}

void TextLayer::End() {
  if (begun_) out_.Op("ET");
  begun_ = false;
}

void WriteTextLayer(TextLayer& layer, const TextRun& run) {
  const RunLines laid = LayOutRunLines(run);
  const RunPlacement& p = laid.placement;
  const double capHeight = p.yScale * laid.metrics.capHeight;
  for (std::size_t i = 0; i < laid.placements.size(); ++i) {
    const double drawn = laid.widths[i] * p.xScale;
    if (!(drawn > 0) || !(capHeight > 0)) continue;
    const Affine2 box{drawn,
                      0,
                      laid.shear * capHeight,
                      capHeight,
                      laid.placements[i].x,
                      laid.placements[i].baseline};
    layer.Line(laid.lines[i], run.toSheet * box);
  }
}

}  // namespace sheafwork::embedded
