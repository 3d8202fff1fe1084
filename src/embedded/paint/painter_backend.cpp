#include "embedded/paint/painter_backend.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QRectF>
#include <QString>
#include <algorithm>
#include <cmath>

namespace sheafwork::embedded {

namespace {

constexpr std::size_t kLineBatch = 4096;
constexpr std::size_t kPolylineChunk = 512;  // long polylines are slow to antialias whole

QColor ToColor(std::uint32_t rgb) {
  return QColor(static_cast<int>((rgb >> 16) & 0xFF), static_cast<int>((rgb >> 8) & 0xFF),
                static_cast<int>(rgb & 0xFF));
}

}  // namespace

PainterBackend::PainterBackend(QPainter& painter)
    : painter_(painter),
      base_(painter.worldTransform()),
      grid_(base_, DeviceGrid::SnapsFor(base_)) {
  lines_.reserve(kLineBatch);
  painter_.setWorldTransform(QTransform());
}

PainterBackend::~PainterBackend() {
  Flush();
  painter_.setWorldTransform(base_);
}

void PainterBackend::Flush() {
  if (lines_.empty()) return;
  UsePen(lineStyle_);
  painter_.drawLines(lines_.data(), static_cast<int>(lines_.size()));
  lines_.clear();
}

// After a restore() the painter's pen and brush are unknown (neither flag
// set); switching to stroking always clears the brush and vice versa.
void PainterBackend::UsePen(const Style& style) {
  if (penSet_ && pen_ == style) return;
  if (!penSet_) {
    painter_.setBrush(Qt::NoBrush);
    fillSet_ = false;
  }
  QPen pen(ToColor(style.rgb), style.widthMm * grid_.Scale(), Qt::SolidLine, Qt::RoundCap,
           Qt::RoundJoin);
  pen.setCosmetic(false);
  painter_.setPen(pen);
  pen_ = style;
  penSet_ = true;
}

void PainterBackend::UseFill(const Style& style) {
  if (!fillSet_) {
    painter_.setPen(Qt::NoPen);
    penSet_ = false;
  } else if (fill_ == style.rgb) {
    return;
  }
  painter_.setBrush(ToColor(style.rgb));
  fill_ = style.rgb;
  fillSet_ = true;
}

void PainterBackend::DrawLines(std::span<const Vec2> pairs, const Style& style) {
  if (!lines_.empty() && !(lineStyle_ == style)) Flush();
  lineStyle_ = style;
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
    lines_.emplace_back(grid_.Map(pairs[i]), grid_.Map(pairs[i + 1]));
    if (lines_.size() >= kLineBatch) Flush();
  }
}

void PainterBackend::DrawPolyline(std::span<const Vec2> points, bool closed, const Style& style) {
  if (points.size() < 2) return;
  Flush();
  UsePen(style);
  points_.clear();
  for (const Vec2& p : points) {
    const QPointF q = grid_.Map(p);
    if (points_.empty() || q != points_.back()) points_.push_back(q);  // snapped together
  }
  if (points_.size() == 1) points_.push_back(points_.front());  // still a dot
  if (closed) points_.push_back(points_.front());
  // Chunks share their end points so that the round joins stay continuous.
  for (std::size_t start = 0; start + 1 < points_.size(); start += kPolylineChunk - 1) {
    const std::size_t count = std::min(kPolylineChunk, points_.size() - start);
    painter_.drawPolyline(points_.data() + start, static_cast<int>(count));
  }
}

void PainterBackend::DrawArc(Vec2 center, double radius, double start, double sweep,
                             const Style& style) {
  Flush();
  UsePen(style);
  const QRectF box(center.x - radius, center.y - radius, 2 * radius, 2 * radius);
  QPainterPath path;
  if (std::fabs(sweep) >= kTwoPi) {
    path.addEllipse(box);
  } else {
    // Qt measures arc angles towards -y; our y runs up, so both angles flip.
    const double startDeg = Degrees(-start);
    path.arcMoveTo(box, startDeg);
    path.arcTo(box, startDeg, Degrees(-sweep));
  }
  painter_.drawPath(grid_.MapPath(path));
}

void PainterBackend::FillLoops(std::span<const Vec2> points, std::span<const int> loopSizes,
                               const Style& style) {
  Flush();
  UseFill(style);
  if (loopSizes.size() == 1) {
    points_.clear();
    for (const Vec2& p : points.first(static_cast<std::size_t>(loopSizes[0]))) {
      points_.push_back(grid_.Map(p));
    }
    painter_.drawPolygon(points_.data(), static_cast<int>(points_.size()), Qt::OddEvenFill);
    return;
  }
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  std::size_t first = 0;
  for (int size : loopSizes) {
    if (size <= 0) continue;
    path.moveTo(grid_.Map(points[first]));
    for (int i = 1; i < size; ++i)
      path.lineTo(grid_.Map(points[first + static_cast<std::size_t>(i)]));
    path.closeSubpath();
    first += static_cast<std::size_t>(size);
  }
  painter_.drawPath(path);
}

void PainterBackend::FillPath(const CurvePath& curves, const Style& style) {
  Flush();
  UseFill(style);
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  std::size_t k = 0;
  for (CurvePath::Verb verb : curves.verbs) {
    switch (verb) {
      case CurvePath::Verb::Move:
        path.moveTo(grid_.Map(curves.points[k++]));
        break;
      case CurvePath::Verb::Line:
        path.lineTo(grid_.Map(curves.points[k++]));
        break;
      case CurvePath::Verb::Cubic:
        path.cubicTo(grid_.Map(curves.points[k]), grid_.Map(curves.points[k + 1]),
                     grid_.Map(curves.points[k + 2]));
        k += 3;
        break;
      case CurvePath::Verb::Close:
        path.closeSubpath();
        break;
    }
  }
  painter_.drawPath(path);
}

void PainterBackend::DrawPoint(Vec2 at, const Style& style) {
  Flush();
  UseFill(style);
  const double r = std::max(style.widthMm / 2, 0.05) * grid_.Scale();
  painter_.drawEllipse(grid_.Map(at), r, r);
}

void PainterBackend::PushClip(std::span<const Vec2> polygon) {
  const int size = static_cast<int>(polygon.size());
  PushClipLoops(polygon, {&size, 1});
}

void PainterBackend::PushClipLoops(std::span<const Vec2> points, std::span<const int> loopSizes) {
  Flush();
  painter_.save();
  QPainterPath path;  // odd-even filled
  std::size_t at = 0;
  for (const int size : loopSizes) {
    const std::size_t end = std::min(points.size(), at + static_cast<std::size_t>(size));
    if (at < end) {
      path.moveTo(points[at].x, points[at].y);
      for (std::size_t i = at + 1; i < end; ++i) path.lineTo(points[i].x, points[i].y);
      path.closeSubpath();
    }
    at = end;
  }
  painter_.setClipPath(base_.map(path),
                       painter_.hasClipping() ? Qt::IntersectClip : Qt::ReplaceClip);
}

void PainterBackend::PopClip() {
  Flush();
  painter_.restore();
  penSet_ = false;
  fillSet_ = false;
}

}  // namespace sheafwork::embedded
