#include "embedded/paint/device_grid.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "embedded/paint/painter_backend.h"
#include "embedded/paint/qt_application.h"

namespace sheafwork::embedded {
namespace {

// Sheet millimetres (y up) to the units of a 1200 dpi page 297 mm high.
QTransform PdfPage() {
  const double k = 1200 / 25.4;
  return QTransform(k, 0, 0, -k, 0, 297 * k);
}

bool Whole(double v) { return v == std::round(v); }

TEST(DeviceGridTest, MapsThroughTheTransformAndSnapsOnlyWhenAsked) {
  const QTransform page = PdfPage();
  const QTransform turned = QTransform().rotate(30).scale(3, 3).translate(5, -2);
  for (const QTransform& t : {page, turned}) {
    const DeviceGrid exact(t, false);
    const DeviceGrid snapped(t, true);
    for (const Vec2 p : {Vec2{0, 0}, Vec2{12.3456, 78.9012}, Vec2{-4.01, 296.99}}) {
      const QPointF want = t.map(QPointF(p.x, p.y));
      const QPointF e = exact.Map(p);
      EXPECT_DOUBLE_EQ(e.x(), want.x());
      EXPECT_DOUBLE_EQ(e.y(), want.y());
      const QPointF s = snapped.Map(p);
      EXPECT_TRUE(Whole(s.x()) && Whole(s.y())) << s.x() << " " << s.y();
      EXPECT_LE(std::fabs(s.x() - want.x()), 0.5);
      EXPECT_LE(std::fabs(s.y() - want.y()), 0.5);
    }
  }
}

TEST(DeviceGridTest, ScaleIsTheLengthFactorAndFineDevicesSnap) {
  EXPECT_DOUBLE_EQ(DeviceGrid(PdfPage(), true).Scale(), 1200 / 25.4);
  EXPECT_NEAR(DeviceGrid(QTransform().rotate(30).scale(3, 3), false).Scale(), 3, 1e-12);
  EXPECT_FALSE(DeviceGrid::SnapsAt(96));
  EXPECT_FALSE(DeviceGrid::SnapsAt(300));
  EXPECT_TRUE(DeviceGrid::SnapsAt(600));
  EXPECT_TRUE(DeviceGrid::SnapsAt(1200));
  // Judged by the units points land in, not the resolution a device
  // reports: an SVG generator paints in millimetres.
  EXPECT_TRUE(DeviceGrid::SnapsFor(PdfPage()));
  EXPECT_FALSE(DeviceGrid::SnapsFor(QTransform(1, 0, 0, -1, 0, 297)));
}

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

// The backend paints in device units: pen widths follow the sheet scale,
// and the painter gets its transform back.
TEST(DeviceGridTest, PainterBackendKeepsPenWidthsInSheetMillimetres) {
  EnsureGuiApplication();
  constexpr double kPixelsPerMm = 10;
  QImage image(200, 200, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  const QTransform sheet(kPixelsPerMm, 0, 0, -kPixelsPerMm, 0, 200);
  painter.setWorldTransform(sheet);
  {
    PainterBackend backend(painter);
    const Vec2 line[2] = {{2, 10}, {18, 10}};  // across the middle, 1.5 mm wide
    backend.DrawLines(line, Style{0x000000, 1.5});
  }
  EXPECT_EQ(painter.worldTransform(), sheet);
  painter.end();
  int dark = 0;
  for (int y = 0; y < image.height(); ++y) {
    if (qGray(image.pixel(100, y)) < 128) ++dark;
  }
  EXPECT_NEAR(dark, 1.5 * kPixelsPerMm, 1.5);
}

}  // namespace
}  // namespace sheafwork::embedded
