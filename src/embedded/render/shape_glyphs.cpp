#include "embedded/render/shape_glyphs.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>
#include <vector>

#include "embedded/render/curves.h"

namespace sheafwork::embedded {

namespace {

constexpr int kMaxDepth = 8;                        // subshapes within subshapes
constexpr std::size_t kMaxStack = 8;                // the format allows four positions
constexpr double kArcStep = std::numbers::pi / 24;  // 7.5°: flattening of arcs
constexpr double kOctant = std::numbers::pi / 4;

// The sixteen directions of a vector byte, counter-clockwise from east.
constexpr double kDirections[16][2] = {
    {1, 0},  {1, 0.5},   {1, 1},   {0.5, 1},   {0, 1},  {-0.5, 1}, {-1, 1}, {-1, 0.5},
    {-1, 0}, {-1, -0.5}, {-1, -1}, {-0.5, -1}, {0, -1}, {0.5, -1}, {1, -1}, {1, -0.5}};

int Signed(std::uint8_t b) { return b < 128 ? b : b - 256; }

class Player {
 public:
  Player(const ShapeFile& file, StrokeGlyph& glyph) : file_(file), glyph_(glyph) {}

  void Play(std::span<const std::uint8_t> bytes, int depth) {
    std::size_t i = 0;
    while (i < bytes.size()) {
      if (bytes[i] == 0) return;  // the end of this shape
      if (!Step(bytes, i, depth, true)) return;
    }
  }

  void Finish() {
    EndStroke();
    glyph_.advance = at_.x;
  }

 private:
  // Plays the command at `i` (or only moves past it when `apply` is false)
  // and moves `i` past it; false when its bytes are cut short.
  bool Step(std::span<const std::uint8_t> bytes, std::size_t& i, int depth, bool apply) {
    const std::uint8_t code = bytes[i++];
    auto need = [&](std::size_t n) { return bytes.size() - i >= n; };
    if (code >= 0x10) {
      const double length = (code >> 4) * scale_;
      const double* d = kDirections[code & 0x0F];
      if (apply) MoveBy(d[0] * length, d[1] * length);
      return true;
    }
    switch (code) {
      case 0:
        return true;
      case 1:
        if (apply) pen_ = true;
        return true;
      case 2:
        if (apply) {
          pen_ = false;
          EndStroke();
        }
        return true;
      case 3:
      case 4: {
        if (!need(1)) return false;
        const std::uint8_t factor = bytes[i++];
        if (apply && factor != 0) scale_ = code == 3 ? scale_ / factor : scale_ * factor;
        return true;
      }
      case 5:
        if (apply && stack_.size() < kMaxStack) stack_.push_back(at_);
        return true;
      case 6:
        if (apply && !stack_.empty()) {
          EndStroke();
          at_ = stack_.back();
          stack_.pop_back();
        }
        return true;
      case 7:
        return Subshape(bytes, i, depth, apply);
      case 8:
        if (!need(2)) return false;
        if (apply) MoveBy(Signed(bytes[i]) * scale_, Signed(bytes[i + 1]) * scale_);
        i += 2;
        return true;
      case 9:
        while (need(2)) {
          const int dx = Signed(bytes[i]), dy = Signed(bytes[i + 1]);
          i += 2;
          if (dx == 0 && dy == 0) return true;
          if (apply) MoveBy(dx * scale_, dy * scale_);
        }
        return false;
      case 10: {
        if (!need(2)) return false;
        const double radius = bytes[i] * scale_;
        const std::uint8_t octants = bytes[i + 1];
        i += 2;
        if (apply) OctantArc(radius, octants, std::nullopt);
        return true;
      }
      case 11: {
        if (!need(5)) return false;
        const Offsets offsets{bytes[i] * kOctant / 256, bytes[i + 1] * kOctant / 256};
        const double radius = (bytes[i + 2] * 256 + bytes[i + 3]) * scale_;
        const std::uint8_t octants = bytes[i + 4];
        i += 5;
        if (apply) OctantArc(radius, octants, offsets);
        return true;
      }
      case 12:
        if (!need(3)) return false;
        if (apply) Bulge(Signed(bytes[i]), Signed(bytes[i + 1]), Signed(bytes[i + 2]));
        i += 3;
        return true;
      case 13:
        while (need(2)) {
          const int dx = Signed(bytes[i]), dy = Signed(bytes[i + 1]);
          i += 2;
          if (dx == 0 && dy == 0) return true;
          if (!need(1)) return false;
          if (apply) Bulge(dx, dy, Signed(bytes[i]));
          ++i;
        }
        return false;
      case 14:
        // The next command draws vertical text only; text is laid
        // horizontally here.
        return i >= bytes.size() || Step(bytes, i, depth, false);
      default:
        return true;  // 15: no meaning; nothing to do
    }
  }

  bool Subshape(std::span<const std::uint8_t> bytes, std::size_t& i, int depth, bool apply) {
    std::uint32_t number = 0;
    switch (file_.Kind()) {
      case ShapeFileKind::Shapes:
        if (bytes.size() - i < 1) return false;
        number = bytes[i++];
        break;
      case ShapeFileKind::Unifont:
        if (bytes.size() - i < 2) return false;
        number = static_cast<std::uint32_t>(bytes[i] << 8 | bytes[i + 1]);
        i += 2;
        break;
      case ShapeFileKind::BigFont:
        if (bytes.size() - i < 1) return false;
        number = bytes[i++];
        if (number == 0) {
          // Extended big font: a two-byte number, then where the shape
          // goes and how wide and tall it is drawn.
          if (bytes.size() - i < 6) return false;
          number = static_cast<std::uint32_t>(bytes[i] << 8 | bytes[i + 1]);
          const Vec2 origin{Signed(bytes[i + 2]) * scale_, Signed(bytes[i + 3]) * scale_};
          const double width = bytes[i + 4], height = bytes[i + 5];
          i += 6;
          if (apply && depth < kMaxDepth) Placed(number, origin, width, height, depth);
          return true;
        }
        break;
    }
    if (apply && depth < kMaxDepth) Play(file_.Shape(number), depth + 1);
    return true;
  }

  // A shape drawn apart, its vector lengths scaled so that its height is
  // `height` and its width `width` in the font's vector lengths, its origin
  // at `origin`.
  void Placed(std::uint32_t number, Vec2 origin, double width, double height, int depth) {
    const std::span<const std::uint8_t> bytes = file_.Shape(number);
    if (bytes.empty()) return;
    StrokeGlyph part;
    Player inner(file_, part);
    inner.Play(bytes, depth + 1);
    inner.Finish();
    EndStroke();
    const double unit = file_.Above() > 0 ? file_.Above() : 1;
    const double sx = width > 0 ? scale_ * width / unit : scale_ * height / unit;
    const double sy = scale_ * height / unit;
    for (const Vec2& p : part.points)
      glyph_.points.push_back({origin.x + p.x * sx, origin.y + p.y * sy});
    glyph_.sizes.insert(glyph_.sizes.end(), part.sizes.begin(), part.sizes.end());
  }

  void MoveBy(double dx, double dy) { MoveTo({at_.x + dx, at_.y + dy}); }

  void MoveTo(Vec2 to) {
    if (pen_) {
      if (strokeStart_ == kNone) {
        strokeStart_ = glyph_.points.size();
        glyph_.points.push_back(at_);
      }
      glyph_.points.push_back(to);
    }
    at_ = to;
  }

  void EndStroke() {
    if (strokeStart_ == kNone) return;
    const std::size_t n = glyph_.points.size() - strokeStart_;
    if (n >= 2) {
      glyph_.sizes.push_back(static_cast<int>(n));
    } else {
      glyph_.points.resize(strokeStart_);
    }
    strokeStart_ = kNone;
  }

  // How far a fractional arc starts past the boundary of its first octant
  // and ends past the boundary of its last one, counter-clockwise.
  struct Offsets {
    double start = 0;
    double end = 0;
  };

  // An arc starting at the pen: `octants` holds the direction (its sign
  // bit: clockwise), the starting octant (bits 4 to 6) and the number of
  // octants (bits 0 to 2, 0 for all eight): those it spans for an octant
  // arc, those it reaches into for a fractional one.
  void OctantArc(double radius, std::uint8_t octants, const std::optional<Offsets>& offsets) {
    const bool clockwise = (octants & 0x80) != 0;
    const int first = (octants >> 4) & 7;
    int count = octants & 7;
    if (count == 0) count = 8;
    double start = first * kOctant;
    double end = start + (clockwise ? -count : count) * kOctant;
    if (offsets) {
      const int last = clockwise ? first - (count - 1) : first + (count - 1);
      start += offsets->start;
      end = last * kOctant + offsets->end;
    }
    double sweep = end - start;
    if (offsets) {
      if (clockwise && sweep > 0) sweep -= 2 * std::numbers::pi;
      if (!clockwise && sweep < 0) sweep += 2 * std::numbers::pi;
    }
    const Vec2 center{at_.x - radius * std::cos(start), at_.y - radius * std::sin(start)};
    ArcAround(center, radius, start, sweep);
  }

  void Bulge(int dx, int dy, int bulge) {
    const Vec2 to{at_.x + dx * scale_, at_.y + dy * scale_};
    if (bulge == 0 || (dx == 0 && dy == 0)) {
      MoveTo(to);
      return;
    }
    const embedded::BulgeArc arc = ArcFromBulge(at_, to, bulge / 127.0);
    ArcAround(arc.center, arc.radius, arc.startAngle, arc.sweep);
    at_ = to;  // exactly where the displacement says
  }

  void ArcAround(Vec2 center, double radius, double start, double sweep) {
    const int steps = std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / kArcStep)));
    for (int k = 1; k <= steps; ++k) {
      const double a = start + sweep * k / steps;
      MoveTo({center.x + radius * std::cos(a), center.y + radius * std::sin(a)});
    }
  }

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  const ShapeFile& file_;
  StrokeGlyph& glyph_;
  Vec2 at_{0, 0};
  bool pen_ = true;  // each shape starts drawing
  double scale_ = 1;
  std::vector<Vec2> stack_;
  std::size_t strokeStart_ = kNone;
};

}  // namespace

std::optional<StrokeGlyph> ShapeGlyph(const ShapeFile& file, std::uint32_t number) {
  const std::span<const std::uint8_t> bytes = file.Shape(number);
  if (bytes.empty()) return std::nullopt;
  StrokeGlyph glyph;
  Player player(file, glyph);
  player.Play(bytes, 0);
  player.Finish();
  const double unit = file.IsFont() ? file.Above() : 1.0;
  glyph.advance /= unit;
  for (Vec2& p : glyph.points) {
    p = {p.x / unit, p.y / unit};
    glyph.box.Extend(p);
  }
  return glyph;
}

}  // namespace sheafwork::embedded
