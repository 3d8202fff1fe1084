#include "embedded/paint/painted_files.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cmath>
#include <filesystem>
#include <string>

#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"
#include "support/hpgl_reader.h"
#include "support/pdf_reading.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;
using sheafwork::testing::TempFolder;

constexpr int kDpi = 200;
constexpr double kPx = kDpi / 25.4;  // pixels per millimetre
constexpr double kWidthMm = 0.5;     // lineweight 50

// The model of tests/data/dxf/render/outputs.dxf (a rectangle with its
// diagonal, a circle, an arc, a point and a red triangle) plotted 1:1 on a
// 210 × 148 sheet.
PlotJob Job(const Drawing& d, OutputKind kind, const std::string& path) {
  PlotJob job = MakeJob(d, ModelOf(d), OneToOneSettings(210, 148));
  job.output = kind;
  job.outputPath = path;
  job.resolutionDpi = kDpi;
  job.title = "plan.dxf - Objet";
  return job;
}

// The box of the non-white pixels, in millimetres from the image's top-left
// corner on the 148 mm tall sheet (y up).
Box2 InkBox(const QImage& image, double k) {
  int x0 = image.width(), y0 = image.height(), x1 = -1, y1 = -1;
  for (int y = 0; y < image.height(); ++y) {
    const QRgb* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      if ((row[x] & 0xFFFFFF) == 0xFFFFFF) continue;
      x0 = std::min(x0, x);
      x1 = std::max(x1, x);
      y0 = std::min(y0, y);
      y1 = std::max(y1, y);
    }
  }
  if (x1 < 0) return {};
  return Box2::Of({x0 / k, 148 - (y1 + 1) / k}, {(x1 + 1) / k, 148 - y0 / k});
}

QImage RenderSvg(const std::string& path, double k) {
  QSvgRenderer svg(QString::fromStdString(path));
  EXPECT_TRUE(svg.isValid()) << path;
  const QRectF view = svg.viewBoxF();
  QImage image(static_cast<int>(std::lround(view.width() * k)),
               static_cast<int>(std::lround(view.height() * k)), QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  svg.render(&painter);
  painter.end();
  return image;
}

TEST(FileOutputsTest, PngSvgHpglAndPdfDrawTheSameMarksInTheSamePlaces) {
  const Drawing d = ReadTestDrawing("dxf/render/outputs.dxf");
  TempFolder folder;
  const std::string png = folder.File("plan.png"), svg = folder.File("plan.svg"),
                    plt = folder.File("plan.plt"), pdf = folder.File("plan.pdf");
  RunPlotJob(Job(d, OutputKind::Png, png));
  RunPlotJob(Job(d, OutputKind::Svg, svg));
  RunPlotJob(Job(d, OutputKind::Hpgl, plt));
  RunPlotJob(Job(d, OutputKind::Pdf, pdf));

  // The rectangle's outline, half a pen wide outside its corners.
  const double half = kWidthMm / 2;
  const Box2 expected = Box2::Of({30 - half, 20 - half}, {130 + half, 90 + half});
  const double pixel = 1 / kPx;

  const QImage raster(QString::fromStdString(png));
  ASSERT_FALSE(raster.isNull());
  const QImage vector = RenderSvg(svg, kPx);
  const HpglPlot hpgl = ReadHpgl(TempFolder::Read(plt));
  EXPECT_DOUBLE_EQ(hpgl.plotSizeMm.x, 210);
  EXPECT_DOUBLE_EQ(hpgl.plotSizeMm.y, 148);
  const QImage plotted = RenderHpgl(hpgl, kPx);
  // The PDF as a raster of the same resolution, when poppler is at hand; its
  // page may be a little taller than the sheet (whole points), content placed
  // from the top.
  const QImage page = embedded::pdf::testing::RasterisePage(pdf, 1, kDpi, folder.File("pdf"))
                          .copy(QRect({0, 0}, raster.size()));
  struct Output {
    const char* name;
    const QImage& image;
    Box2 ink;
    double tolerance;
  };
  std::vector<Output> outputs = {{"SVG", vector, InkBox(vector, kPx), pixel},
                                 {"HP-GL/2", plotted, hpgl.InkExtents(), 0.03}};
  if (!page.isNull()) outputs.push_back({"PDF", page, InkBox(page, kPx), pixel});
  ExpectNear(InkBox(raster, kPx), expected, pixel);
  for (const Output& o : outputs) {
    SCOPED_TRACE(o.name);
    ExpectNear(o.ink, expected, o.tolerance);
    // Beyond the outline, the same marks in the same places: the diagonal,
    // the circle, the arc, the point and the red triangle.
    EXPECT_GT(DarkCovered(raster, o.image), 0.99);
    EXPECT_GT(DarkCovered(o.image, raster), 0.99);
    EXPECT_EQ(ColorAt(o.image, kPx, {45, 65}), 0xFF0000u);
    for (const Vec2 at : {Vec2{112, 40}, Vec2{70, 48}, Vec2{115, 80}}) {
      EXPECT_EQ(ColorAt(o.image, kPx, at), ColorAt(raster, kPx, at));
      EXPECT_TRUE(InkNear(o.image, kPx, at));  // circle, arc, point
    }
    EXPECT_FALSE(InkNear(o.image, kPx, {100, 40}));  // the circle's centre
    EXPECT_FALSE(InkNear(o.image, kPx, {78, 40}));   // where the arc does not pass
  }
}

TEST(FileOutputsTest, FailuresNameTheFileAndLeaveNoneBehind) {
  const Drawing d = ReadTestDrawing("dxf/render/outputs.dxf");
  TempFolder folder;
  struct Case {
    OutputKind kind;
    const char* format;
  };
  for (const Case& c : {Case{OutputKind::Png, "PNG"}, Case{OutputKind::Svg, "SVG"},
                        Case{OutputKind::Hpgl, "HP-GL/2"}, Case{OutputKind::Pdf, "PDF"}}) {
    const std::string path = folder.File("absent/plan.out");
    EXPECT_EQ(PlotFailure(Job(d, c.kind, path)),
              std::string("impossible de créer le fichier ") + c.format + " : " + path);
  }

  // An image the machine could not hold is refused before anything is written.
  PlotJob huge = Job(d, OutputKind::Png, folder.File("huge.png"));
  huge.settings = OneToOneSettings(5000);
  huge.resolutionDpi = 1200;
  EXPECT_EQ(PlotFailure(huge),
            "image trop grande : 236220 x 236220 pixels à 1200 points par pouce ; réduisez la "
            "résolution du périphérique");
  EXPECT_FALSE(std::filesystem::exists(huge.outputPath));
}

}  // namespace
}  // namespace sheafwork::embedded
