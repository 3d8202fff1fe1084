#pragma once
// Where the painter backend's points land: sheet millimetres mapped to the
// device's own units, and on fine devices (600 dpi and more: PDF files,
// printers) rounded to whole units. A PDF writer spells out every
// coordinate and then compresses the page; whole numbers halve the digits,
// and with them the size of the page and the time spent compressing it. At
// 600 dpi a unit is 0.042 mm, well under what a plotter draws.

#include <QPointF>
#include <QTransform>
#include <cmath>

#include "embedded/model/geometry.h"

class QPainterPath;

namespace sheafwork::embedded {

class DeviceGrid {
 public:
  static constexpr int kSnapDpi = 600;

  DeviceGrid() = default;
  /// `toDevice` maps sheet millimetres to device units; `snap` rounds the
  /// mapped points to whole units.
  DeviceGrid(const QTransform& toDevice, bool snap);

  /// Whether a device of `dpi` dots per inch gets whole units.
  static bool SnapsAt(double dpi) { return dpi >= kSnapDpi; }
  /// Whether points mapped by `toDevice` (sheet millimetres to device
  /// units) get whole units: the units must be fine, whatever resolution
  /// the device reports (an SVG file paints in millimetres).
  static bool SnapsFor(const QTransform& toDevice) {
    return SnapsAt(std::sqrt(std::fabs(toDevice.determinant())) * 25.4);
  }

  QPointF Map(Vec2 p) const {
    const double x = t_.m11() * p.x + t_.m21() * p.y + t_.dx();
    const double y = t_.m12() * p.x + t_.m22() * p.y + t_.dy();
    return snap_ ? QPointF(std::round(x), std::round(y)) : QPointF(x, y);
  }
  /// Device units per sheet millimetre, for lengths (pen widths, radii).
  double Scale() const { return scale_; }
  bool Snaps() const { return snap_; }
  /// `path`, in sheet millimetres, in device units; its points (curve
  /// control points too) rounded when snapping.
  QPainterPath MapPath(const QPainterPath& path) const;

 private:
  QTransform t_;
  double scale_ = 1;
  bool snap_ = false;
};

}  // namespace sheafwork::embedded
