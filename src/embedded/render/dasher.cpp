#include "embedded/render/dasher.h"

#include <algorithm>
#include <cmath>

namespace sheafwork::embedded {

bool Dasher::SetPattern(std::span<const double> elements, double scale, double dotLength) {
  lengths_.clear();
  patternLength_ = 0;
  bool hasGap = false;
  scale = std::fabs(scale);
  for (const double e : elements) {
    if (!std::isfinite(e)) continue;
    lengths_.push_back(e * scale);
    patternLength_ += std::fabs(e * scale);
    hasGap = hasGap || e < 0;
  }
  dotLength_ = std::max(dotLength, 0.0);
  active_ = hasGap && std::isfinite(patternLength_) && patternLength_ > 0;
  Restart();
  return active_;
}

void Dasher::Restart() {
  element_ = 0;
  remaining_ = lengths_.empty() ? 0 : std::fabs(lengths_[0]);
  inPiece_ = false;
}

void Dasher::Advance() {
  element_ = (element_ + 1) % lengths_.size();
  remaining_ = std::fabs(lengths_[element_]);
}

void Dasher::BeginPiece(Vec2 at, std::vector<Vec2>& pieces) {
  pieceStart_ = pieces.size();
  pieces.push_back(at);
  inPiece_ = true;
}

void Dasher::EndPiece(std::vector<Vec2>& pieces, std::vector<int>& sizes) {
  if (!inPiece_) return;
  const std::size_t count = pieces.size() - pieceStart_;
  if (count >= 2) {
    sizes.push_back(static_cast<int>(count));
  } else {
    pieces.resize(pieceStart_);
  }
  inPiece_ = false;
}

double Dasher::Position() const {
  double position = 0;
  for (std::size_t k = 0; k < element_; ++k) position += std::fabs(lengths_[k]);
  return position + std::fabs(lengths_[element_]) - remaining_;
}

void Dasher::MoveTo(double position) {
  double start = 0;
  for (std::size_t k = 0; k < lengths_.size(); ++k) {
    const double length = std::fabs(lengths_[k]);
    // A dot right where the phase lands is drawn next, as Cut would.
    if (position < start + length || (length == 0 && position <= start)) {
      element_ = k;
      remaining_ = length - (position - start);
      return;
    }
    start += length;
  }
  Restart();
}

Dasher::Result Dasher::Classify(std::span<const Vec2> points, bool closed, double& total) const {
  const std::size_t n = points.size();
  total = 0;
  for (std::size_t i = 0; n >= 2 && i < (closed ? n : n - 1); ++i) {
    const Vec2 a = points[i], b = points[(i + 1) % n];
    total += std::hypot(b.x - a.x, b.y - a.y);
  }
  // Too short to show the pattern once: a continuous line, as drafters
  // expect of short segments.
  if (!active_ || total < patternLength_) return Result::kContinuous;
  const double estimate =
      (total / patternLength_ + 1) * static_cast<double>(std::max<std::size_t>(lengths_.size(), 1));
  if (!(estimate <= static_cast<double>(maxPieces_))) return Result::kTooDense;
  return Result::kDashed;
}

Dasher::Result Dasher::Follow(std::span<const Vec2> points, bool closed, OnOff& dashes) {
  dashes.lengths.clear();
  dashes.offset = 0;
  double total = 0;
  if (const Result kind = Classify(points, closed, total); kind != Result::kDashed) return kind;

  // Neighbouring elements of one kind merge; the list wraps around, so the
  // last merges into the first when they are of one kind, and a list that
  // starts with a gap starts at the next element instead. `origin` is where
  // the list starts in the pattern.
  std::vector<double>& out = dashes.lengths;
  std::vector<bool> drawn;
  for (const double e : lengths_) {
    const bool on = e >= 0;
    if (!drawn.empty() && drawn.back() == on) {
      out.back() += std::fabs(e);
    } else {
      out.push_back(std::fabs(e));
      drawn.push_back(on);
    }
  }
  if (std::find(drawn.begin(), drawn.end(), true) == drawn.end()) {
    out.clear();  // gaps only: nothing is drawn
    MoveTo(std::fmod(Position() + total, patternLength_));
    return Result::kDashed;
  }
  double origin = 0;
  if (out.size() > 1 && drawn.front() == drawn.back()) {
    origin = patternLength_ - out.back();
    out.front() += out.back();
    out.pop_back();
    drawn.pop_back();
  }
  if (!drawn.front()) {
    origin += out.front();
    std::rotate(out.begin(), out.begin() + 1, out.end());
  }
  dashes.offset = std::fmod(Position() - origin + 2 * patternLength_, patternLength_);
  MoveTo(std::fmod(Position() + total, patternLength_));
  return Result::kDashed;
}

Dasher::Result Dasher::Cut(std::span<const Vec2> points, bool closed, std::vector<Vec2>& pieces,
                           std::vector<int>& sizes) {
  const std::size_t n = points.size();
  if (n < 2) return Result::kDashed;
  const std::size_t segments = closed ? n : n - 1;
  double total = 0;
  const Result kind = Classify(points, closed, total);
  if (kind == Result::kContinuous) {
    pieces.insert(pieces.end(), points.begin(), points.end());
    if (closed) pieces.push_back(points[0]);
    sizes.push_back(static_cast<int>(n + (closed ? 1 : 0)));
    return kind;
  }
  if (kind == Result::kTooDense) return kind;

  const double done = patternLength_ * 1e-12;
  for (std::size_t i = 0; i < segments; ++i) {
    const Vec2 a = points[i], b = points[(i + 1) % n];
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    if (!(length > 0)) continue;
    const Vec2 dir{(b.x - a.x) / length, (b.y - a.y) / length};
    const auto at = [&](double s) { return Vec2{a.x + dir.x * s, a.y + dir.y * s}; };
    double s = 0;
    while (s < length) {
      const double element = lengths_[element_];
      if (element == 0) {  // a dot: a very short dash that takes no room
        EndPiece(pieces, sizes);
        BeginPiece(at(s), pieces);
        pieces.push_back(at(std::min(s + dotLength_, length)));
        EndPiece(pieces, sizes);
        Advance();
        continue;
      }
      const double step = std::min(remaining_, length - s);
      if (element > 0 && !inPiece_) BeginPiece(at(s), pieces);
      s += step;
      remaining_ -= step;
      if (element > 0) pieces.push_back(s >= length ? b : at(s));
      if (remaining_ <= done) {
        if (element > 0) EndPiece(pieces, sizes);
        Advance();
      }
    }
  }
  EndPiece(pieces, sizes);
  return Result::kDashed;
}

}  // namespace sheafwork::embedded
