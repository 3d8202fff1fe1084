#include "embedded/render/pdf_backend.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>

#include "embedded/render/raster_cache.h"

namespace sheafwork::embedded {

namespace {

// Subpaths gathered into one path before it is stroked: readers handle
// paths of any size, but draw long ones no faster.
constexpr int kSubpathsPerPath = 4096;
constexpr double kPointsPerUnit = 72.0 / PdfBackend::kUnitsPerInch;
// Coordinates beyond this many units (25 km) are held there.
constexpr double kFarUnits = 1e12;
// Chunk size of text that must reach the page whole.
constexpr std::size_t kNeverCut = std::size_t{1} << 40;
// Smallest dot radius, as on the other outputs.
constexpr double kMinDotRadiusMm = 0.05;

// "0.502" for every 8-bit component, written once.
const std::array<std::string, 256>& Components() {
  static const std::array<std::string, 256> table = [] {
    std::array<std::string, 256> t;
    for (int i = 0; i < 256; ++i) AppendDecimal(t[static_cast<std::size_t>(i)], i / 255.0, 3);
    return t;
  }();
  return table;
}

void WriteColor(pdf::ContentStream& out, std::uint32_t rgb, std::string_view op) {
  const auto& c = Components();
  out.Token(c[(rgb >> 16) & 0xFF]).Token(c[(rgb >> 8) & 0xFF]).Token(c[rgb & 0xFF]).Op(op);
}

std::int64_t Units(double mm) {
  const double u = mm * PdfBackend::kUnitsPerMm;
  if (!(std::fabs(u) < kFarUnits))
    return u > 0 ? std::int64_t(kFarUnits) : u < 0 ? -std::int64_t(kFarUnits) : 0;
  return std::llround(u);
}

}  // namespace

PdfBackend::PdfBackend(pdf::ContentStream& page, pdf::TextFonts& fonts,
                       pdf::OptionalContent* layers, pdf::Document* images)
    : out_(page),
      fonts_(fonts),
      strokeTextLater_([this](std::string chunk) { out_.Lines(chunk); }, kNeverCut),
      layers_(layers),
      images_(images) {
  out_.Real(kPointsPerUnit, 6).Int(0).Int(0).Real(kPointsPerUnit, 6).Int(0).Int(0).Op("cm");
  out_.Int(1).Op("J");
  out_.Int(1).Op("j");
}

PdfBackend::~PdfBackend() {
  Flush();
  EndMark();
  for (; clips_ > 0; --clips_) out_.Op("Q");
}

PdfBackend::Point PdfBackend::Map(Vec2 p) { return {Units(p.x), Units(p.y)}; }

void PdfBackend::MapToGrid(std::span<const Vec2> points) {
  points_.clear();
  for (const Vec2& p : points) {
    const Point q = Map(p);
    if (points_.empty() || !(q == points_.back())) points_.push_back(q);  // met on the grid
  }
}

void PdfBackend::Flush() { EndPath(); }

void PdfBackend::Stroke(const Style& style) {
  static const Dash continuous;
  Stroke(style, continuous);
}

void PdfBackend::Stroke(const Style& style, const Dash& dash) {
  if (pathOpen_ && pathStyle_ == style && pathDash_ == dash) return;
  EndPath();
  MarkLayer();
  UseStrokeColor(style.rgb);
  const double width = style.widthMm * kUnitsPerMm;
  if (width_ != width) {
    out_.Real(width, 2).Op("w");
    width_ = width;
  }
  if (dash_ != dash) {
    out_.Token("[");
    for (double length : dash.lengths) out_.Real(length, 2);
    out_.Token("]").Real(dash.phase, 2).Op("d");
    dash_ = dash;
  }
  pathStyle_ = style;
  pathDash_ = dash;
  pathOpen_ = true;
}

void PdfBackend::EndPath() {
  if (pathOpen_) {
    out_.Op("S");
    pathOpen_ = false;
    pathSubpaths_ = 0;
    currentKnown_ = false;
  }
  WriteStrokeText();
}

void PdfBackend::WriteStrokeText() {
  if (!strokeText_) return;
  strokeText_->End();
  strokeText_.reset();
  strokeTextLater_.Finish();
}

void PdfBackend::MoveTo(Point p) {
  out_.Int(p.x).Int(p.y).Op("m");
  current_ = p;
  currentKnown_ = true;
}

void PdfBackend::LineTo(Point p) {
  out_.Int(p.x).Int(p.y).Op("l");
  current_ = p;
}

void PdfBackend::CurveTo(Point c1, Point c2, Point p) {
  out_.Int(c1.x).Int(c1.y).Int(c2.x).Int(c2.y).Int(p.x).Int(p.y).Op("c");
  current_ = p;
}

void PdfBackend::ClosePath() { out_.Op("h"); }

// A long path is stroked and a new one begun (of the same style).
void PdfBackend::SubpathDone() {
  if (++pathSubpaths_ < kSubpathsPerPath) return;
  const Style style = pathStyle_;
  const Dash dash = pathDash_;
  EndPath();
  Stroke(style, dash);
}

void PdfBackend::UseStrokeColor(std::uint32_t rgb) {
  if (strokeRgb_ == rgb) return;
  WriteColor(out_, rgb, "RG");
  strokeRgb_ = rgb;
}

void PdfBackend::UseFillColor(std::uint32_t rgb) {
  if (fillRgb_ == rgb) return;
  WriteColor(out_, rgb, "rg");
  fillRgb_ = rgb;
}

// After Q the graphics state is the one saved at q: nothing cached holds.
void PdfBackend::Forget() {
  strokeRgb_.reset();
  fillRgb_.reset();
  width_.reset();
  dash_.reset();
}

void PdfBackend::DrawLines(std::span<const Vec2> pairs, const Style& style) {
  Stroke(style);
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
    const Point from = Map(pairs[i]);
    // A segment that starts where the last one ended continues it: with
    // round caps and joins that looks the same and costs half.
    if (!currentKnown_ || !(from == current_)) {
      SubpathDone();
      MoveTo(from);
    }
    LineTo(Map(pairs[i + 1]));
  }
}

void PdfBackend::DrawPolyline(std::span<const Vec2> points, bool closed, const Style& style) {
  if (points.size() < 2) return;
  MapToGrid(points);
  Stroke(style);
  SubpathDone();
  if (!currentKnown_ || !(points_.front() == current_)) MoveTo(points_.front());
  if (points_.size() == 1) {
    LineTo(points_.front());  // a dot
    return;
  }
  for (std::size_t i = 1; i < points_.size(); ++i) LineTo(points_[i]);
  if (closed) {
    ClosePath();
    currentKnown_ = false;
  }
}

Dasher::Result PdfBackend::DrawDashed(std::span<const Vec2> points, bool closed, Dasher& dasher,
                                      const Style& style) {
  Dasher::OnOff onOff;
  const Dasher::Result result = dasher.Follow(points, closed, onOff);
  if (result == Dasher::Result::kTooDense) return result;
  if (result == Dasher::Result::kContinuous) {
    DrawPolyline(points, closed, style);
    return result;
  }
  if (onOff.lengths.empty()) return result;  // gaps only
  MapToGrid(points);
  if (points_.size() < 2) return result;
  Dash dash;
  for (double length : onOff.lengths) dash.lengths.push_back(length * kUnitsPerMm);
  dash.phase = onOff.offset * kUnitsPerMm;
  Stroke(style, dash);
  // Every dashed line a subpath of its own: the pattern starts again at the
  // phase at each one.
  SubpathDone();
  MoveTo(points_.front());
  for (std::size_t i = 1; i < points_.size(); ++i) LineTo(points_[i]);
  if (closed) ClosePath();
  currentKnown_ = false;
  return result;
}

void PdfBackend::DrawArc(Vec2 center, double radius, double start, double sweep,
                         const Style& style) {
  const bool whole = std::fabs(sweep) >= kTwoPi;
  if (whole) sweep = sweep < 0 ? -kTwoPi : kTwoPi;
  // Quarter turns at most per Bézier curve.
  const int pieces =
      std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / (std::numbers::pi / 2) - 1e-9)));
  const double step = sweep / pieces;
  const double handle = 4.0 / 3.0 * std::tan(step / 4) * radius;
  const auto at = [&](double a) {
    return Vec2{center.x + radius * std::cos(a), center.y + radius * std::sin(a)};
  };
  Stroke(style);
  SubpathDone();
  const Point first = Map(at(start));
  if (!currentKnown_ || !(first == current_)) MoveTo(first);
  for (int i = 0; i < pieces; ++i) {
    const double a0 = start + step * i, a1 = start + step * (i + 1);
    const Vec2 p0 = at(a0), p1 = at(a1);
    const Vec2 c1{p0.x - handle * std::sin(a0), p0.y + handle * std::cos(a0)};
    const Vec2 c2{p1.x + handle * std::sin(a1), p1.y - handle * std::cos(a1)};
    CurveTo(Map(c1), Map(c2), i + 1 == pieces && whole ? first : Map(p1));
  }
  if (whole) {
    ClosePath();
    currentKnown_ = false;
  }
}

void PdfBackend::FillLoops(std::span<const Vec2> points, std::span<const int> loopSizes,
                           const Style& style) {
  EndPath();
  bool any = false;
  std::size_t first = 0;
  for (int size : loopSizes) {
    if (size <= 0) continue;
    const std::size_t end = std::min(points.size(), first + static_cast<std::size_t>(size));
    MapToGrid(points.subspan(first, end - first));
    first = end;
    if (points_.empty()) continue;
    if (!any) {
      MarkLayer();
      UseFillColor(style.rgb);
    }
    any = true;
    out_.Int(points_[0].x).Int(points_[0].y).Op("m");
    for (std::size_t i = 1; i < points_.size(); ++i)
      out_.Int(points_[i].x).Int(points_[i].y).Op("l");
    out_.Op("h");
  }
  if (any) out_.Op("f*");
}

void PdfBackend::FillPath(const CurvePath& path, const Style& style) {
  EndPath();
  if (path.Empty()) return;
  MarkLayer();
  UseFillColor(style.rgb);
  std::size_t k = 0;
  bool open = false;
  for (CurvePath::Verb verb : path.verbs) {
    switch (verb) {
      case CurvePath::Verb::Move: {
        if (open) out_.Op("h");
        const Point p = Map(path.points[k++]);
        out_.Int(p.x).Int(p.y).Op("m");
        open = true;
        break;
      }
      case CurvePath::Verb::Line: {
        const Point p = Map(path.points[k++]);
        if (open) out_.Int(p.x).Int(p.y).Op("l");
        break;
      }
      case CurvePath::Verb::Cubic: {
        if (!open) {
          k += 3;
          break;
        }
        const Point c1 = Map(path.points[k]), c2 = Map(path.points[k + 1]);
        const Point p = Map(path.points[k + 2]);
        k += 3;
        out_.Int(c1.x).Int(c1.y).Int(c2.x).Int(c2.y).Int(p.x).Int(p.y).Op("c");
        break;
      }
      case CurvePath::Verb::Close:
        if (open) out_.Op("h");
        open = false;
        break;
    }
  }
  if (open) out_.Op("h");
  out_.Op("f*");
}

void PdfBackend::DrawPoint(Vec2 at, const Style& style) {
  // A zero-length line with round caps: a round dot of the line's width.
  const double radius = std::max(style.widthMm / 2, kMinDotRadiusMm);
  Stroke(Style{style.rgb, 2 * radius});
  SubpathDone();
  const Point p = Map(at);
  MoveTo(p);
  LineTo(p);
}

void PdfBackend::DrawText(const TextRun& run, const Style& style) {
  EndPath();
  MarkLayer();
  inTrueType_ = true;
  Backend::DrawText(run, style);  // the glyphs, filled
  inTrueType_ = false;
  TextLayer layer(out_, fonts_, kUnitsPerMm, Visible());
  WriteTextLayer(layer, run);
  layer.End();
}

void PdfBackend::TextDrawn(std::string_view text, const Affine2& lineToSheet) {
  if (inTrueType_) return;
  MarkLayer();
  if (!strokeText_) strokeText_.emplace(strokeTextLater_, fonts_, kUnitsPerMm, Visible());
  strokeText_->Line(text, lineToSheet);
}

Box2 PdfBackend::Visible() const {
  if (!clipBoxes_.empty()) return clipBoxes_.back();
  const double far = kFarUnits / kUnitsPerMm;
  return Box2::Of({-far, -far}, {far, far});
}

void PdfBackend::BeginLayer(std::string_view name) {
  if (layers_ == nullptr || name == layer_) return;
  EndPath();  // the path so far is the other layer's
  layer_.assign(name);
}

void PdfBackend::MarkLayer() {
  if (layers_ == nullptr || (marked_ && markedLayer_ == layer_)) return;
  EndMark();
  if (layer_.empty()) return;
  out_.Token("/OC").Token(layers_->Resource(layer_)).Op("BDC");
  markedLayer_ = layer_;
  marked_ = true;
}

void PdfBackend::EndMark() {
  WriteStrokeText();  // inside the mark of the strokes it goes with
  if (!marked_) return;
  out_.Op("EMC");
  marked_ = false;
}

bool PdfBackend::DrawImage(const ImageRun& image) {
  if (images_ == nullptr) return false;
  const std::string key(image.path);
  std::string name;
  if (const std::string* found = images_->FindImage(key)) {
    name = *found;
  } else {
    const std::shared_ptr<const RasterFile> file = LoadRasterImage(key);
    if (!file) return false;
    const bool jpeg = file->encoding == RasterFile::Encoding::Jpeg;
    name = images_->AddImage(key, file->width, file->height, file->components, file->bytes, jpeg);
  }
  EndPath();
  EndMark();
  const Affine2& m = image.toSheet;
  const double u = kUnitsPerMm;
  out_.Op("q");
  out_.Real(m.a * u, 4).Real(m.b * u, 4).Real(m.c * u, 4).Real(m.d * u, 4);
  out_.Real(m.e * u, 2).Real(m.f * u, 2).Op("cm");
  MarkLayer();
  out_.Token(name).Op("Do");
  EndMark();
  out_.Op("Q");
  return true;
}

void PdfBackend::PushClip(std::span<const Vec2> polygon) {
  const int size = static_cast<int>(polygon.size());
  PushClipLoops(polygon, {&size, 1});
}

void PdfBackend::PushClipLoops(std::span<const Vec2> points, std::span<const int> loopSizes) {
  EndPath();
  EndMark();
  out_.Op("q");
  ++clips_;
  Box2 box;
  for (const Vec2& p : points) box.Extend(p);
  if (!clipBoxes_.empty()) box = box.Intersection(clipBoxes_.back());
  clipBoxes_.push_back(box);
  points_.clear();
  for (const Vec2& p : points) points_.push_back(Map(p));
  if (points_.empty()) {
    out_.Int(0).Int(0).Int(0).Int(0).Op("re");  // nothing passes
    out_.Op("W");
  } else {
    std::size_t at = 0;
    for (const int size : loopSizes) {
      const std::size_t end = std::min(points_.size(), at + static_cast<std::size_t>(size));
      if (at < end) {
        out_.Int(points_[at].x).Int(points_[at].y).Op("m");
        for (std::size_t i = at + 1; i < end; ++i) out_.Int(points_[i].x).Int(points_[i].y).Op("l");
        out_.Op("h");
      }
      at = end;
    }
    out_.Op("W*");
  }
  out_.Op("n");
}

void PdfBackend::PopClip() {
  if (clips_ == 0) return;
  EndPath();
  EndMark();
  out_.Op("Q");
  --clips_;
  clipBoxes_.pop_back();
  Forget();
}

}  // namespace sheafwork::embedded
