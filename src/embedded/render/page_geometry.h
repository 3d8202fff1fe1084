#pragma once
// Where a plot lands on its sheet: the sheet and its printable area, the
// scale, and the map from drawing units to sheet millimetres (y up, origin
// at the sheet's lower-left corner).
//
// The media is paperWidth × paperHeight as the device defines it, with its
// margins. Rotation turns the image on the media by a quarter turn per step
// counter-clockwise; the sheet we hand out is the media as a person holds it
// to read a plot of rotation 1: turned a quarter clockwise for rotations 1
// and 3 (so its size is swapped), as is for 0 and 2. The image is therefore
// upright on the sheet for rotations 0 and 1 and upside down for 2 and 3.

#include <optional>

#include "embedded/model/plot_settings.h"
#include "embedded/render/box.h"
#include "embedded/render/transform.h"

namespace sheafwork::embedded {

/// Millimetres in one paper unit (0 inches, 1 millimetres, 2 pixels at
/// 96 per inch).
double PaperUnitMm(int paperUnits);

/// Paper units per drawing unit of standard scale `index` (1 to 32); 0 for
/// "fit" (0) and numbers outside the table.
double StandardScaleRatio(int index);

/// The sheet without a plot on it.
struct SheetFrame {
  double width = 0;  ///< mm
  double height = 0;
  Box2 printable;  ///< on the sheet, mm
  /// The printable area in the frame where the image is upright (differs
  /// from `printable` when the image is upside down).
  Box2 uprightPrintable;
  bool upsideDown = false;
};

SheetFrame ComputeSheetFrame(const PlotSettings& settings);

/// What to plot, in drawing units.
struct PlotRegion {
  Box2 area;
  /// The drawing point placed at the plot origin; the area's lower-left
  /// corner when absent. Layout plots place the paper's origin there.
  std::optional<Vec2> anchor;
};

struct SheetLayout {
  SheetFrame frame;
  double scale = 1;             ///< paper units per drawing unit
  double mmPerDrawingUnit = 1;  ///< scale × millimetres per paper unit
  Affine2 drawingToSheet;       ///< drawing units → sheet mm, y up
};

SheetLayout ComputeSheetLayout(const PlotSettings& settings, const PlotRegion& region);

}  // namespace sheafwork::embedded
