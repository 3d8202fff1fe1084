#pragma once
// The backend that writes PDF page content. Coordinates are whole units of
// 1/1200 inch (a `cm` at the top of the page scales them to points); the
// page's y axis runs up like the sheet's. Lines and arcs of one style are
// gathered into one path and stroked once; colour and width are written only
// when they change. Areas fill odd-even, clips nest with q/Q. What each
// drawing layer draws is marked with its optional content group, so that a
// reader can hide the layer. Text is drawn
// as glyph outlines, with the same text invisible on top of it so that the
// page can be searched and copied.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "embedded/pdf/content_stream.h"
#include "embedded/pdf/document.h"
#include "embedded/pdf/optional_content.h"
#include "embedded/pdf/text_fonts.h"
#include "embedded/render/backend.h"
#include "embedded/render/box.h"
#include "embedded/render/pdf_text_layer.h"

namespace sheafwork::embedded {

class PdfBackend final : public Backend {
 public:
  static constexpr double kUnitsPerInch = 1200;
  static constexpr double kUnitsPerMm = kUnitsPerInch / 25.4;

  /// Writes into `page`, a page whose origin is the sheet's lower-left
  /// corner; the invisible text is in `fonts`. With `layers`, what is drawn is marked with its
  /// drawing layer's optional content group. Raster images become image objects of `images` (none
  /// are drawn without it).
  PdfBackend(pdf::ContentStream& page, pdf::TextFonts& fonts,
             pdf::OptionalContent* layers = nullptr, pdf::Document* images = nullptr);
  /// Flushes and closes any clip left open.
  ~PdfBackend() override;
  PdfBackend(const PdfBackend&) = delete;
  PdfBackend& operator=(const PdfBackend&) = delete;

  void DrawLines(std::span<const Vec2> pairs, const Style& style) override;
  void DrawPolyline(std::span<const Vec2> points, bool closed, const Style& style) override;
  /// The linetype's pattern as the page's own dash pattern: a dashed line
  /// is one subpath, not one per dash.
  Dasher::Result DrawDashed(std::span<const Vec2> points, bool closed, Dasher& dasher,
                            const Style& style) override;
  void DrawArc(Vec2 center, double radius, double start, double sweep, const Style& style) override;
  /// Curves stay curves in the page.
  void FillPath(const CurvePath& path, const Style& style) override;
  void FillLoops(std::span<const Vec2> points, std::span<const int> loopSizes,
                 const Style& style) override;
  void DrawPoint(Vec2 at, const Style& style) override;
  void DrawText(const TextRun& text, const Style& style) override;
  void TextDrawn(std::string_view text, const Affine2& lineToSheet) override;
  bool DrawImage(const ImageRun& image) override;
  void BeginLayer(std::string_view name) override;
  void PushClip(std::span<const Vec2> polygon) override;
  void PushClipLoops(std::span<const Vec2> points, std::span<const int> loopSizes) override;
  void PopClip() override;
  void Flush() override;

 private:
  struct Point {
    std::int64_t x = 0;
    std::int64_t y = 0;
    bool operator==(const Point&) const = default;
  };

  /// A dash pattern in units: lengths drawn and skipped, and the phase.
  struct Dash {
    std::vector<double> lengths;  ///< none: a continuous line
    double phase = 0;
    bool operator==(const Dash&) const = default;
  };

  static Point Map(Vec2 p);
  /// `points` on the grid into points_, points that meet there once.
  void MapToGrid(std::span<const Vec2> points);
  void Stroke(const Style& style);
  void Stroke(const Style& style, const Dash& dash);
  void EndPath();
  void MoveTo(Point p);
  void LineTo(Point p);
  void CurveTo(Point c1, Point c2, Point p);
  void ClosePath();
  void SubpathDone();
  void UseStrokeColor(std::uint32_t rgb);
  void UseFillColor(std::uint32_t rgb);
  void Forget();
  void MarkLayer();
  void EndMark();
  /// The box in which text can be seen (sheet mm): the clip in force.
  Box2 Visible() const;
  /// Writes the text held back, if any.
  void WriteStrokeText();

  pdf::ContentStream& out_;
  pdf::TextFonts& fonts_;
  /// Inside DrawText, whose invisible text is written from its layout: the
  /// strokes it may fall back on write none of their own.
  bool inTrueType_ = false;
  /// The invisible text of lines drawn as strokes, held back until the
  /// path of their strokes ends: the strokes of many texts still share one
  /// path, and their text one text object. Never cut: it goes to the page
  /// whole (WriteStrokeText).
  pdf::ContentStream strokeTextLater_;
  std::optional<TextLayer> strokeText_;
  bool pathOpen_ = false;  ///< a stroked path of pathStyle_ waits for its S
  Style pathStyle_;
  int pathSubpaths_ = 0;
  Point current_;
  bool currentKnown_ = false;
  std::optional<std::uint32_t> strokeRgb_;
  std::optional<std::uint32_t> fillRgb_;
  std::optional<double> width_;
  std::optional<Dash> dash_ = Dash{};  ///< the page starts continuous
  Dash pathDash_;
  int clips_ = 0;
  // Marked content never spans a q or Q: it ends before either and begins
  // again with the next thing drawn.
  pdf::OptionalContent* layers_;
  pdf::Document* images_;
  std::string layer_;  ///< of what is drawn next
  bool marked_ = false;
  std::string markedLayer_;
  /// The box of each clip in force (sheet mm), narrowed by the ones before.
  std::vector<Box2> clipBoxes_;
  std::vector<Point> points_;
};

}  // namespace sheafwork::embedded
