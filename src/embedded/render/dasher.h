#pragma once
// Cuts flattened curves into the dashes of a linetype pattern. The pattern
// runs on from one call to the next until Restart, so that a polyline can
// keep its phase across vertices or start again at each one.

#include <cstddef>
#include <span>
#include <vector>

#include "embedded/model/geometry.h"

namespace sheafwork::embedded {

class Dasher {
 public:
  enum class Result {
    kDashed,      ///< the pieces of the dashes were appended
    kContinuous,  ///< shorter than one pattern: appended as one piece
    kTooDense,    ///< more dashes than allowed: nothing appended
  };

  /// Sets the pattern: `elements` (> 0 dash, < 0 gap, 0 dot) times `scale`
  /// give lengths in the units of the points; a dot becomes a dash
  /// `dotLength` long. False, and nothing to dash, when the pattern has no
  /// gap or no length (a continuous line). Restarts the phase.
  bool SetPattern(std::span<const double> elements, double scale, double dotLength);
  /// Whether a pattern with gaps is set.
  bool Active() const { return active_; }
  /// The pattern starts again at its first element.
  void Restart();
  /// At most this many pieces per call; more and Cut draws nothing.
  void SetMaxPieces(std::size_t maxPieces) { maxPieces_ = maxPieces; }

  /// Appends to `pieces` the dashes of the polyline `points` (closed adds
  /// the segment back to the first point), each an open polyline whose
  /// point count goes to `sizes`, running on from the current phase. A run
  /// shorter than one pattern is appended whole, as a continuous line.
  Result Cut(std::span<const Vec2> points, bool closed, std::vector<Vec2>& pieces,
             std::vector<int>& sizes);

  /// The pattern as an output that dashes lines itself takes it: lengths
  /// alternately drawn and skipped, starting with one drawn (a dot is drawn
  /// 0 long), and how far into them a line starts.
  struct OnOff {
    std::vector<double> lengths;
    double offset = 0;
  };
  /// What Cut would do with the same polyline, for such an output: kDashed
  /// with the pattern and phase the polyline starts at in `dashes` (the
  /// phase moves on as Cut moves it); kContinuous and kTooDense as Cut
  /// returns them, the phase left as it is. A dot is drawn where Cut draws
  /// it, without its length.
  Result Follow(std::span<const Vec2> points, bool closed, OnOff& dashes);

 private:
  void Advance();
  /// What Cut and Follow make of the polyline: kContinuous when it is too
  /// short to show the pattern once, kTooDense when it would take more
  /// pieces than allowed, else kDashed. `total` gets its length.
  Result Classify(std::span<const Vec2> points, bool closed, double& total) const;
  /// Where the phase stands, from the pattern's start.
  double Position() const;
  /// Moves the phase to `position` from the pattern's start.
  void MoveTo(double position);
  void BeginPiece(Vec2 at, std::vector<Vec2>& pieces);
  void EndPiece(std::vector<Vec2>& pieces, std::vector<int>& sizes);

  std::vector<double> lengths_;  ///< scaled, signed as in the pattern; dots are 0
  double patternLength_ = 0;
  double dotLength_ = 0;
  bool active_ = false;
  std::size_t maxPieces_ = 50000;

  std::size_t element_ = 0;
  double remaining_ = 0;  ///< of the current element
  std::size_t pieceStart_ = 0;
  bool inPiece_ = false;
};

}  // namespace sheafwork::embedded
