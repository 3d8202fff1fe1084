// The comparison of rendered images: antialiasing and a pixel's shift pass,
// a line more or less does not.

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "golden/image_compare.h"

namespace sheafwork::golden {
namespace {

// A small sheet in the style of a plot: thin lines, a circle, a filled
// square, drawn with antialiasing and offset by (dx, dy) pixels; with
// `extraLine` > 0 one more line of that width.
QImage Sketch(double dx, double dy, double extraLine = 0) {
  QImage image(400, 300, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(dx, dy);
  painter.setPen(QPen(Qt::black, 1.0));
  painter.drawRect(QRectF(10, 10, 380, 280));
  painter.drawLine(QLineF(20, 250, 370, 40));
  painter.setPen(QPen(Qt::blue, 2.0));
  painter.drawEllipse(QPointF(200, 150), 60, 60);
  painter.fillRect(QRectF(300, 200, 40, 40), Qt::red);
  if (extraLine > 0) {
    painter.setPen(QPen(Qt::black, extraLine));
    painter.drawLine(QLineF(40, 60, 120, 60));  // 80 px, a 20 mm line at 4 px/mm
  }
  return image;
}

TEST(CompareImagesTest, ToleratesAntialiasingAndAPixelsShiftButNotALineWhichTheDiffShows) {
  const QImage reference = Sketch(0, 0);
  struct Case {
    const char* name;
    QImage actual;
    bool matches;
  };
  const std::vector<Case> cases = {
      {"identical", Sketch(0, 0), true},
      {"antialiasing moved by a fraction of a pixel", Sketch(0.4, 0.3), true},
      {"moved by one pixel", Sketch(1, 0), true},
      {"moved by three pixels", Sketch(3, 0), false},
      {"a line more", Sketch(0, 0, 1.0), false},
      {"a hairline more (0.1 mm at 4 px/mm)", Sketch(0, 0, 0.4), false},
      {"another size", reference.scaled(401, 300), false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Comparison comparison = CompareImages(reference, c.actual);
    EXPECT_EQ(comparison.Matches(CompareOptions{}), c.matches) << comparison.Describe();
  }
  // A line less is the same fault seen from the other side.
  EXPECT_FALSE(CompareImages(Sketch(0, 0, 0.4), reference).Matches(CompareOptions{}));
  // The diff image marks what differs.
  const Comparison comparison = CompareImages(reference, Sketch(0, 0, 1.0));
  ASSERT_FALSE(comparison.diff.isNull());
  EXPECT_EQ(comparison.diff.pixel(80, 60), qRgb(255, 0, 0));
  EXPECT_NE(comparison.diff.pixel(80, 100), qRgb(255, 0, 0));
}

}  // namespace
}  // namespace sheafwork::golden
