// Plot style tables and lineweights on paper: what the frontend makes of an
// entity's colour number, the pen widths on the sheet, and a monochrome plot.

#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "embedded/plotstyle/plot_style_file.h"
#include "embedded/render/frontend.h"
#include "embedded/render/paint_sheet.h"
#include "embedded/render/plot_style_look.h"
#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"

namespace sheafwork::embedded {
namespace {

using namespace testing;

Entity Coloured(Entity e, std::int16_t aci, std::int16_t lineweight = 25) {
  e.props.color = aci;
  e.props.lineweight = lineweight;
  return e;
}

TEST(PlotStylePenTest, ColourNumberSelectsTheEntry) {
  auto table = std::make_shared<PlotStyleTable>();
  PlotStyleEntry& red = table->entries[0];
  red.color = EncodePlotStyleColor(0x0000FF);
  red.screen = 50;
  red.lineweight = 13;  // 0.50 mm
  PlotStyleEntry& blue = table->entries[4];
  blue.color = EncodePlotStyleColor(0x000000);

  // tests/data/dxf/render/make_drawings.py says what pens.dxf holds.
  const Drawing d = ReadTestDrawing("dxf/render/pens.dxf");

  constexpr std::uint32_t kFadedBlue = 0x8080FF;
  struct Expected {
    const char* what;
    std::uint32_t rgb;
    double widthMm;
    std::uint32_t rgbWithout;
    double widthWithout;
  };
  const Expected expected[] = {
      {"colour 1", kFadedBlue, 0.50, 0xFF0000, 0.25},
      {"by layer, layer of colour 1", kFadedBlue, 0.50, 0xFF0000, 0.25},
      {"colour 3: the object's", 0x00FF00, 0.35, 0x00FF00, 0.35},
      {"true colour beside number 1", kFadedBlue, 0.50, 0x123456, 0.25},
      {"true colour beside number 3", 0x123456, 0.25, 0x123456, 0.25},
      {"by block in a reference of colour 1, screened once", kFadedBlue, 0.50, 0xFF0000, 0.25},
      {"colour 3 inside that block", 0x00FF00, 0.25, 0x00FF00, 0.25},
      {"colour 5, weight 0", 0x000000, kThinLineMm, 0x0000FF, kThinLineMm},
      {"by block outside any block: colour 7", 0x000000, 0.25, 0x000000, 0.25},
  };
  for (const bool withTable : {true, false}) {
    FrontendOptions options;
    if (withTable) options.plotStyles = table;
    const RecordingBackend backend = DrawLayout(d, ModelOf(d), options);
    ASSERT_EQ(backend.items.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
      const Expected& e = expected[i];
      SCOPED_TRACE(std::string(e.what) + (withTable ? " (table)" : " (no table)"));
      EXPECT_EQ(backend.items[i].style.rgb, withTable ? e.rgb : e.rgbWithout);
      EXPECT_DOUBLE_EQ(backend.items[i].style.widthMm, withTable ? e.widthMm : e.widthWithout);
    }
  }
}

TEST(PlotStylePenTest, InlineColoursOfMultilineTextGoThroughTheTable) {
  auto table = std::make_shared<PlotStyleTable>();
  table->entries[0].color = EncodePlotStyleColor(0x0000FF);  // colour 1 plots blue
  table->entries[4].color = EncodePlotStyleColor(0x000000);  // colour 5 plots black

  Drawing d = MakeDrawing();
  MText text;
  text.text = "{\\C1;rouge} {\\C3;vert} {\\C256;objet} {\\c65280;vrai}";
  text.height = 2.5;
  Entity e = Coloured(MakeEntity(text), 5);
  ModelSpace(d).entities.push_back(e);
  d.Reindex();

  struct Expected {
    const char* text;
    std::uint32_t rgb;
    std::uint32_t rgbWithout;
  };
  const Expected expected[] = {
      {"rouge", 0x0000FF, 0xFF0000},  // through entry 1
      {"vert", 0x00FF00, 0x00FF00},   // entry 3 keeps the object's colour
      {"objet", 0x000000, 0x0000FF},  // the entity's colour 5, through entry 5
      {"vrai", 0x000000, 0x00FF00},   // a true colour plots under the entity's number
  };
  for (const bool withTable : {true, false}) {
    FrontendOptions options;
    if (withTable) options.plotStyles = table;
    const RecordingBackend backend = DrawLayout(d, ModelLayout(d), options);
    for (const Expected& x : expected) {
      SCOPED_TRACE(std::string(x.text) + (withTable ? " (table)" : " (no table)"));
      const auto found = std::find_if(
          backend.items.begin(), backend.items.end(),
          [&](const auto& item) { return item.text.find(x.text) != std::string::npos; });
      ASSERT_NE(found, backend.items.end());
      EXPECT_EQ(found->style.rgb, withTable ? x.rgb : x.rgbWithout);
    }
  }
}

TEST(PlotStylePenTest, ThinnestLineIsOneDeviceDot) {
  struct Case {
    double dotsPerMm;
    double expectedMm;
  };
  const Case cases[] = {
      {1200 / 25.4, 25.4 / 1200},
      {300 / 25.4, 25.4 / 300},
      {2, 0.5},
      {0, kThinLineMm},
      {-3, kThinLineMm},
      {std::numeric_limits<double>::quiet_NaN(), kThinLineMm},
      {std::numeric_limits<double>::infinity(), kThinLineMm},
  };
  for (const Case& c : cases) {
    EXPECT_DOUBLE_EQ(ThinnestVisibleLineMm(c.dotsPerMm), c.expectedMm) << c.dotsPerMm;
  }
  LineweightPolicy policy;
  policy.thinMm = 0.2;
  EXPECT_DOUBLE_EQ(policy.PenWidthMm(0), 0.2);
  EXPECT_DOUBLE_EQ(policy.PenWidthMm(0.05), 0.2);  // thinner than the device shows
  EXPECT_DOUBLE_EQ(policy.PenWidthMm(0.3), 0.3);
  policy.plotLineweights = false;
  EXPECT_DOUBLE_EQ(policy.PenWidthMm(2), 0.2);
}

struct Column {
  int inked = 0;      ///< pixels darker than mid-grey
  int darkest = 255;  ///< grey level of the darkest pixel
};

// The pixels of column `xMm` of the image, in rows `fromRow` to `toRow`.
Column InkInColumn(const QImage& image, double pixelsPerMm, double xMm, int fromRow = 0,
                   int toRow = -1) {
  Column column;
  const int x = static_cast<int>(xMm * pixelsPerMm);
  for (int y = fromRow; y < (toRow < 0 ? image.height() : toRow); ++y) {
    const int gray = qGray(image.pixel(x, y));
    column.darkest = std::min(column.darkest, gray);
    if (gray < 128) ++column.inked;
  }
  return column;
}

TEST(LineweightOnPaperTest, ScaledWithThePlotScaleOnlyWhenAskedAndNotInTheModel) {
  Drawing d = MakeDrawing();
  PaperSpace(d).entities.push_back(Coloured(MakeLine({0, 100}, {200, 100}), 7, 200));
  ModelSpace(d).entities.push_back(Coloured(MakeLine({0, 100}, {200, 100}), 7, 200));
  d.Reindex();
  constexpr double k = 10;  // pixels per mm

  struct Case {
    const char* what;
    bool paper;
    bool scaleLineweights;
    double expectedMm;
  };
  const Case cases[] = {
      {"paper layout at 1:2, scaled", true, true, 1.0},
      {"paper layout at 1:2, not scaled", true, false, 2.0},
      {"model layout at 1:2, never scaled", false, true, 2.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    PlotJob job = MakeJob(d, c.paper ? PaperLayout(d) : ModelLayout(d), OneToOneSettings(200));
    job.settings.Set(kUseStandardScale, false);
    job.settings.customNumerator = 1;
    job.settings.customDenominator = 2;
    job.settings.Set(kScaleLineweights, c.scaleLineweights);
    const Column column = InkInColumn(RenderJob(job, k), k, 30);
    EXPECT_NEAR(column.inked, c.expectedMm * k, 1.5);
  }
}

TEST(LineweightOnPaperTest, ThinLinesAreOneDotAndNeverVanish) {
  Drawing d = MakeDrawing();
  ModelSpace(d).entities.push_back(Coloured(MakeLine({0, 50.25}, {100, 50.25}), 7, 0));
  ModelSpace(d).entities.push_back(Coloured(MakeLine({0, 20}, {100, 20}), 7, 200));
  d.Reindex();
  struct Case {
    const char* what;
    std::int32_t flags;
    int heavyDots;  ///< the 2 mm line, at 2 dots per mm
  };
  const Case cases[] = {
      {"lineweights plotted", kPrintLineweights, 4},
      {"plot styles imply lineweights", kPlotPlotStyles, 4},
      {"lineweights not plotted", 0, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    PlotJob job = MakeJob(d, ModelLayout(d), OneToOneSettings(100));
    job.settings.flags = kUseStandardScale | c.flags;
    // A coarse device: at 2 dots per mm a 0.1 mm line would be a faint
    // fifth of a dot.
    const QImage image = RenderJob(job, 2);
    const int middle = image.height() / 2;  // rows run down
    const Column thin = InkInColumn(image, 2, 30, 0, middle);
    const Column heavy = InkInColumn(image, 2, 30, middle);
    EXPECT_LT(thin.darkest, 64);
    EXPECT_EQ(thin.inked, 1);
    EXPECT_EQ(heavy.inked, c.heavyDots);
  }
}

// Counts the pixels whose channels differ (coloured ones) and the dark ones.
struct Ink {
  int coloured = 0;
  int dark = 0;
};

Ink InkOf(const QImage& image) {
  Ink ink;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QRgb p = image.pixel(x, y);
      const int spread =
          std::max({qRed(p), qGreen(p), qBlue(p)}) - std::min({qRed(p), qGreen(p), qBlue(p)});
      if (spread > 8) ++ink.coloured;
      if (qGray(p) < 128) ++ink.dark;
    }
  }
  return ink;
}

TEST(MonochromePlotTest, PdfThroughTheShippedTableHasNoColour) {
  if (std::system("pdftoppm -v >/dev/null 2>&1") != 0) GTEST_SKIP() << "pdftoppm missing";
  const Drawing d = ReadTestDrawing("dxf/render/colourful.dxf");
  sheafwork::testing::TempFolder folder;
  PlotJob job = MakeJob(d, ModelOf(d), OneToOneSettings(100));
  job.settings.flags |= kPlotPlotStyles;
  job.resolutionDpi = 600;
  const auto render = [&](const std::string& name) {
    job.outputPath = folder.File(name + ".pdf");
    RunPlotJob(job);
    return InkOf(RasterisePdf(job.outputPath, 60, folder.File(name)));
  };

  const Ink coloured = render("couleurs");
  EXPECT_GT(coloured.coloured, 500);  // the drawing is colourful without the table

  job.plotStyles = std::make_shared<const PlotStyleTable>(
      ReadPlotStyleFile(std::string(SHEAFWORK_SOURCE_DIR) + "/data/plotstyles/monochrome.ctb"));
  const Ink mono = render("monochrome");
  EXPECT_EQ(mono.coloured, 0);
  EXPECT_GT(mono.dark, 500);
}

}  // namespace
}  // namespace sheafwork::embedded
