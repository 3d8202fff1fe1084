#include "embedded/render/point_style.h"

#include <cmath>

namespace sheafwork::embedded {

double PointSymbolSize(double pdSize, double viewHeight) {
  if (pdSize > 0) return pdSize;
  const double percent = pdSize < 0 ? -pdSize : 5.0;
  return std::fabs(viewHeight) * percent / 100.0;
}

PointSymbol AppendPointSymbol(int pdMode, Vec2 at, double size, std::vector<Vec2>& pairs) {
  PointSymbol symbol;
  const double h = size / 2;
  const auto stroke = [&](double x0, double y0, double x1, double y1) {
    pairs.push_back({at.x + x0, at.y + y0});
    pairs.push_back({at.x + x1, at.y + y1});
  };
  switch (pdMode & 7) {
    case 1:
      break;
    case 2:
      stroke(-h, 0, h, 0);
      stroke(0, -h, 0, h);
      break;
    case 3:
      stroke(-h, -h, h, h);
      stroke(-h, h, h, -h);
      break;
    case 4:
      stroke(0, 0, 0, h);
      break;
    default:
      symbol.dot = true;
      break;
  }
  if (!(size > 0)) return symbol;
  if ((pdMode & 32) != 0) symbol.circleRadius = h;
  if ((pdMode & 64) != 0) {
    stroke(-h, -h, h, -h);
    stroke(h, -h, h, h);
    stroke(h, h, -h, h);
    stroke(-h, h, -h, -h);
  }
  return symbol;
}

}  // namespace sheafwork::embedded
