#include "embedded/render/page_geometry.h"

#include <algorithm>
#include <cmath>

namespace sheafwork::embedded {

namespace {

// Paper units : drawing units of the standard scales 1 to 32.
struct ScaleRatio {
  double paper;
  double drawing;
};
constexpr ScaleRatio kStandardScales[33] = {
    {0, 0},        {1.0 / 128, 12}, {1.0 / 64, 12}, {1.0 / 32, 12}, {1.0 / 16, 12}, {3.0 / 32, 12},
    {1.0 / 8, 12}, {3.0 / 16, 12},  {1.0 / 4, 12},  {3.0 / 8, 12},  {1.0 / 2, 12},  {3.0 / 4, 12},
    {1, 12},       {3, 12},         {6, 12},        {12, 12},       {1, 1},         {1, 2},
    {1, 4},        {1, 8},          {1, 10},        {1, 16},        {1, 20},        {1, 30},
    {1, 40},       {1, 50},         {1, 100},       {2, 1},         {4, 1},         {8, 1},
    {10, 1},       {100, 1},        {1000, 1}};

}  // namespace

double PaperUnitMm(int paperUnits) {
  switch (paperUnits) {
    case 0:
      return 25.4;
    case 2:
      return 25.4 / 96.0;
    default:
      return 1.0;
  }
}

double StandardScaleRatio(int index) {
  if (index < 1 || index > 32) return 0;
  const ScaleRatio& r = kStandardScales[index];
  return r.paper / r.drawing;
}

SheetFrame ComputeSheetFrame(const PlotSettings& s) {
  SheetFrame frame;
  const int rotation = ((s.rotation % 4) + 4) % 4;
  const bool quarter = rotation == 1 || rotation == 3;
  frame.width = quarter ? s.paperHeight : s.paperWidth;
  frame.height = quarter ? s.paperWidth : s.paperHeight;
  // Turning the media a quarter clockwise brings its bottom edge to the
  // left, its right edge to the bottom, its top edge to the right.
  const double left = quarter ? s.marginBottom : s.marginLeft;
  const double bottom = quarter ? s.marginRight : s.marginBottom;
  const double right = quarter ? s.marginTop : s.marginRight;
  const double top = quarter ? s.marginLeft : s.marginTop;
  frame.printable = Box2::Of({left, bottom}, {frame.width - right, frame.height - top});
  if (frame.printable.Empty()) frame.printable = Box2::Of({0, 0}, {frame.width, frame.height});
  frame.upsideDown = rotation >= 2;
  frame.uprightPrintable = frame.printable;
  if (frame.upsideDown) {
    frame.uprightPrintable =
        Box2::Of({frame.width - frame.printable.max.x, frame.height - frame.printable.max.y},
                 {frame.width - frame.printable.min.x, frame.height - frame.printable.min.y});
  }
  return frame;
}

SheetLayout ComputeSheetLayout(const PlotSettings& s, const PlotRegion& region) {
  SheetLayout layout;
  layout.frame = ComputeSheetFrame(s);
  const Box2& printable = layout.frame.uprightPrintable;
  const double unitMm = PaperUnitMm(s.paperUnits);
  Box2 area = region.area;
  if (area.Empty()) area = Box2::Of({0, 0}, {0, 0});

  double mmPerUnit = 0;
  if (s.Has(kUseStandardScale)) {
    if (s.standardScale != 0) {
      const double ratio = StandardScaleRatio(s.standardScale);
      mmPerUnit = (ratio > 0 ? ratio : 1.0) * unitMm;
    }
  } else if (s.customNumerator > 0 && s.customDenominator > 0) {
    mmPerUnit = s.customNumerator / s.customDenominator * unitMm;
  } else {
    mmPerUnit = unitMm;
  }
  if (mmPerUnit == 0) {  // fit the area into the printable area
    const double sx = area.Width() > 0 ? printable.Width() / area.Width() : 0;
    const double sy = area.Height() > 0 ? printable.Height() / area.Height() : 0;
    if (sx > 0 && sy > 0) {
      mmPerUnit = std::min(sx, sy);
    } else {
      mmPerUnit = std::max(sx, sy);
    }
    if (mmPerUnit <= 0) mmPerUnit = unitMm;
  }
  layout.mmPerDrawingUnit = mmPerUnit;
  layout.scale = mmPerUnit / unitMm;

  // Placement in the frame where the image is upright.
  Vec2 from, to;
  if (s.Has(kPlotCentered)) {
    from = area.Center();
    to = printable.Center();
  } else {
    from = region.anchor ? *region.anchor : area.min;
    to = {printable.min.x + s.origin.x, printable.min.y + s.origin.y};
  }
  Affine2 place = Affine2::Translation(to.x, to.y) * Affine2::Scaling(mmPerUnit, mmPerUnit) *
                  Affine2::Translation(-from.x, -from.y);
  if (layout.frame.upsideDown) {
    place = Affine2{-1, 0, 0, -1, layout.frame.width, layout.frame.height} * place;
  }
  layout.drawingToSheet = place;
  return layout;
}

}  // namespace sheafwork::embedded
