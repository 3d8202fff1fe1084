#include "embedded/render/text_drawing.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "embedded/render/aci_palette.h"
#include "embedded/render/glyph_strokes.h"
#include "embedded/render/stroke_font.h"
#include "embedded/render/text_codes.h"
#include "embedded/render/text_layout.h"
#include "text/utf8.h"

namespace sheafwork::embedded {

namespace {

constexpr FontMetrics kStrokeMetrics{1.0, 4.0 / 12.0};
// Points of strokes a line of text gathers before they go to the backend.
constexpr std::size_t kStrokePiecePoints = 8192;

/// Glyph space (cap heights) into text space: width factor and slant, then
/// the baseline's left end at `origin`.
Affine2 GlyphMap(double xScale, double yScale, double obliqueDegrees, Vec2 origin) {
  const double shear = std::tan(Radians(obliqueDegrees));
  return {xScale, 0, shear * yScale, yScale, origin.x, origin.y};
}

}  // namespace

void DrawStrokeLine(Backend& backend, const ShapeFace& face, std::string_view text, double tracking,
                    const Affine2& glyphToSheet, const Style& style,
                    const std::optional<Box2>& cull) {
  // A cheap bound first, from the glyphs' boxes: a text wholly outside is
  // left out before any stroke is made, one wholly inside needs no box of
  // its own.
  bool inside = true;
  if (cull) {
    const Box2 bound = face.Bounds(text, tracking);
    if (bound.Empty()) return;
    const Box2 mapped = MappedBox(glyphToSheet, bound);
    if (!mapped.Intersects(*cull)) return;
    inside = cull->Contains(mapped);
  }
  // Reused from text to text.
  thread_local GlyphStrokeCache glyphs;
  thread_local std::vector<Vec2> points;
  thread_local std::vector<int> sizes;
  thread_local std::vector<Vec2> filledPoints;
  thread_local std::vector<int> filledSizes;
  glyphs.Use(glyphToSheet);
  Box2 box;
  bool drawn = false;
  // The strokes go out a piece of the line at a time, so that a long text
  // needs no more room than one piece.
  const auto flush = [&] {
    if ((!sizes.empty() || !filledSizes.empty()) && (inside || box.Intersects(*cull))) {
      drawn = true;
      std::size_t first = 0;
      for (const int size : sizes) {
        const auto n = static_cast<std::size_t>(size);
        backend.DrawPolyline(std::span<const Vec2>(points).subspan(first, n), false, style);
        first += n;
      }
      if (!filledSizes.empty()) backend.FillLoops(filledPoints, filledSizes, style);
    }
    points.clear();
    sizes.clear();
    filledPoints.clear();
    filledSizes.clear();
    box = Box2{};
  };
  points.clear();
  sizes.clear();
  filledPoints.clear();
  filledSizes.clear();
  double x = 0;
  for (std::size_t i = 0; i < text.size();) {
    const DecodedChar c = DecodeUtf8(text, i);
    i += c.length;
    const StrokeGlyph& glyph = face.Glyph(c.valid ? c.codePoint : 0xFFFD);
    const Vec2 origin = glyphToSheet.Apply({x, 0});
    x += glyph.advance * tracking;
    const GlyphStrokeCache::Strokes strokes = glyphs.Get(glyph);
    if (strokes.sizes.empty()) continue;
    if (!inside) {
      box.Extend(Vec2{strokes.box.min.x + origin.x, strokes.box.min.y + origin.y});
      box.Extend(Vec2{strokes.box.max.x + origin.x, strokes.box.max.y + origin.y});
    }
    std::vector<Vec2>& to = glyph.filled ? filledPoints : points;
    for (const Vec2& p : strokes.points) to.push_back({p.x + origin.x, p.y + origin.y});
    std::vector<int>& toSizes = glyph.filled ? filledSizes : sizes;
    toSizes.insert(toSizes.end(), strokes.sizes.begin(), strokes.sizes.end());
    if (points.size() + filledPoints.size() >= kStrokePiecePoints) flush();
  }
  flush();
  // What was drawn of the line is also searchable text.
  if (drawn && x > 0) backend.TextDrawn(text, glyphToSheet * Affine2::Scaling(x, 1));
}

void DrawStrokeRun(Backend& backend, const TextRun& run, const Style& style,
                   const std::optional<Box2>& cull, const ShapeFace& face) {
  // Reused from run to run; DrawStrokeLine does not come back here.
  thread_local std::vector<std::string_view> lines;
  thread_local std::vector<double> widths;
  thread_local std::vector<LinePlacement> placements;
  lines.clear();
  widths.clear();
  std::string_view rest = run.text;
  while (true) {
    const std::size_t nl = rest.find('\n');
    lines.push_back(rest.substr(0, nl));
    if (nl == std::string_view::npos) break;
    rest.remove_prefix(nl + 1);
  }
  for (std::string_view line : lines) widths.push_back(face.Advance(line, run.tracking));
  placements.assign(lines.size(), LinePlacement{});
  const RunPlacement p = PlaceRun(run, kStrokeMetrics, widths, placements);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Affine2 glyph =
        GlyphMap(p.xScale, p.yScale, run.obliqueDegrees, {placements[i].x, placements[i].baseline});
    DrawStrokeLine(backend, face, lines[i], run.tracking, run.toSheet * glyph, style, cull);
  }
}

void DrawTextToggles(Backend& backend, std::string_view raw, const TextRun& run,
                     const ShapeFace* face, TextMeasure& measure, const Style& style,
                     const std::optional<Box2>& cull) {
  // The plain text piece by piece between the toggles, as AppendWithSpecialCodes reads it.
  struct Mark {
    std::size_t at;  ///< plain bytes before the toggle
    char kind;       ///< 'u', 'o' or 'k'
  };
  std::vector<Mark> marks;
  std::string plain;
  std::size_t from = 0;
  for (std::size_t i = 0; i + 2 < raw.size();) {
    if (raw[i] != '%' || raw[i + 1] != '%') {
      ++i;
      continue;
    }
    const char code = static_cast<char>(std::tolower(static_cast<unsigned char>(raw[i + 2])));
    if (code == 'u' || code == 'o' || code == 'k') {
      AppendWithSpecialCodes(raw.substr(from, i - from), plain);
      marks.push_back({plain.size(), code});
      from = i + 3;
    }
    i += 3;
  }
  if (marks.empty()) return;
  AppendWithSpecialCodes(raw.substr(from), plain);

  const FontFace trueType{run.fontFamily, run.fontFile, run.bold, run.italic};
  auto width = [&](std::size_t bytes) {
    const std::string_view text = std::string_view(plain).substr(0, bytes);
    return face != nullptr ? face->Advance(text, run.tracking)
                           : measure.Advance(trueType, text) * run.tracking;
  };
  const double widths[1] = {width(plain.size())};
  LinePlacement line[1];
  const FontMetrics metrics{1.0,
                            face != nullptr ? kStrokeMetrics.descent : measure.Descent(trueType)};
  const RunPlacement p = PlaceRun(run, metrics, widths, line);
  std::vector<Vec2> pairs;
  for (const char kind : {'u', 'o', 'k'}) {
    const double y = line[0].baseline + p.yScale * (kind == 'u' ? -0.2 : kind == 'o' ? 1.2 : 0.5);
    std::optional<double> start;
    auto add = [&](std::size_t end) {
      const Vec2 a = run.toSheet.Apply({line[0].x + *start * p.xScale, y});
      const Vec2 b = run.toSheet.Apply({line[0].x + width(end) * p.xScale, y});
      if (!cull || Box2::Of(a, b).Intersects(*cull)) {
        pairs.push_back(a);
        pairs.push_back(b);
      }
      start.reset();
    };
    for (const Mark& m : marks) {
      if (m.kind != kind) continue;
      if (start) {
        add(m.at);
      } else {
        start = width(m.at);
      }
    }
    if (start) add(plain.size());  // on to the end of the text
  }
  if (!pairs.empty()) backend.DrawLines(pairs, style);
}

void DrawTextBackground(Backend& backend, std::span<const Box2> columns, double margin,
                        const MTextBackground& background, const Affine2& toSheet,
                        const Style& frameStyle, const std::optional<Box2>& cull) {
  const bool fill = (background.flags & 3) != 0;
  const bool frame = (background.flags & 16) != 0;
  if (!fill && !frame) return;
  Style fillStyle = frameStyle;
  if ((background.flags & 2) != 0) {
    fillStyle.rgb = kSheetBackground;
  } else if (background.trueColor) {
    fillStyle.rgb = *background.trueColor;
  } else if (background.color >= 1 && background.color <= 255) {
    fillStyle.rgb = AciToRgb(background.color);
  }
  // A transparent fill on white paper: its colour faded towards the paper.
  if (fill && (background.transparency & 0x02000000) != 0) {
    const std::uint32_t alpha = static_cast<std::uint32_t>(background.transparency) & 0xFF;
    auto mix = [&](int shift) {
      const std::uint32_t c = (fillStyle.rgb >> shift) & 0xFF;
      return ((c * alpha + 0xFF * (0xFF - alpha) + 127) / 0xFF) << shift;
    };
    fillStyle.rgb = mix(16) | mix(8) | mix(0);
  }
  for (const Box2& box : columns) {
    if (box.Empty()) continue;
    const Vec2 corners[4] = {toSheet.Apply({box.min.x - margin, box.min.y - margin}),
                             toSheet.Apply({box.max.x + margin, box.min.y - margin}),
                             toSheet.Apply({box.max.x + margin, box.max.y + margin}),
                             toSheet.Apply({box.min.x - margin, box.max.y + margin})};
    if (cull) {
      Box2 bound;
      for (const Vec2& p : corners) bound.Extend(p);
      if (!bound.Intersects(*cull)) continue;
    }
    const int size = 4;
    if (fill) backend.FillLoops(corners, {&size, 1}, fillStyle);
    if (frame) backend.DrawPolyline(corners, true, frameStyle);
  }
}

void DrawFormattedText(Backend& backend, const ShapedText& shaped, const Affine2& toSheet,
                       const Style& style, const std::optional<Box2>& cull) {
  auto styleOf = [&](const std::optional<std::uint32_t>& rgb) {
    Style s = style;
    if (rgb) s.rgb = *rgb;
    return s;
  };
  for (const ShapedRun& r : shaped.runs) {
    const MTextFormat& f = r.format;
    const Style s = styleOf(f.rgb);
    if (r.stroke) {
      const Affine2 glyph =
          GlyphMap(f.height * f.widthFactor, f.height, f.obliqueDegrees, r.origin);
      const ShapeFace& face = f.shapeFace != nullptr ? *f.shapeFace : ShapeFace::Builtin();
      DrawStrokeLine(backend, face, r.text, f.tracking, toSheet * glyph, s, cull);
      continue;
    }
    TextRun run;
    run.text = r.text;
    run.toSheet = toSheet * Affine2::Translation(r.origin.x, r.origin.y);
    run.height = f.height;
    run.widthFactor = f.widthFactor;
    run.obliqueDegrees = f.obliqueDegrees;
    run.fontFamily = f.family;
    run.fontFile = f.file;
    run.bold = f.bold;
    run.italic = f.italic;
    run.tracking = f.tracking;
    if (cull) {
      const Box2 local = Box2::Of({0, -f.height / 2}, {r.width, f.height * 1.5});
      if (!MappedBox(run.toSheet, local).Intersects(*cull)) continue;
    }
    backend.DrawText(run, s);
  }
  for (const ShapedLine& line : shaped.lines) {
    const Vec2 pair[2] = {toSheet.Apply(line.from), toSheet.Apply(line.to)};
    if (cull && !Box2::Of(pair[0], pair[1]).Intersects(*cull)) continue;
    const double length = std::hypot(line.to.x - line.from.x, line.to.y - line.from.y);
    if (line.thickness <= 0 || length <= 0) {
      backend.DrawLines(pair, styleOf(line.rgb));
      continue;
    }
    // The band around the line, in text space, then onto the sheet.
    const double nx = -(line.to.y - line.from.y) / length * line.thickness / 2;
    const double ny = (line.to.x - line.from.x) / length * line.thickness / 2;
    const Vec2 band[4] = {toSheet.Apply({line.from.x + nx, line.from.y + ny}),
                          toSheet.Apply({line.to.x + nx, line.to.y + ny}),
                          toSheet.Apply({line.to.x - nx, line.to.y - ny}),
                          toSheet.Apply({line.from.x - nx, line.from.y - ny})};
    const int size = 4;
    backend.FillLoops(band, {&size, 1}, styleOf(line.rgb));
  }
}

}  // namespace sheafwork::embedded
