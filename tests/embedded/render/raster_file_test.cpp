// Raster pictures: the decoders against the pictures of tests/data/raster
// (files written by other programs, python.*, and variants of the same
// picture in every layout the decoders read, make_variants.py), each compared
// pixel by pixel with the picture as plain RGB (a .ppm, .pgm or .pbm file);
// and the pictures of drawings, painted and in the PDF.

#include "embedded/render/raster_file.h"

#include <gtest/gtest.h>

#include <QImage>
#include <cctype>
#include <cmath>
#include <ostream>
#include <string>
#include <vector>

#include "embedded/model/referenced_files.h"
#include "embedded/render/raster_cache.h"
#include "embedded/render/render_test_support.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"
#include "support/pdf_reading.h"

namespace sheafwork::testing {
// A case of a table shows as its place in the file.
static void PrintTo(const TableRow& row, std::ostream* out) { *out << row.where; }
}  // namespace sheafwork::testing

namespace sheafwork::embedded {
namespace {

using testing::ColorAt;

const std::string kRaster = sheafwork::testing::TestData("raster");

std::string Bytes(const std::string& name) {
  return sheafwork::testing::ReadTestData("raster/" + name);
}

// A portable any-map (P4, P5 or P6), read by Qt, as 8-bit RGB.
RasterFile ReadPnm(const std::string& name) {
  const QImage image =
      QImage(QString::fromStdString(kRaster + "/" + name)).convertToFormat(QImage::Format_RGB888);
  RasterFile out;
  out.width = image.width();
  out.height = image.height();
  for (int y = 0; y < image.height(); ++y) {
    out.bytes.append(reinterpret_cast<const char*>(image.constScanLine(y)),
                     static_cast<std::size_t>(3 * image.width()));
  }
  return out;
}

// A row of raster/decoding.tsv: a file, and the same picture as plain RGB.
class RasterDecodeTest : public ::testing::TestWithParam<sheafwork::testing::TableRow> {};

TEST_P(RasterDecodeTest, GivesThePixelsOfThePicture) {
  const std::optional<RasterFile> decoded = DecodeRasterFile(Bytes(GetParam()[0]));
  ASSERT_TRUE(decoded.has_value());
  const RasterFile expected = ReadPnm(GetParam()[1]);
  EXPECT_EQ(decoded->encoding, RasterFile::Encoding::Rgb);
  ASSERT_EQ(decoded->width, expected.width);
  ASSERT_EQ(decoded->height, expected.height);
  ASSERT_EQ(decoded->bytes.size(), expected.bytes.size());
  for (std::size_t i = 0; i < expected.bytes.size(); i += 3) {
    const auto pixel = static_cast<int>(i / 3);
    ASSERT_EQ(decoded->bytes.substr(i, 3), expected.bytes.substr(i, 3))
        << "pixel " << pixel % expected.width << ", " << pixel / expected.width;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Files, RasterDecodeTest,
    ::testing::ValuesIn(sheafwork::testing::ReadTestTable("raster/decoding.tsv")),
    [](const auto& info) {
      std::string name = info.param[0];
      for (char& c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
      }
      return name;
    });

TEST(RasterDecodeTest, JpegIsKeptWholeWithItsSizeAndComponents) {
  const std::string bytes = Bytes("python.jpg");
  const std::optional<RasterFile> jpeg = DecodeRasterFile(bytes);
  ASSERT_TRUE(jpeg.has_value());
  EXPECT_EQ(jpeg->encoding, RasterFile::Encoding::Jpeg);
  EXPECT_EQ(jpeg->width, 16);
  EXPECT_EQ(jpeg->height, 16);
  EXPECT_EQ(jpeg->components, 3);
  EXPECT_EQ(jpeg->bytes, bytes);
}

// Damaged files are refused, never read past their end.
TEST(RasterDecodeTest, TruncatedOrUnknownFilesAreRefused) {
  for (const char* file : {"python.png", "rgb16-interlaced.png", "python.bmp", "python.tiff",
                           "rgb-lzw.tif", "rgb-deflate-predictor.tif", "python.jpg"}) {
    SCOPED_TRACE(file);
    const std::string bytes = Bytes(file);
    // Cut before the pixels are complete (a JPEG's before its frame header).
    const std::size_t cut = std::string_view(file).ends_with(".jpg") ? 20 : bytes.size() / 3;
    EXPECT_FALSE(DecodeRasterFile(std::string_view(bytes).substr(0, cut)).has_value());
  }
  EXPECT_FALSE(DecodeRasterFile(Bytes("python.ppm")).has_value());
  EXPECT_FALSE(DecodeRasterFile("").has_value());
}

TEST(RasterCacheTest, AFileChangedOnDiskIsReadAgain) {
  const sheafwork::testing::TempFolder folder;
  const std::string path = folder.Write("cache.png", Bytes("python.png"));
  const auto first = LoadRasterImage(path);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(LoadRasterImage(path), first);  // the same decoded file, not read again
  folder.Write("cache.png", Bytes("grey8.png"));
  const auto second = LoadRasterImage(path);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(second->bytes, ReadPnm("python.pgm").bytes);
  folder.Write("cache.png", "not an image");
  EXPECT_EQ(LoadRasterImage(path), nullptr);
}

// Raster images in drawings written by another program
// (tests/data/dxf/images/make_drawings.py, over the pictures of
// tests/data/raster): how their clip boundaries limit them, painted and in
// the PDF, and what the PDF holds of their files.

Drawing ReadImages(const std::string& name, const std::string& supportPath) {
  Drawing drawing = testing::ReadTestDrawing("dxf/images/" + name);
  ResolveImageFiles(drawing, supportPath);
  return drawing;
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

// Painted, and in the PDF from one image object.
TEST(RasterImageTest, PaintedOutputsAndPdfShowTheClippedPictures) {
  const Drawing drawing = ReadImages("clipped.dxf", "");
  const PlotSettings settings = testing::OneToOneSettings(60, 20);
  ExpectClippedPictures(testing::RenderSheet(drawing, drawing.layouts[0], settings, 8), 8);
  sheafwork::testing::TempFolder folder;
  const std::string path = folder.File("clipped.pdf");
  const std::string pdf = PlotPdf(drawing, settings, path);
  EXPECT_EQ(testing::Count(pdf, "/Subtype /Image"), 1u);  // one file, drawn three times
  const QImage sheet = pdf::testing::RasterisePage(path, 1, 203, folder.File("clipped"));
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
