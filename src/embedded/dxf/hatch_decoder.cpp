// HATCH: boundary paths, pattern lines, solid fill. The tags are a sequence
// whose meaning depends on what came before, so they are read with a cursor.

#include <algorithm>

#include "embedded/dxf/entity_decoders.h"

namespace sheafwork::embedded {
namespace {

class Cursor {
 public:
  Cursor(const Context& ctx, std::span<const DataTag* const> tags) : ctx_(ctx), tags_(tags) {}

  bool AtEnd() const { return i_ >= tags_.size(); }
  int Code() const { return CodeAfter(0); }
  /// The code `n` tags further on, -1 past the end.
  int CodeAfter(std::size_t n) const {
    return i_ + n >= tags_.size() ? -1 : tags_[i_ + n]->tag.code;
  }
  const Tag& Take() { return tags_[i_++]->tag; }
  void Skip() { ++i_; }
  double Real() { return ctx_.Real(Take()); }
  std::int32_t Long() { return ctx_.Long(Take()); }
  /// Reads the value if the next tag has `code`.
  bool TakeReal(int code, double& v) {
    if (Code() != code) return false;
    v = Real();
    return true;
  }
  std::size_t Remaining() const { return AtEnd() ? 0 : tags_.size() - i_; }
  std::size_t Count() {
    const std::int32_t n = Long();
    return n > 0 ? static_cast<std::size_t>(n) : 0;
  }

 private:
  const Context& ctx_;
  std::span<const DataTag* const> tags_;
  std::size_t i_ = 0;
};

// A count in the file sizes a reservation only up to the number of tags
// left, and only once per hatch (loops, pattern lines): the vectors inside
// each loop grow with what is really there, so that many loops with huge
// counts cannot reserve more than the file holds.
template <typename V>
void Reserve(V& v, std::size_t n, const Cursor& c) {
  v.reserve(std::min(n, c.Remaining()));
}

Vec2 ReadPoint2(Cursor& c, int xCode) {
  Vec2 p;
  c.TakeReal(xCode, p.x);
  c.TakeReal(xCode + 10, p.y);
  return p;
}

void ReadPolylinePath(Cursor& c, HatchLoop& loop) {
  loop.isPolyline = true;
  bool hasBulge = false;
  std::size_t count = 0;
  for (;;) {
    const int code = c.Code();
    if (code == 72) {
      hasBulge = c.Long() != 0;
    } else if (code == 73) {
      loop.closed = c.Long() != 0;
    } else if (code == 93) {
      count = c.Count();
    } else {
      break;
    }
  }
  for (std::size_t i = 0; i < count && c.Code() == 10; ++i) {
    PolylineVertex v;
    const Vec2 p = ReadPoint2(c, 10);
    v.point = {p.x, p.y, 0};
    if (hasBulge) c.TakeReal(42, v.bulge);
    loop.polyline.push_back(v);
  }
}

// `last` tells whether the edge ends its path: only then can a 97 be the
// path's source-object count rather than the edge's fit-point count.
void ReadSplineEdge(Cursor& c, HatchEdge& e, bool last) {
  for (;;) {
    switch (c.Code()) {
      case 94:
        e.degree = c.Long();
        break;
      case 73:
      case 74:
      case 95:
      case 96:
        // Rational and periodic follow from the weights and knots, and the
        // counts from the values that follow.
        c.Skip();
        break;
      case 97: {
        // The fit-point count of newer files (written even when 0), or, after
        // the last edge, the path's source-object count: fit data is followed
        // by fit points, tangents or that second count.
        const int next = c.CodeAfter(1);
        if (last && next != 11 && next != 12 && next != 13 && next != 97) return;
        c.Skip();  // a count; the values say how many there are
        break;
      }
      case 40:
        e.knots.push_back(c.Real());
        break;
      case 10:
        e.controlPoints.push_back(ReadPoint2(c, 10));
        break;
      case 42:
        e.weights.push_back(c.Real());
        break;
      case 11:
        e.fitPoints.push_back(ReadPoint2(c, 11));
        break;
      case 12:
      case 13:
      case 22:
      case 23:
        c.Skip();  // end tangents
        break;
      default:
        return;
    }
  }
}

HatchEdge ReadEdge(Cursor& c, int type, bool last) {
  HatchEdge e;
  switch (type) {
    case 1:
      e.kind = HatchEdge::Kind::Line;
      e.start = ReadPoint2(c, 10);
      e.end = ReadPoint2(c, 11);
      break;
    case 2:
      e.kind = HatchEdge::Kind::Arc;
      e.center = ReadPoint2(c, 10);
      c.TakeReal(40, e.radius);
      c.TakeReal(50, e.startAngle);
      c.TakeReal(51, e.endAngle);
      if (c.Code() == 73) e.counterClockwise = c.Long() != 0;
      break;
    case 3:
      e.kind = HatchEdge::Kind::EllipseArc;
      e.center = ReadPoint2(c, 10);
      e.majorAxis = ReadPoint2(c, 11);
      c.TakeReal(40, e.ratio);
      c.TakeReal(50, e.startAngle);
      c.TakeReal(51, e.endAngle);
      if (c.Code() == 73) e.counterClockwise = c.Long() != 0;
      break;
    default:
      e.kind = HatchEdge::Kind::Spline;
      ReadSplineEdge(c, e, last);
      break;
  }
  return e;
}

void ReadEdgePath(Cursor& c, HatchLoop& loop) {
  if (c.Code() != 93) return;
  const std::size_t count = c.Count();
  for (std::size_t i = 0; i < count && c.Code() == 72; ++i) {
    const std::int32_t type = c.Long();
    loop.edges.push_back(ReadEdge(c, type, i + 1 == count));
  }
}

void ReadPath(Cursor& c, HatchLoop& loop) {
  loop.flags = c.Long();  // 92
  if ((loop.flags & 2) != 0) {
    ReadPolylinePath(c, loop);
  } else {
    ReadEdgePath(c, loop);
  }
  // Source boundary objects: a count and their handles.
  if (c.Code() == 97) {
    c.Skip();
    while (c.Code() == 330) c.Skip();
  }
}

void ReadPatternLine(Cursor& c, HatchPatternLine& line) {
  c.TakeReal(53, line.angle);
  c.TakeReal(43, line.base.x);
  c.TakeReal(44, line.base.y);
  c.TakeReal(45, line.offset.x);
  c.TakeReal(46, line.offset.y);
  if (c.Code() != 79) return;
  const std::size_t dashes = c.Count();
  for (std::size_t i = 0; i < dashes && c.Code() == 49; ++i) line.dashes.push_back(c.Real());
}

}  // namespace

Hatch DecodeHatch(Context& ctx, std::span<const DataTag* const> own) {
  Hatch h;
  Cursor c(ctx, own);
  while (!c.AtEnd()) {
    switch (c.Code()) {
      case 30:
        h.elevation = c.Real();
        break;
      case 210:
      case 220:
      case 230:
        SetPoint(ctx, c.Take(), 210, h.extrusion);
        break;
      case 2:
        h.pattern = ctx.Text(c.Take());
        break;
      case 70:
        h.solid = c.Long() != 0;
        break;
      case 91: {
        const std::size_t paths = c.Count();
        Reserve(h.loops, paths, c);
        for (std::size_t i = 0; i < paths && c.Code() == 92; ++i)
          ReadPath(c, h.loops.emplace_back());
        break;
      }
      case 75:
        h.style = static_cast<std::int16_t>(c.Long());
        break;
      case 78: {
        const std::size_t lines = c.Count();
        Reserve(h.patternLines, lines, c);
        for (std::size_t i = 0; i < lines && c.Code() == 53; ++i) {
          ReadPatternLine(c, h.patternLines.emplace_back());
        }
        break;
      }
      case 98: {
        // Seed points, whose 10/20 must not be read as the elevation point.
        const std::size_t seeds = c.Count();
        for (std::size_t i = 0; i < seeds && c.Code() == 10; ++i) ReadPoint2(c, 10);
        break;
      }
      default:
        c.Skip();
        break;
    }
  }
  return h;
}

}  // namespace sheafwork::embedded
