#pragma once
// The backend that paints with a QPainter on any paint device. The
// painter's transform must map sheet millimetres (y up) to the device.
// Lines and areas go out in device units (see DeviceGrid), the painter's
// world transform set to identity while the backend lives.

#include <QImage>
#include <QLineF>
#include <QPointF>
#include <QTransform>
#include <map>
#include <string>
#include <vector>

#include "embedded/paint/device_grid.h"
#include "embedded/render/backend.h"

class QPainter;

namespace sheafwork::embedded {

class PainterBackend final : public Backend {
 public:
  explicit PainterBackend(QPainter& painter);
  ~PainterBackend() override;
  PainterBackend(const PainterBackend&) = delete;
  PainterBackend& operator=(const PainterBackend&) = delete;

  void DrawLines(std::span<const Vec2> pairs, const Style& style) override;
  void DrawPolyline(std::span<const Vec2> points, bool closed, const Style& style) override;
  void DrawArc(Vec2 center, double radius, double start, double sweep, const Style& style) override;
  void FillLoops(std::span<const Vec2> points, std::span<const int> loopSizes,
                 const Style& style) override;
  void FillPath(const CurvePath& path, const Style& style) override;
  void DrawPoint(Vec2 at, const Style& style) override;
  bool DrawImage(const ImageRun& image) override;  // painter_images.cpp
  void PushClip(std::span<const Vec2> polygon) override;
  void PushClipLoops(std::span<const Vec2> points, std::span<const int> loopSizes) override;
  void PopClip() override;
  void Flush() override;

 private:
  void UsePen(const Style& style);
  void UseFill(const Style& style);

  QPainter& painter_;
  QTransform base_;
  DeviceGrid grid_;
  std::vector<QLineF> lines_;
  Style lineStyle_;
  Style pen_;
  bool penSet_ = false;
  std::uint32_t fill_ = 0;
  bool fillSet_ = false;
  std::vector<QPointF> points_;
  std::map<std::string, QImage> images_;  ///< by path; null when unreadable
};

}  // namespace sheafwork::embedded
