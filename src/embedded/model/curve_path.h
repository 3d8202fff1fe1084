#pragma once
// An area's outline made of straight lines and cubic Bézier curves, as
// glyphs are drawn: closed loops filled by the odd-even rule. Affine maps
// keep it exact, so it is built where it is drawn and flattened, if at all,
// only by an output that has no curves of its own.

#include <cstdint>
#include <vector>

#include "embedded/model/geometry.h"

namespace sheafwork::embedded {

struct CurvePath {
  enum class Verb : std::uint8_t {
    Move,   ///< one point: starts a loop
    Line,   ///< one point
    Cubic,  ///< three points: two control points, then the end
    Close,  ///< no point: back to the loop's start
  };
  std::vector<Verb> verbs;
  std::vector<Vec2> points;

  void MoveTo(Vec2 p) {
    verbs.push_back(Verb::Move);
    points.push_back(p);
  }
  void LineTo(Vec2 p) {
    verbs.push_back(Verb::Line);
    points.push_back(p);
  }
  void CubicTo(Vec2 c1, Vec2 c2, Vec2 p) {
    verbs.push_back(Verb::Cubic);
    points.insert(points.end(), {c1, c2, p});
  }
  void Close() { verbs.push_back(Verb::Close); }
  bool Empty() const { return verbs.empty(); }
  void Clear() {
    verbs.clear();
    points.clear();
  }
};

/// Appends the path's loops as polygons: `sizes` splits `points`, each loop
/// closed implicitly; curves cut into chords no farther than `tolerance`
/// from them. Loops of fewer than three points are left out.
void FlattenPath(const CurvePath& path, double tolerance, std::vector<Vec2>& points,
                 std::vector<int>& sizes);

}  // namespace sheafwork::embedded
