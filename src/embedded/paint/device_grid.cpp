#include "embedded/paint/device_grid.h"

#include <QPainterPath>

namespace sheafwork::embedded {

DeviceGrid::DeviceGrid(const QTransform& toDevice, bool snap)
    : t_(toDevice), scale_(std::sqrt(std::fabs(toDevice.determinant()))), snap_(snap) {}

QPainterPath DeviceGrid::MapPath(const QPainterPath& path) const {
  QPainterPath mapped = t_.map(path);
  if (!snap_) return mapped;
  for (int i = 0; i < mapped.elementCount(); ++i) {
    const QPainterPath::Element e = mapped.elementAt(i);
    mapped.setElementPositionAt(i, std::round(e.x), std::round(e.y));
  }
  return mapped;
}

}  // namespace sheafwork::embedded
