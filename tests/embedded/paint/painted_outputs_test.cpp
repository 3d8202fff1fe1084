// The outputs painted with Qt: a sheet painted (hatches, the device grid),
// the PNG and SVG files set beside the HP-GL/2 and PDF ones, how the plot
// engine reaches the painted outputs (provided directly, or through a loader
// called once; a named error when neither gives them), and printing through
// a real CUPS queue.

#include "embedded/render/painted_outputs.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <string>

#include "embedded/paint/device_grid.h"
#include "embedded/paint/paint_sheet.h"
#include "embedded/paint/painted_files.h"
#include "embedded/render/paint_sheet.h"
#include "embedded/render/plot_job.h"
#include "embedded/render/render_test_support.h"
#include "fakes/cups_queue.h"
#include "fakes/temp_folder.h"
#include "support/hpgl_reader.h"
#include "support/pdf_reading.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;
using sheafwork::testing::TempFolder;

// A painted sheet.

constexpr double kSheetPx = 4;  // pixels per millimetre

TEST(PaintSheetTest, SolidHatchFillsBetweenItsLoops) {
  // A red square 20..80 with a round island of radius 10 about (50, 50).
  const Drawing d = ReadTestDrawing("dxf/render/hatch_island.dxf");
  const QImage image = RenderSheet(d, ModelOf(d), OneToOneSettings(100), kSheetPx);
  EXPECT_EQ(ColorAt(image, kSheetPx, {30, 30}), 0xFF0000u);
  EXPECT_EQ(ColorAt(image, kSheetPx, {50, 50}), 0xFFFFFFu);  // the island
  EXPECT_EQ(ColorAt(image, kSheetPx, {50, 65}), 0xFF0000u);
  EXPECT_EQ(ColorAt(image, kSheetPx, {10, 10}), 0xFFFFFFu);
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

bool Whole(double v) { return v == std::round(v); }

TEST(DeviceGridTest, MapPathRoundsCurveControlPointsToo) {
  // Sheet millimetres (y up) to the units of a 1200 dpi page 297 mm high.
  const double k = 1200 / 25.4;
  const QTransform page(k, 0, 0, -k, 0, 297 * k);
  QPainterPath circle;
  circle.addEllipse(QPointF(10.123, 20.456), 3.21, 3.21);
  const QPainterPath snapped = DeviceGrid(page, true).MapPath(circle);
  const QPainterPath exact = DeviceGrid(page, false).MapPath(circle);
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

// The painted files beside the others.

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
  Box2 box;
  for (int y = 0; y < image.height(); ++y) {
    const QRgb* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      if ((row[x] & 0xFFFFFF) == 0xFFFFFF) continue;
      box.Extend(Vec2{x / k, 148 - (y + 1) / k});
      box.Extend(Vec2{(x + 1) / k, 148 - y / k});
    }
  }
  return box;
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

// How the plot engine reaches the painted outputs.

// Each test starts and ends with this copy's own painted outputs, as the
// other tests of the program expect them.
class PaintedOutputsTest : public ::testing::Test {
 protected:
  ~PaintedOutputsTest() override { SetPaintedOutputs(PaintOutputs()); }

  PlotJob Job(OutputKind kind, const std::string& name) const {
    PlotJob job = MakeJob(drawing_, ModelOf(drawing_), OneToOneSettings(100, 70));
    job.output = kind;
    job.outputPath = folder_.File(name);
    job.printerName = "traceur-absent";
    job.resolutionDpi = 50;
    return job;
  }

  const Drawing drawing_ = ReadTestDrawing("dxf/render/outputs.dxf");
  TempFolder folder_;
};

struct PaintedKind {
  OutputKind kind;
  const char* name;  // as the messages say it
};
constexpr PaintedKind kPaintedKinds[] = {{OutputKind::Png, "la sortie PNG"},
                                         {OutputKind::Svg, "la sortie SVG"},
                                         {OutputKind::Printer, "l'impression"}};

TEST_F(PaintedOutputsTest, WithoutThemPaintedJobsFailByNameWhilePdfAndHpglStillPlot) {
  SetPaintedOutputs({});
  for (const PaintedKind& k : kPaintedKinds) {
    const PlotJob job = Job(k.kind, "sortie");
    EXPECT_EQ(PlotFailure(job),
              std::string(k.name) + " est indisponible : ce programme n'a pas de module de dessin");
    EXPECT_FALSE(std::filesystem::exists(job.outputPath)) << k.name;
  }
  for (OutputKind kind : {OutputKind::Pdf, OutputKind::Hpgl}) {
    const PlotJob job = Job(kind, "plan.out");
    EXPECT_NO_THROW(RunPlotJob(job));
    EXPECT_GT(std::filesystem::file_size(job.outputPath), 0u);
    std::filesystem::remove(job.outputPath);
  }
}

// Stands for a module's output: fails with its own message.
bool RefusingOutput(const PlotJob& job, const SheetLayout&, std::string& failure) noexcept {
  failure = "refusé : " + job.outputPath;
  return false;
}

TEST_F(PaintedOutputsTest, ALoadedTableIsUsedForEachKindAndItsFailuresBecomePlotErrors) {
  int calls = 0;
  SetPaintedOutputsLoader([&calls] {
    ++calls;
    PaintedOutputsLoad load;
    load.module = "module";
    load.outputs = PaintOutputs();
    load.outputs.svg = &RefusingOutput;
    return load;
  });
  const PlotJob png = Job(OutputKind::Png, "plan.png");
  EXPECT_NO_THROW(RunPlotJob(png));
  EXPECT_EQ(TempFolder::Read(png.outputPath).substr(1, 3), "PNG");
  const PlotJob svg = Job(OutputKind::Svg, "plan.svg");
  EXPECT_EQ(PlotFailure(svg), "refusé : " + svg.outputPath);
  EXPECT_EQ(PlotFailure(Job(OutputKind::Printer, "")), "imprimante introuvable : traceur-absent");
  EXPECT_EQ(calls, 1);

  // Outputs set directly replace the loader's.
  SetPaintedOutputs({&RefusingOutput, nullptr, nullptr});
  EXPECT_EQ(PlotFailure(png), "refusé : " + png.outputPath);
  EXPECT_EQ(PlotFailure(svg),
            "la sortie SVG est indisponible : ce programme n'a pas de module de dessin");
}

// Printing: the job arrives on its sheet (200 × 150 mm, not a standard
// size), with the copies asked for.

constexpr double kPointsPerMm = 72 / 25.4;

TEST(PrintTest, ASheetReachesTheCupsQueueOnItsOwnSizeWithItsCopies) {
  SHEAFWORK_REQUIRE_CUPS();
  TempFolder folder;
  const std::string output = folder.File("imprime.pdf");
  sheafwork::testing::CupsQueue queue("sheafwork-rendu", output);
  ASSERT_TRUE(queue.Error().empty()) << queue.Error();

  Drawing d = MakeDrawing();
  ModelSpace(d).entities.push_back(MakeLine({10, 10}, {190, 140}));
  d.Reindex();
  PlotJob job = MakeJob(d, ModelOf(d), OneToOneSettings(200, 150));
  job.output = OutputKind::Printer;
  job.printerName = queue.Name();
  job.title = "essai - Objet";
  job.copies = 2;
  RunPlotJob(job);

  ASSERT_TRUE(queue.WaitUntilPrinted(std::chrono::seconds(60))) << queue.Error();
  const auto pages = sheafwork::testing::PdfPageSizes(output);
  ASSERT_EQ(pages.size(), 2u) << "one page per copy";
  for (const auto& [width, height] : pages) {
    EXPECT_NEAR(std::max(width, height), 200 * kPointsPerMm, 1.5);
    EXPECT_NEAR(std::min(width, height), 150 * kPointsPerMm, 1.5);
  }
}

}  // namespace
}  // namespace sheafwork::embedded
