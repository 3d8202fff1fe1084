#include "embedded/paint/paint_sheet.h"
#include "embedded/render/paint_sheet.h"

#include <gtest/gtest.h>

#include <QPainterPath>
#include <cmath>

#include "embedded/paint/device_grid.h"
#include "embedded/render/render_test_support.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

constexpr double kPx = 4;  // pixels per millimetre

TEST(PaintSheetTest, SolidHatchFillsBetweenItsLoops) {
  // A red square 20..80 with a round island of radius 10 about (50, 50).
  const Drawing d = ReadTestDrawing("dxf/render/hatch_island.dxf");
  const QImage image = RenderSheet(d, ModelOf(d), OneToOneSettings(100), kPx);
  EXPECT_EQ(ColorAt(image, kPx, {30, 30}), 0xFF0000u);
  EXPECT_EQ(ColorAt(image, kPx, {50, 50}), 0xFFFFFFu);  // the island
  EXPECT_EQ(ColorAt(image, kPx, {50, 65}), 0xFF0000u);
  EXPECT_EQ(ColorAt(image, kPx, {10, 10}), 0xFFFFFFu);
}

TEST(PaintSheetTest, RefusesJobsWithoutDrawingOrPaper) {
  Drawing d = MakeDrawing();
  PlotJob job;
  EXPECT_THROW(PlanSheet(job), PlotError);
  job.drawing = &d;
  job.layout = &ModelOf(d);
  job.settings.paperWidth = 0;
  EXPECT_THROW(PlanSheet(job), PlotError);
}

// Sheet millimetres (y up) to the units of a 1200 dpi page 297 mm high.
QTransform PdfPage() {
  const double k = 1200 / 25.4;
  return QTransform(k, 0, 0, -k, 0, 297 * k);
}

bool Whole(double v) { return v == std::round(v); }

TEST(DeviceGridTest, MapPathRoundsCurveControlPointsToo) {
  QPainterPath circle;
  circle.addEllipse(QPointF(10.123, 20.456), 3.21, 3.21);
  const QPainterPath snapped = DeviceGrid(PdfPage(), true).MapPath(circle);
  const QPainterPath exact = DeviceGrid(PdfPage(), false).MapPath(circle);
  ASSERT_EQ(snapped.elementCount(), circle.elementCount());
  bool anyFraction = false;
  for (int i = 0; i < snapped.elementCount(); ++i) {
    const QPainterPath::Element s = snapped.elementAt(i), e = exact.elementAt(i);
    EXPECT_EQ(s.type, circle.elementAt(i).type);
    EXPECT_TRUE(Whole(s.x) && Whole(s.y)) << i;
    EXPECT_LE(std::fabs(s.x - e.x), 0.5);
    EXPECT_LE(std::fabs(s.y - e.y), 0.5);
    anyFraction = anyFraction || !Whole(e.x) || !Whole(e.y);
  }
  EXPECT_TRUE(anyFraction);  // the exact path keeps its fractions
}

}  // namespace
}  // namespace sheafwork::embedded
