#pragma once
// Our single-stroke font: what text in a shape font (.shx, "txt", no font
// file) is drawn with, as polylines, so that every backend draws it. Cap
// height 1, baseline at y = 0, glyphs laid along +x.

#include <memory>
#include <mutex>
#include <span>
#include <string_view>
#include <vector>

#include "embedded/model/geometry.h"
#include "embedded/render/box.h"
#include "text/utf8.h"

namespace sheafwork::embedded {

namespace stroke_data {
struct GlyphSource;
struct MarkSource;
}  // namespace stroke_data

/// One glyph, in cap heights: `sizes` splits `points` into open polylines,
/// or into loops to fill (odd-even) when `filled`.
struct StrokeGlyph {
  double advance = 0;
  std::vector<Vec2> points;
  std::vector<int> sizes;
  Box2 box;             ///< around `points`; empty when the glyph has none
  bool filled = false;  ///< a TrueType glyph standing in for a missing character
};

class StrokeFont {
 public:
  /// The font, built from its tables on first use.
  static const StrokeFont& Get();

  /// The glyph of `code`; nullptr when the font lacks it.
  const StrokeGlyph* Find(char32_t code) const;
  /// The glyph of `code`, or the placeholder (a small box) when the font lacks it.
  const StrokeGlyph& GlyphOrPlaceholder(char32_t code) const;
  /// Width of `text` (UTF-8, one line) in cap heights; `tracking` scales
  /// every advance.
  double Advance(std::string_view text, double tracking = 1) const;
  /// Appends the strokes of `text` laid from the origin along +x, in cap
  /// heights: each stroke is `sizes.back()` points of `points`.
  void AppendStrokes(std::string_view text, double tracking, std::vector<Vec2>& points,
                     std::vector<int>& sizes) const;
  /// The box around the strokes AppendStrokes lays out for `text`, from the
  /// glyphs' own boxes: no stroke is made. Empty when there is none.
  Box2 Bounds(std::string_view text, double tracking = 1) const;
  /// Every character the font has, in code order.
  std::span<const char32_t> Characters() const { return codes_; }

 private:
  StrokeFont();

  /// Where a glyph comes from: its strokes, or a base letter's and a mark's.
  struct Slot {
    char32_t code;
    const stroke_data::GlyphSource* source;
    const stroke_data::MarkSource* mark;  ///< null for a glyph of its own
  };
  struct Built {
    std::once_flag once;
    StrokeGlyph glyph;
  };
  /// The glyph at `index`, read from its tables on first use.
  const StrokeGlyph& Glyph(std::size_t index) const;

  std::vector<char32_t> codes_;
  std::vector<Slot> slots_;          ///< parallel to codes_
  std::unique_ptr<Built[]> glyphs_;  ///< parallel to codes_, built when asked for
  /// The index of each ASCII code's glyph, -1 when the font lacks it.
  int ascii_[128];
  StrokeGlyph placeholder_;
};

/// Width of `text` (UTF-8, one line) in cap heights, each character's
/// glyph given by `glyphOf(code)`; `tracking` scales every advance.
template <typename GlyphOf>
double LaidAdvance(std::string_view text, double tracking, GlyphOf&& glyphOf) {
  double width = 0;
  for (std::size_t i = 0; i < text.size();) {
    const DecodedChar c = DecodeUtf8(text, i);
    i += c.length;
    width += glyphOf(c.valid ? c.codePoint : 0xFFFD).advance * tracking;
  }
  return width;
}

/// The box around the glyphs of `text` laid from the origin along +x, from
/// the glyphs' own boxes; empty when there is none.
template <typename GlyphOf>
Box2 LaidBounds(std::string_view text, double tracking, GlyphOf&& glyphOf) {
  Box2 box;
  double x = 0;
  for (std::size_t i = 0; i < text.size();) {
    const DecodedChar c = DecodeUtf8(text, i);
    i += c.length;
    const StrokeGlyph& glyph = glyphOf(c.valid ? c.codePoint : 0xFFFD);
    if (!glyph.box.Empty()) {
      box.Extend(Vec2{glyph.box.min.x + x, glyph.box.min.y});
      box.Extend(Vec2{glyph.box.max.x + x, glyph.box.max.y});
    }
    x += glyph.advance * tracking;
  }
  return box;
}

/// Whether a text style's font is a shape font we draw with the stroke font:
/// no TrueType family and a font file that is empty, has no extension, or
/// ends in .shx.
bool IsShapeFont(std::string_view family, std::string_view fontFile);

}  // namespace sheafwork::embedded
