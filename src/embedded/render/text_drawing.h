#pragma once
// The frontend's side of text: single-line text in a shape font drawn as
// strokes, and multi-line text parsed, laid out and handed to the backend
// run by run.

#include <optional>
#include <span>
#include <string_view>

#include "embedded/model/entities.h"
#include "embedded/render/backend.h"
#include "embedded/render/box.h"
#include "embedded/render/mtext_format.h"
#include "embedded/render/shape_font.h"
#include "embedded/render/text_layout.h"
#include "embedded/render/text_shaper.h"

namespace sheafwork::embedded {

/// Draws one line of `text` in the shape font `face` as strokes (and the
/// glyphs of the fallback TrueType face as filled areas); `glyphToSheet`
/// maps its glyph space (cap height 1, baseline on x) onto the sheet.
/// Nothing is drawn when the text misses `cull`.
void DrawStrokeLine(Backend& backend, const ShapeFace& face, std::string_view text, double tracking,
                    const Affine2& glyphToSheet, const Style& style,
                    const std::optional<Box2>& cull);

/// Draws a text run (single-line alignments, fit and aligned included) in
/// the shape font `face`, placed as a backend places it.
void DrawStrokeRun(Backend& backend, const TextRun& run, const Style& style,
                   const std::optional<Box2>& cull, const ShapeFace& face = ShapeFace::Builtin());

/// Draws the underline, overline and strike-through that %%u, %%o and %%k
/// switch on and off in `raw`, the contents of single-line text drawn as
/// `run` (whose text is `raw` with its special codes replaced), measured
/// in the shape font `face` or, when it is null, with `measure`.
void DrawTextToggles(Backend& backend, std::string_view raw, const TextRun& run,
                     const ShapeFace* face, TextMeasure& measure, const Style& style,
                     const std::optional<Box2>& cull);

/// Draws the box behind multi-line text: each of `columns` (text space)
/// grown by `margin` on every side, filled as `background` asks (its own
/// colour, the sheet's) and framed with `frameStyle` when it asks for a
/// frame.
void DrawTextBackground(Backend& backend, std::span<const Box2> columns, double margin,
                        const MTextBackground& background, const Affine2& toSheet,
                        const Style& frameStyle, const std::optional<Box2>& cull);

/// Draws formatted multi-line text: runs in a TrueType face go to the
/// backend as single-line runs placed at their baseline's left end, runs
/// in a shape font as strokes, underlines and fraction bars as lines.
/// `toSheet` maps the text's own space (attachment point at the origin).
void DrawFormattedText(Backend& backend, const ShapedText& shaped, const Affine2& toSheet,
                       const Style& style, const std::optional<Box2>& cull);

}  // namespace sheafwork::embedded
