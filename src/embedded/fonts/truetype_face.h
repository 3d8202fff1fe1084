#pragma once
// One TrueType or OpenType face: text shaped into positioned glyphs (kerning
// and ligatures as the font defines them), the face's metrics, and glyph
// outlines as curves. Everything is in the font's own design
// units, y up, the baseline at y = 0. Safe to use from several threads.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/model/curve_path.h"
#include "embedded/model/geometry.h"

namespace sheafwork::embedded {

struct PlacedGlyph {
  unsigned id = 0;
  Vec2 at;  ///< where the glyph's origin goes
};

class TrueTypeFace {
 public:
  /// The face `index` of the font file at `path`; null when the file
  /// cannot be read or holds no such face.
  static std::unique_ptr<TrueTypeFace> Open(const std::string& path, int index);
  ~TrueTypeFace();
  TrueTypeFace(const TrueTypeFace&) = delete;
  TrueTypeFace& operator=(const TrueTypeFace&) = delete;

  double CapHeight() const { return capHeight_; }
  /// How far the face reaches below the baseline (positive).
  double Descent() const { return descent_; }

  /// Shapes one line of UTF-8 text from the origin along +x; `tracking`
  /// scales every advance. Replaces `glyphs`; returns the line's advance.
  double Shape(std::string_view line, double tracking, std::vector<PlacedGlyph>& glyphs) const;
  /// The advance alone.
  double Advance(std::string_view line, double tracking) const;
  /// Appends the outline of glyph `id` placed at `at`: its loops, their
  /// quadratic curves given as the equal cubic ones.
  void AppendOutline(unsigned id, Vec2 at, CurvePath& out) const;

 private:
  struct Handles;
  explicit TrueTypeFace(std::unique_ptr<Handles> handles);

  std::unique_ptr<Handles> handles_;
  double capHeight_ = 0;
  double descent_ = 0;
};

}  // namespace sheafwork::embedded
