// Raster images in drawings written by another program
// (tests/data/dxf/images/make_drawings.py, over the pictures of
// tests/data/raster): where their files are found, how their clip
// boundaries limit them, and what each output draws of them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>

#include "embedded/model/referenced_files.h"
#include "embedded/render/raster_file.h"
#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

using testing::ColorAt;
using testing::DrawLayout;
using testing::ExpectNear;
using testing::ModelLayout;
using testing::Recorded;
using testing::RecordingBackend;

const std::string kRaster = sheafwork::testing::TestData("raster");

Drawing ReadImages(const std::string& name, const std::string& supportPath) {
  Drawing drawing = testing::ReadTestDrawing("dxf/images/" + name);
  ResolveImageFiles(drawing, supportPath);
  return drawing;
}

std::vector<const Recorded*> Of(const RecordingBackend& backend, Recorded::Kind kind) {
  return testing::ItemsOf(backend.items, kind);
}

std::string FileName(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

TEST(RasterImageTest, FilesAreFoundAsStoredOrByNameAlongTheSupportPath) {
  const Drawing drawing =
      ReadImages("images.dxf", sheafwork::testing::TestData("vide") + ";" + kRaster);
  const RecordingBackend backend = DrawLayout(drawing, drawing.layouts[0]);

  const auto images = Of(backend, Recorded::Kind::Image);
  ASSERT_EQ(images.size(), 2u);
  // "../../raster/rgb8.png", relative to the drawing's folder.
  EXPECT_EQ(FileName(images[0]->text), "rgb8.png");
  ExpectNear(images[0]->points, {{0, 0}, {16, 0}, {16, 16}, {0, 16}}, 1e-9);
  // "C:\Projets\Logos\python.jpg", by its name in the support folder,
  // turned 30° about its insertion point.
  EXPECT_EQ(images[1]->text, kRaster + "/python.jpg");
  const double c = 16 * std::cos(std::numbers::pi / 6), s = 16 * std::sin(std::numbers::pi / 6);
  ExpectNear(images[1]->points, {{20, 0}, {20 + c, s}, {20 + c - s, s + c}, {20 - s, c}}, 1e-9);

  // Frames are on: one per image, the one whose file is nowhere too.
  const auto frames = Of(backend, Recorded::Kind::Polyline);
  ASSERT_EQ(frames.size(), 3u);
  // The frame starts at the image's top left corner.
  ExpectNear(frames[2]->points, {{0, 36}, {32, 36}, {32, 20}, {0, 20}}, 1e-9);

  // Without the support folder python.jpg is nowhere: only its frame shows.
  const Drawing alone = ReadImages("images.dxf", "");
  const RecordingBackend without = DrawLayout(alone, alone.layouts[0]);
  EXPECT_EQ(Of(without, Recorded::Kind::Image).size(), 1u);
  EXPECT_EQ(Of(without, Recorded::Kind::Polyline).size(), 3u);
}

TEST(RasterImageTest, ClipBoundariesLimitTheImageWhenClippingIsOn) {
  const Drawing drawing = ReadImages("clipped.dxf", "");
  const RecordingBackend backend = DrawLayout(drawing, drawing.layouts[0]);

  ASSERT_EQ(Of(backend, Recorded::Kind::Image).size(), 3u);
  EXPECT_TRUE(Of(backend, Recorded::Kind::Polyline).empty());  // frames are off
  // Pixel coordinates run down from the top left pixel's centre.
  ASSERT_EQ(backend.clips.size(), 2u);
  EXPECT_EQ(backend.clips[0].first, 0u);
  ExpectNear(backend.clips[0].second, {{4, 12}, {12, 12}, {12, 8}, {4, 8}}, 1e-9);
  EXPECT_EQ(backend.clips[1].first, 1u);
  ExpectNear(backend.clips[1].second, {{20, 0}, {36, 0}, {28, 16}}, 1e-9);
  EXPECT_EQ(backend.clipDepth, 0);
}

TEST(RasterImageTest, AnOutputThatDrawsNoImagesGetsTheirFrames) {
  const Drawing drawing = ReadImages("clipped.dxf", "");
  RecordingBackend backend;
  backend.drawsImages = false;
  Frontend frontend(drawing, backend, {});
  frontend.DrawLayout(drawing.layouts[0], Affine2{});
  EXPECT_TRUE(Of(backend, Recorded::Kind::Image).empty());
  ASSERT_EQ(Of(backend, Recorded::Kind::Polyline).size(), 3u);
  ExpectNear(Of(backend, Recorded::Kind::Polyline)[1]->points, {{20, 0}, {36, 0}, {28, 16}}, 1e-9);
}

// The model layout of `drawing` plotted to the PDF file `path`; its bytes.
std::string PlotPdf(const Drawing& drawing, const PlotSettings& settings, const std::string& path) {
  PlotJob job = testing::MakeJob(drawing, drawing.layouts[0], settings);
  job.output = OutputKind::Pdf;
  job.outputPath = path;
  RunPlotJob(job);
  return sheafwork::testing::TempFolder::Read(path);
}

// The sheet of clipped.dxf painted or rasterised at `k` pixels per mm:
// the picture's pixels inside each clip boundary, white around them.
void ExpectClippedPictures(const QImage& sheet, double k) {
  ASSERT_FALSE(sheet.isNull());
  const std::optional<RasterFile> picture = ReadRasterFile(kRaster + "/rgb8.png");
  ASSERT_TRUE(picture.has_value());
  auto inTriangle = [](double x, double y) {  // (0,0) (16,0) (8,16), shrunk by a margin
    return y > 0.7 && y < 16 - 0.7 - 2 * std::abs(x - 8);
  };
  int checked = 0;
  for (int j = 0; j < 16; ++j) {
    for (int i = 0; i < 16; ++i) {
      const auto* p =
          reinterpret_cast<const unsigned char*>(picture->bytes.data() + (j * 16 + i) * 3);
      const std::uint32_t rgb = (p[0] << 16) | (p[1] << 8) | p[2];
      if (rgb == 0xFFFFFF) continue;
      const double x = i + 0.5, y = 16 - j - 0.5;  // the pixel's centre
      auto expect = [&](double dx, bool shown) {
        const std::uint32_t got = ColorAt(sheet, k, {x + dx, y});
        const std::uint32_t want = shown ? rgb : 0xFFFFFF;
        for (int shift : {16, 8, 0}) {
          EXPECT_NEAR((got >> shift) & 0xFF, (want >> shift) & 0xFF, 40)
              << "pixel " << i << ", " << j << " of the image at x " << dx;
        }
        ++checked;
      };
      // Rectangle (4, 8)-(12, 12): pixels well inside or well outside.
      if (x > 4.6 && x < 11.4 && y > 8.6 && y < 11.4) expect(0, true);
      if (x < 3.4 || x > 12.6 || y < 7.4 || y > 12.6) expect(0, false);
      if (inTriangle(x, y)) expect(20, true);
      expect(40, true);  // not clipped
    }
  }
  EXPECT_GT(checked, 200);
}

TEST(RasterImageTest, PaintedOutputsShowTheClippedPictures) {
  const Drawing drawing = ReadImages("clipped.dxf", "");
  const double k = 8;
  ExpectClippedPictures(
      testing::RenderSheet(drawing, drawing.layouts[0], testing::OneToOneSettings(60, 20), k), k);
}

TEST(RasterImageTest, PdfShowsTheClippedPicturesFromOneImageObject) {
  const Drawing drawing = ReadImages("clipped.dxf", "");
  sheafwork::testing::TempFolder folder;
  const std::string path = folder.File("clipped.pdf");
  const std::string pdf = PlotPdf(drawing, testing::OneToOneSettings(60, 20), path);
  EXPECT_EQ(testing::Count(pdf, "/Subtype /Image"), 1u);  // one file, drawn three times
  const QImage sheet = testing::RasterisePdf(path, 203, folder.File("clipped"));
  if (sheet.isNull()) GTEST_SKIP() << "pdftoppm is not installed";
  ExpectClippedPictures(sheet, 203 / 25.4);
}

TEST(RasterImageTest, PdfEmbedsAJpegFileAsItIs) {
  const Drawing drawing = ReadImages("images.dxf", kRaster);
  sheafwork::testing::TempFolder folder;
  const std::string pdf =
      PlotPdf(drawing, testing::OneToOneSettings(60, 60), folder.File("images.pdf"));
  EXPECT_EQ(testing::Count(pdf, "/Subtype /Image"), 2u);
  EXPECT_EQ(testing::Count(pdf, "/Filter /DCTDecode"), 1u);
  const std::string jpeg = sheafwork::testing::TempFolder::Read(kRaster + "/python.jpg");
  EXPECT_NE(pdf.find(jpeg), std::string::npos);
}

}  // namespace
}  // namespace sheafwork::embedded
