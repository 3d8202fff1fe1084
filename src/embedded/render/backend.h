#pragma once
// What the frontend hands a backend: a few primitives in sheet millimetres
// (y up), each with a resolved style. A backend only paints.

#include <cstdint>
#include <span>
#include <string_view>

#include "embedded/model/curve_path.h"
#include "embedded/model/geometry.h"
#include "embedded/render/dasher.h"
#include "embedded/render/transform.h"

namespace sheafwork::embedded {

/// The colour of the sheet, which masks paint with.
inline constexpr std::uint32_t kSheetBackground = 0xFFFFFF;

struct Style {
  std::uint32_t rgb = 0;  ///< 0xRRGGBB
  double widthMm = 0.25;  ///< pen width on the sheet, never 0

  bool operator==(const Style&) const = default;
};

/// One piece of text. Its own space has the anchor at the origin, the
/// baseline along +x and y up, in the units of `height`; `toSheet` maps it
/// onto the sheet (rotation, mirroring, blocks and the plot included).
struct TextRun {
  std::string_view text;  ///< plain UTF-8; '\n' separates lines
  Affine2 toSheet;
  double height = 1;  ///< cap height
  double widthFactor = 1;
  double obliqueDegrees = 0;
  /// Single-line text: 0 left, 1 center, 2 right, 3 aligned, 4 middle, 5 fit.
  int horizontalAlign = 0;
  /// Single-line text: 0 baseline, 1 bottom, 2 middle, 3 top.
  int verticalAlign = 0;
  /// Aligned and fitted text: the baseline's length.
  double fitLength = 0;
  /// Multi-line text: attachment 1 (top left) to 9 (bottom right), 0 for
  /// single-line text.
  int attachment = 0;
  double lineSpacing = 1;       ///< factor on the usual 5/3 of the cap height
  std::string_view fontFamily;  ///< a TrueType family asked for, may be empty
  std::string_view fontFile;    ///< the style's font file, may be empty
  bool bold = false;
  bool italic = false;
  double tracking = 1;  ///< factor on every character's advance
};

/// A raster image: the pixels of a file over the parallelogram onto which
/// `toSheet` maps the unit square, the image's lower-left corner at the
/// origin and its top row along y = 1.
struct ImageRun {
  std::string_view path;  ///< the file, found
  Affine2 toSheet;
};

class Backend {
 public:
  virtual ~Backend();
  /// Independent segments: points 2i and 2i+1.
  virtual void DrawLines(std::span<const Vec2> pairs, const Style& style) = 0;
  virtual void DrawPolyline(std::span<const Vec2> points, bool closed, const Style& style) = 0;
  /// A polyline in the dashes of `dasher`'s pattern, from its phase, which
  /// moves on. By default the dashes are cut and drawn as lines; an output
  /// that dashes lines itself draws the pattern (PDF). Returns what the
  /// dasher found; on kTooDense nothing is drawn.
  virtual Dasher::Result DrawDashed(std::span<const Vec2> points, bool closed, Dasher& dasher,
                                    const Style& style);
  /// A circular arc from angle `start` over `sweep` radians (negative is
  /// clockwise); a whole circle when |sweep| ≥ 2π. By default flattened
  /// into a polyline.
  virtual void DrawArc(Vec2 center, double radius, double start, double sweep, const Style& style);
  /// Filled area of the loops (each closed implicitly), odd-even rule.
  virtual void FillLoops(std::span<const Vec2> points, std::span<const int> loopSizes,
                         const Style& style) = 0;
  /// Filled area of the path's loops, odd-even rule. By default its
  /// curves are cut into chords (within 0.005 mm) and filled with
  /// FillLoops.
  virtual void FillPath(const CurvePath& path, const Style& style);
  virtual void DrawPoint(Vec2 at, const Style& style) = 0;
  /// By default the run's glyph outlines, filled (FillPath), so that a
  /// backend without text of its own still draws it.
  virtual void DrawText(const TextRun& text, const Style& style);
  /// A line of UTF-8 `text` has just been drawn as strokes (shape fonts,
  /// the stroke font); `lineToSheet` maps the line's own box (x from 0 to 1
  /// along its drawn advance, y from 0 on its baseline to 1 at its cap
  /// height) onto the sheet. An output that holds text (PDF) holds it
  /// there too, unseen, to be searched; by default nothing.
  virtual void TextDrawn(std::string_view text, const Affine2& lineToSheet) {
    (void)text;
    (void)lineToSheet;
  }
  /// Draws a raster image; false when the output draws no images or the
  /// file cannot be read (the frontend then draws the image's frame).
  virtual bool DrawImage(const ImageRun& image) {
    (void)image;
    return false;
  }
  /// Restricts what follows to the inside of `polygon` until PopClip.
  virtual void PushClip(std::span<const Vec2> polygon) { (void)polygon; }
  /// Restricts what follows to the odd-even inside of the loops (each
  /// closed implicitly) until PopClip: a loop around everything and a hole
  /// keep what lies outside the hole. By default the box around them all
  /// (PushClip), an output that clips to polygons clips to the loops.
  virtual void PushClipLoops(std::span<const Vec2> points, std::span<const int> loopSizes);
  virtual void PopClip() {}
  /// What follows belongs to the drawing's layer `name` (as the drawing
  /// names it; an external reference's as "XREF|name"), until the next
  /// call. Outputs with layers of their own (PDF) group it by layer.
  virtual void BeginLayer(std::string_view name) { (void)name; }
  /// Everything drawn so far is handed on (batched lines included).
  virtual void Flush() {}
};

}  // namespace sheafwork::embedded
