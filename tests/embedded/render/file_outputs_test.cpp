#include "embedded/render/file_outputs.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "embedded/render/hpgl_reader.h"
#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"

namespace sheafwork::embedded {
namespace {

using sheafwork::testing::TempFolder;
using testing::DarkCovered;
using testing::MakeDrawing;
using testing::MakeEntity;
using testing::MakeLine;
using testing::ModelLayout;
using testing::ModelSpace;

constexpr int kDpi = 200;
constexpr double kPx = kDpi / 25.4;  // pixels per millimetre
constexpr double kWidthMm = 0.5;     // lineweight 50

// The plot window 0..w × 0..h at 1:1 on a w × h mm sheet: drawing units are
// sheet millimetres.
PlotSettings SheetSettings(double w, double h) {
  PlotSettings s = testing::OneToOneSettings(w);
  s.paperHeight = h;
  s.windowMax = {w, h};
  return s;
}

Entity Heavy(Entity e) {
  e.props.lineweight = 50;
  return e;
}

// A 100 × 70 rectangle at (30, 20) with its diagonal, a circle and a red
// solid triangle inside, on a 210 × 148 sheet.
Drawing KnownDrawing() {
  Drawing d = MakeDrawing();
  Polyline rect;
  rect.closed = true;
  for (Vec2 p : {Vec2{30, 20}, Vec2{130, 20}, Vec2{130, 90}, Vec2{30, 90}}) {
    rect.vertices.push_back({{p.x, p.y, 0}, 0, 0, 0});
  }
  ModelSpace(d).entities.push_back(Heavy(MakeEntity(rect)));
  ModelSpace(d).entities.push_back(Heavy(MakeLine({30, 20}, {130, 90})));
  ModelSpace(d).entities.push_back(Heavy(MakeEntity(Circle{{100, 40, 0}, 12, kUnitZ})));
  Solid solid;
  solid.corners = {Vec3{40, 60, 0}, Vec3{70, 60, 0}, Vec3{40, 85, 0}, Vec3{40, 85, 0}};
  Entity filled = MakeEntity(solid);
  filled.props.color = 1;
  ModelSpace(d).entities.push_back(filled);
  d.Reindex();
  return d;
}

PlotJob Job(const Drawing& d, OutputKind kind, const std::string& path) {
  PlotJob job;
  job.drawing = &d;
  job.layout = &d.layouts[0];
  job.settings = SheetSettings(210, 148);
  job.output = kind;
  job.outputPath = path;
  job.resolutionDpi = kDpi;
  job.title = "plan.dxf - Objet";
  return job;
}

// The box of the non-white pixels, in millimetres from the image's top-left
// corner on a sheet `heightMm` tall (y up). A PDF page may be a little taller
// than its sheet (whole points), its content placed from the top.
Box2 InkBox(const QImage& image, double k, double heightMm = 148) {
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
  return Box2::Of({x0 / k, heightMm - (y1 + 1) / k}, {(x1 + 1) / k, heightMm - y0 / k});
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

void ExpectBox(const Box2& box, const Box2& expected, double tolerance, const char* what) {
  SCOPED_TRACE(what);
  ASSERT_FALSE(box.Empty());
  EXPECT_NEAR(box.min.x, expected.min.x, tolerance);
  EXPECT_NEAR(box.min.y, expected.min.y, tolerance);
  EXPECT_NEAR(box.max.x, expected.max.x, tolerance);
  EXPECT_NEAR(box.max.y, expected.max.y, tolerance);
}

TEST(FileOutputsTest, PngSvgHpglAndPdfAgreeOnWhereTheDrawingLies) {
  const Drawing d = KnownDrawing();
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
  ExpectBox(InkBox(raster, kPx), expected, pixel, "PNG");
  const QImage vector = RenderSvg(svg, kPx);
  ExpectBox(InkBox(vector, kPx), expected, pixel, "SVG");
  const testing::HpglPlot hpgl = testing::ReadHpgl(TempFolder::Read(plt));
  ExpectBox(hpgl.InkExtents(), expected, 0.03, "HP-GL/2");
  EXPECT_DOUBLE_EQ(hpgl.plotSizeMm.x, 210);
  EXPECT_DOUBLE_EQ(hpgl.plotSizeMm.y, 148);

  // Beyond the outline, the three draw the same marks in the same places:
  // the diagonal, the circle and the red triangle.
  const QImage plotted = testing::RenderHpgl(hpgl, kPx);
  ASSERT_EQ(plotted.size(), raster.size());
  ASSERT_EQ(vector.size(), raster.size());
  EXPECT_GT(DarkCovered(raster, vector), 0.99);
  EXPECT_GT(DarkCovered(vector, raster), 0.99);
  EXPECT_GT(DarkCovered(raster, plotted), 0.99);
  EXPECT_GT(DarkCovered(plotted, raster), 0.99);
  for (const QImage* image : {&raster, &vector, &plotted}) {
    EXPECT_EQ(testing::ColorAt(*image, kPx, {45, 65}), 0xFF0000u);
    EXPECT_TRUE(testing::InkNear(*image, kPx, {112, 40}));   // the circle's right
    EXPECT_FALSE(testing::InkNear(*image, kPx, {100, 40}));  // its centre
  }

  // The PDF as a raster of the same resolution, when poppler is at hand.
  const std::string command = "pdftoppm -r " + std::to_string(kDpi) + " -png -singlefile " + pdf +
                              " " + folder.File("pdf") + " 2>/dev/null";
  if (std::system(command.c_str()) == 0) {
    const QImage page(QString::fromStdString(folder.File("pdf.png")));
    ASSERT_FALSE(page.isNull());
    ExpectBox(InkBox(page, kPx), expected, pixel, "PDF");
  }
}

TEST(FileOutputsTest, PngHasTheSheetsPixelsAndResolution) {
  struct Case {
    double paperWidth, paperHeight;
    int rotation;
    int dpi;
    int width, height;
  };
  const Drawing d = KnownDrawing();
  TempFolder folder;
  for (const Case& c : {Case{210, 148, 0, 200, 1654, 1165}, Case{297, 420, 1, 72, 1191, 842},
                        Case{279.4, 215.9, 0, 100, 1100, 850}}) {
    PlotJob job = Job(d, OutputKind::Png, folder.File("sheet.png"));
    job.settings.paperWidth = c.paperWidth;
    job.settings.paperHeight = c.paperHeight;
    job.settings.rotation = c.rotation;
    job.resolutionDpi = c.dpi;
    RunPlotJob(job);
    const QImage image(QString::fromStdString(job.outputPath));
    SCOPED_TRACE(c.dpi);
    EXPECT_EQ(image.width(), c.width);
    EXPECT_EQ(image.height(), c.height);
    EXPECT_NEAR(image.dotsPerMeterX(), c.dpi / 0.0254, 1);
    EXPECT_NEAR(image.dotsPerMeterY(), c.dpi / 0.0254, 1);
    EXPECT_FALSE(image.hasAlphaChannel());
    EXPECT_EQ(image.text("Title"), "plan.dxf - Objet");
    EXPECT_EQ(image.pixel(0, 0) & 0xFFFFFF, 0xFFFFFFu);  // white where nothing is drawn
  }
}

TEST(FileOutputsTest, SvgIsTheSheetInMillimetres) {
  const Drawing d = KnownDrawing();
  TempFolder folder;
  PlotJob job = Job(d, OutputKind::Svg, folder.File("plan.svg"));
  job.settings.paperWidth = 279.4;
  job.settings.windowMax = {279.4, 148};
  RunPlotJob(job);
  const std::string svg = TempFolder::Read(job.outputPath);
  EXPECT_NE(svg.find("width=\"279.4mm\" height=\"148mm\""), std::string::npos)
      << svg.substr(0, 300);
  EXPECT_NE(svg.find("viewBox=\"0 0 279.4 148\""), std::string::npos);
  EXPECT_NE(svg.find("<title>plan.dxf - Objet</title>"), std::string::npos);
}

TEST(FileOutputsTest, FailuresNameTheFileAndLeaveNoneBehind) {
  const Drawing d = KnownDrawing();
  TempFolder folder;
  struct Case {
    OutputKind kind;
    const char* format;
  };
  for (const Case& c : {Case{OutputKind::Png, "PNG"}, Case{OutputKind::Svg, "SVG"},
                        Case{OutputKind::Hpgl, "HP-GL/2"}}) {
    const std::string path = folder.File("absent/plan.out");
    try {
      RunPlotJob(Job(d, c.kind, path));
      ADD_FAILURE() << c.format << ": no PlotError";
    } catch (const PlotError& e) {
      EXPECT_EQ(std::string(e.what()),
                std::string("impossible de créer le fichier ") + c.format + " : " + path);
    }
  }

  // An image the machine could not hold is refused before anything is written.
  PlotJob huge = Job(d, OutputKind::Png, folder.File("huge.png"));
  huge.settings = SheetSettings(5000, 5000);
  huge.resolutionDpi = 1200;
  try {
    RunPlotJob(huge);
    ADD_FAILURE() << "no PlotError";
  } catch (const PlotError& e) {
    EXPECT_EQ(std::string(e.what()),
              "image trop grande : 236220 x 236220 pixels à 1200 points par pouce ; réduisez la "
              "résolution du périphérique");
  }
  EXPECT_FALSE(std::filesystem::exists(huge.outputPath));
}

}  // namespace
}  // namespace sheafwork::embedded
