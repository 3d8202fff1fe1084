#include "embedded/render/hpgl_backend.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "embedded/render/box.h"
#include "text/decimal.h"

namespace sheafwork::embedded {

namespace {

// Plotters take integers from -2^30 to 2^30 - 1; a margin under that.
constexpr double kLimit = 1 << 29;
// Points per PD command, for devices with short parameter buffers.
constexpr int kMaxPointsPerCommand = 256;
// Largest gap between an arc and the chords the plotter draws, in units.
constexpr int kChordDeviation = 1;

bool Finite(Vec2 p) { return std::isfinite(p.x) && std::isfinite(p.y); }

Vec2 Units(Vec2 mm) { return {mm.x * HpglBackend::kUnitsPerMm, mm.y * HpglBackend::kUnitsPerMm}; }

bool InRange(Vec2 u) { return std::fabs(u.x) <= kLimit && std::fabs(u.y) <= kLimit; }

// Liang-Barsky: the part of the segment inside the square of half-side
// kLimit; false when none is.
bool ClipToRange(Vec2& a, Vec2& b) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  double t0 = 0, t1 = 1;
  const double p[4] = {-dx, dx, -dy, dy};
  const double q[4] = {a.x + kLimit, kLimit - a.x, a.y + kLimit, kLimit - a.y};
  for (int i = 0; i < 4; ++i) {
    if (p[i] == 0) {
      if (q[i] < 0) return false;
      continue;
    }
    const double t = q[i] / p[i];
    if (p[i] < 0) {
      t0 = std::max(t0, t);
    } else {
      t1 = std::min(t1, t);
    }
    if (t0 > t1) return false;
  }
  const Vec2 from = a;
  a = {from.x + t0 * dx, from.y + t0 * dy};
  b = {from.x + t1 * dx, from.y + t1 * dy};
  return true;
}

int DistanceSquared(std::uint32_t a, std::uint32_t b) {
  int sum = 0;
  for (int shift = 0; shift <= 16; shift += 8) {
    const int d = static_cast<int>((a >> shift) & 0xFF) - static_cast<int>((b >> shift) & 0xFF);
    sum += d * d;
  }
  return sum;
}

}  // namespace

HpglBackend::HpglBackend(double widthMm, double heightMm, std::string_view title)
    : widthMm_(widthMm), heightMm_(heightMm), title_(title) {
  body_.reserve(1 << 16);
}

void HpglBackend::EndCommand() {
  if (!inPenDown_) return;
  body_ += ';';
  inPenDown_ = false;
}

void HpglBackend::Command(std::string_view mnemonic) {
  EndCommand();
  body_ += mnemonic;
}

void HpglBackend::Number(std::int64_t value) { AppendInteger(body_, value); }

void HpglBackend::Number(double value, int decimals) { AppendDecimal(body_, value, decimals); }

int HpglBackend::PenFor(std::uint32_t rgb, double widthMm) {
  if (pen_ > 0 && pens_[static_cast<std::size_t>(pen_ - 1)].rgb == rgb) return pen_;
  for (std::size_t i = 0; i < pens_.size(); ++i) {
    if (pens_[i].rgb == rgb) return static_cast<int>(i + 1);
  }
  if (pens_.size() < static_cast<std::size_t>(kMaxPens)) {
    pens_.push_back(Pen{rgb, widthMm, widthMm});
    penColors_.push_back(rgb);
    return static_cast<int>(pens_.size());
  }
  std::size_t nearest = 0;
  for (std::size_t i = 1; i < pens_.size(); ++i) {
    if (DistanceSquared(pens_[i].rgb, rgb) < DistanceSquared(pens_[nearest].rgb, rgb)) {
      nearest = i;
    }
  }
  return static_cast<int>(nearest + 1);
}

void HpglBackend::UsePen(const Style& style, bool stroke) {
  const int pen = PenFor(style.rgb, style.widthMm);
  if (pen != pen_) {
    Command("SP");
    Number(std::int64_t{pen});
    body_ += ';';
    pen_ = pen;
  }
  Pen& p = pens_[static_cast<std::size_t>(pen - 1)];
  if (stroke && p.widthMm != style.widthMm) {
    Command("PW");
    Number(style.widthMm, 3);
    body_ += ',';
    Number(std::int64_t{pen});
    body_ += ';';
    p.widthMm = style.widthMm;
  }
}

void HpglBackend::MoveTo(Point p) {
  if (atKnown_ && p == at_) return;
  Command("PU");
  Number(p.x);
  body_ += ',';
  Number(p.y);
  body_ += ';';
  at_ = p;
  atKnown_ = true;
}

void HpglBackend::LineTo(Point p) {
  if (inPenDown_ && p == at_) return;
  if (inPenDown_ && pointsInCommand_ < kMaxPointsPerCommand) {
    body_ += ',';
  } else {
    Command("PD");
    inPenDown_ = true;
    pointsInCommand_ = 0;
  }
  Number(p.x);
  body_ += ',';
  Number(p.y);
  ++pointsInCommand_;
  at_ = p;
  atKnown_ = true;
}

void HpglBackend::Stroke(Vec2 from, Vec2 to) {
  if (!Finite(from) || !Finite(to)) return;
  Vec2 a = Units(from), b = Units(to);
  if (!(InRange(a) && InRange(b)) && !ClipToRange(a, b)) return;
  MoveTo({std::llround(a.x), std::llround(a.y)});
  LineTo({std::llround(b.x), std::llround(b.y)});
}

void HpglBackend::DrawLines(std::span<const Vec2> pairs, const Style& style) {
  if (Hidden() || pairs.size() < 2) return;
  UsePen(style, true);
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) Stroke(pairs[i], pairs[i + 1]);
}

void HpglBackend::DrawPolyline(std::span<const Vec2> points, bool closed, const Style& style) {
  if (Hidden() || points.size() < 2) return;
  UsePen(style, true);
  for (std::size_t i = 1; i < points.size(); ++i) Stroke(points[i - 1], points[i]);
  if (closed) Stroke(points.back(), points.front());
}

void HpglBackend::DrawArc(Vec2 center, double radius, double start, double sweep,
                          const Style& style) {
  if (Hidden()) return;
  const Vec2 c = Units(center);
  const double r = radius * kUnitsPerMm;
  // Arcs the plotter would draw badly, or whose numbers it cannot take,
  // go as chords.
  if (!Finite(c) || !std::isfinite(r) || !std::isfinite(start) || !std::isfinite(sweep) || r < 2 ||
      !InRange({std::fabs(c.x) + r, std::fabs(c.y) + r})) {
    Backend::DrawArc(center, radius, start, sweep, style);
    return;
  }
  UsePen(style, true);
  const Point middle{std::llround(c.x), std::llround(c.y)};
  if (std::fabs(sweep) >= kTwoPi) {
    MoveTo(middle);
    Command("CI");
    Number(r, 1);
    body_ += ',';
    Number(std::int64_t{kChordDeviation});
    body_ += ';';
    return;
  }
  MoveTo({std::llround(c.x + r * std::cos(start)), std::llround(c.y + r * std::sin(start))});
  Command("PD;AA");
  Number(middle.x);
  body_ += ',';
  Number(middle.y);
  body_ += ',';
  Number(Degrees(sweep), 3);
  body_ += ',';
  Number(std::int64_t{kChordDeviation});
  body_ += ';';
  atKnown_ = false;  // the plotter works out where the arc ends
}

void HpglBackend::FillLoops(std::span<const Vec2> points, std::span<const int> loopSizes,
                            const Style& style) {
  if (Hidden()) return;
  UsePen(style, false);
  // Fills are not clipped to the plotter's range: points beyond it (kilometres
  // off the sheet) are pulled onto its edge.
  const auto units = [](Vec2 mm) {
    const Vec2 u = Units(mm);
    const auto clamp = [](double v) {
      return std::isfinite(v) ? std::llround(std::clamp(v, -kLimit, kLimit)) : 0;
    };
    return Point{clamp(u.x), clamp(u.y)};
  };
  bool started = false;
  std::size_t first = 0;
  for (const int size : loopSizes) {
    if (size <= 0) continue;
    const std::size_t n = static_cast<std::size_t>(size);
    if (first + n > points.size()) break;
    if (!started) {
      MoveTo(units(points[first]));
      Command("PM0;");
      started = true;
    } else {
      Command("PM1;");
      atKnown_ = false;  // each loop starts with its own PU
      MoveTo(units(points[first]));
    }
    for (std::size_t i = 1; i < n; ++i) LineTo(units(points[first + i]));
    first += n;
  }
  if (!started) return;
  Command("PM2;FP0;");
  atKnown_ = false;
}

void HpglBackend::DrawPoint(Vec2 at, const Style& style) {
  if (Hidden() || !Finite(at) || !InRange(Units(at))) return;
  UsePen(style, true);
  const Vec2 u = Units(at);
  MoveTo({std::llround(u.x), std::llround(u.y)});
  Command("PD;");
}

void HpglBackend::PushClip(std::span<const Vec2> polygon) {
  Box2 box;
  for (const Vec2& p : polygon) {
    if (Finite(p)) box.Extend(Units(p));
  }
  Window w;
  if (box.Empty()) {
    w.empty = true;
  } else {
    // Outwards to whole units: the window never cuts into the clip.
    const auto down = [](double v) {
      return std::llround(std::floor(std::clamp(v, -kLimit, kLimit)));
    };
    const auto up = [](double v) {
      return std::llround(std::ceil(std::clamp(v, -kLimit, kLimit)));
    };
    w.min = {down(box.min.x), down(box.min.y)};
    w.max = {up(box.max.x), up(box.max.y)};
  }
  if (!windows_.empty()) {
    const Window& outer = windows_.back();
    w.empty = w.empty || outer.empty;
    w.min = {std::max(w.min.x, outer.min.x), std::max(w.min.y, outer.min.y)};
    w.max = {std::min(w.max.x, outer.max.x), std::min(w.max.y, outer.max.y)};
  }
  w.empty = w.empty || w.min.x > w.max.x || w.min.y > w.max.y;
  windows_.push_back(w);
  SetWindow();
}

void HpglBackend::PopClip() {
  if (windows_.empty()) return;
  windows_.pop_back();
  SetWindow();
}

void HpglBackend::SetWindow() {
  if (windows_.empty()) {
    Command("IW;");
    return;
  }
  const Window& w = windows_.back();
  if (w.empty) return;  // nothing is drawn until it is popped
  Command("IW");
  Number(w.min.x);
  body_ += ',';
  Number(w.min.y);
  body_ += ',';
  Number(w.max.x);
  body_ += ',';
  Number(w.max.y);
  body_ += ';';
}

std::string HpglBackend::Finish() {
  EndCommand();
  std::string body;
  body.swap(body_);
  body_.reserve(1024 + 48 * pens_.size());

  body_ += "IN;";
  if (!title_.empty()) {
    body_ += "CO\"";
    for (const char c : title_) {
      body_ += c == '"' ? '\'' : (static_cast<unsigned char>(c) < 0x20 ? ' ' : c);
    }
    body_ += "\";";
  }
  body_ += "PS";
  Number(std::llround(widthMm_ * kUnitsPerMm));
  body_ += ',';
  Number(std::llround(heightMm_ * kUnitsPerMm));
  body_ += ";WU0;";
  int palette = 2;  // a power of two, pen 0 included
  while (palette < static_cast<int>(pens_.size()) + 1) palette *= 2;
  body_ += "NP";
  Number(std::int64_t{palette});
  body_ += ';';
  for (std::size_t i = 0; i < pens_.size(); ++i) {
    const std::int64_t pen = static_cast<std::int64_t>(i + 1);
    const std::uint32_t rgb = pens_[i].rgb;
    body_ += "PC";
    Number(pen);
    for (int shift = 16; shift >= 0; shift -= 8) {
      body_ += ',';
      Number(std::int64_t{(rgb >> shift) & 0xFF});
    }
    body_ += ";PW";
    Number(pens_[i].firstWidthMm, 3);
    body_ += ',';
    Number(pen);
    body_ += ';';
  }
  // Round ends and joins, as on screen; arcs within kChordDeviation units.
  body_ += "LA1,4,2,4;CT1;";
  body_ += body;
  body_ += "PU;SP0;PG;";
  std::string out;
  out.swap(body_);
  return out;
}

}  // namespace sheafwork::embedded
