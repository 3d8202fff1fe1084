#include "embedded/render/page_geometry.h"

#include <gtest/gtest.h>

#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

using testing::ExpectNear;

PlotSettings Media(double w, double h, double left, double bottom, double right, double top) {
  PlotSettings s;
  s.paperWidth = w;
  s.paperHeight = h;
  s.marginLeft = left;
  s.marginBottom = bottom;
  s.marginRight = right;
  s.marginTop = top;
  s.flags = kUseStandardScale;
  s.standardScale = 16;
  return s;
}

// One way of placing a plot: the media, how it is plotted, the area, and
// what must come of it.
struct PageCase {
  const char* name;
  double media[6];  ///< width, height, margins left, bottom, right, top
  int rotation;
  double scale;  ///< < 0 the standard scale's index, 0 fit, > 0 drawing units per paper unit
  bool centred;
  Vec2 origin;
  int paperUnits;  ///< 0 inches, 1 mm
  Box2 area;
  Vec2 sheetSize;
  Box2 printable;
  double mmPerUnit;
  Vec2 probe;    ///< a drawing point ...
  Vec2 landing;  ///< ... and where it must land on the sheet
};

// clang-format off
const PageCase kPages[] = {
    // 1:50 (standard scale 25) on A3 media: 10 m × 5 m of drawing in mm is 200 × 100 mm.
    {"StandardScaleOneToFiftyOnA3", {420, 297, 5, 5, 5, 5}, 0, -25, false, {}, 1,
     Box2::Of({1000, 2000}, {11000, 7000}), {420, 297}, Box2::Of({5, 5}, {415, 292}), 0.02,
     {11000, 7000}, {205, 105}},
    // Fit into an asymmetric printable area (10..170 × 20..95), centred.
    {"FitKeepsAspectAndCentres", {200, 100, 10, 20, 30, 5}, 0, 0, true, {}, 1,
     Box2::Of({0, 0}, {400, 100}), {200, 100}, Box2::Of({10, 20}, {170, 95}), 0.4, {0, 0},
     {10, 37.5}},
    // Custom scale in inches: 1 paper inch per 48 drawing units.
    {"CustomScaleInInches", {279.4, 215.9, 0, 0, 0, 0}, 0, 48, false, {}, 0,
     Box2::Of({0, 0}, {96, 48}), {279.4, 215.9}, Box2::Of({0, 0}, {279.4, 215.9}), 25.4 / 48,
     {96, 48}, {50.8, 25.4}},
    // Rotation 1: portrait media turned; its bottom margin becomes the left one.
    {"QuarterTurnSwapsSheetAndMargins", {297, 420, 1, 2, 3, 4}, 1, -16, false, {}, 1,
     Box2::Of({0, 0}, {100, 50}), {420, 297}, Box2::Of({2, 3}, {416, 296}), 1, {100, 50},
     {102, 53}},
    // Rotation 2: upside down; the area's lower-left goes to the top right.
    {"HalfTurnPlotsUpsideDown", {200, 100, 1, 2, 3, 4}, 2, -16, false, {}, 1,
     Box2::Of({0, 0}, {10, 10}), {200, 100}, Box2::Of({1, 2}, {197, 96}), 1, {0, 0}, {197, 96}},
    // Plot origin offset from the printable corner; centring ignores it.
    {"OriginOffset", {200, 100, 10, 10, 10, 10}, 0, -16, false, {15, 25}, 1,
     Box2::Of({-5, -5}, {5, 5}), {200, 100}, Box2::Of({10, 10}, {190, 90}), 1, {-5, -5},
     {25, 35}},
    {"CentredIgnoresOrigin", {200, 100, 10, 10, 10, 10}, 0, -16, true, {15, 25}, 1,
     Box2::Of({-5, -5}, {5, 5}), {200, 100}, Box2::Of({10, 10}, {190, 90}), 1, {0, 0},
     {100, 50}},
    // Nothing to plot: the drawing's origin in the middle.
    {"EmptyAreaCentred", {200, 100, 10, 10, 10, 10}, 0, -16, true, {}, 1, Box2{},
     {200, 100}, Box2::Of({10, 10}, {190, 90}), 1, {0, 0}, {100, 50}},
};
// clang-format on

TEST(PageGeometryTest, PlacesThePlotOnTheSheet) {
  for (const PageCase& c : kPages) {
    SCOPED_TRACE(c.name);
    PlotSettings s = Media(c.media[0], c.media[1], c.media[2], c.media[3], c.media[4], c.media[5]);
    s.rotation = static_cast<std::int16_t>(c.rotation);
    if (c.scale <= 0) s.standardScale = static_cast<std::int16_t>(-c.scale);
    if (c.scale > 0) {
      s.Set(kUseStandardScale, false);
      s.customNumerator = 1;
      s.customDenominator = c.scale;
    }
    s.Set(kPlotCentered, c.centred);
    s.origin = c.origin;
    s.paperUnits = static_cast<std::int16_t>(c.paperUnits);
    const SheetLayout layout = ComputeSheetLayout(s, {c.area, std::nullopt});
    EXPECT_NEAR(layout.frame.width, c.sheetSize.x, 1e-9);
    EXPECT_NEAR(layout.frame.height, c.sheetSize.y, 1e-9);
    ExpectNear(layout.frame.printable, c.printable);
    EXPECT_NEAR(layout.mmPerDrawingUnit, c.mmPerUnit, 1e-9);
    ExpectNear(layout.drawingToSheet.Apply(c.probe), c.landing);
  }
}

}  // namespace
}  // namespace sheafwork::embedded
