// The raster decoders against the pictures of tests/data/raster: files
// written by other programs (python.*) and variants of the same picture in
// every layout the decoders read (make_variants.py), each compared pixel
// by pixel with the picture as plain RGB (a .ppm, .pgm or .pbm file).

#include "embedded/render/raster_file.h"

#include <gtest/gtest.h>

#include <QImage>
#include <cctype>
#include <ostream>
#include <string>

#include "embedded/render/raster_cache.h"
#include "fakes/temp_folder.h"
#include "fakes/test_data.h"

namespace sheafwork::embedded {
namespace {

std::string RasterPath(const std::string& name) {
  return sheafwork::testing::TestData("raster/" + name);
}

std::string Bytes(const std::string& name) {
  return sheafwork::testing::ReadTestData("raster/" + name);
}

// A portable any-map (P4, P5 or P6), read by Qt, as 8-bit RGB.
RasterFile ReadPnm(const std::string& name) {
  const QImage image =
      QImage(QString::fromStdString(RasterPath(name))).convertToFormat(QImage::Format_RGB888);
  RasterFile out;
  out.width = image.width();
  out.height = image.height();
  for (int y = 0; y < image.height(); ++y) {
    out.bytes.append(reinterpret_cast<const char*>(image.constScanLine(y)),
                     static_cast<std::size_t>(3 * image.width()));
  }
  return out;
}

struct Case {
  const char* file;
  const char* picture;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.file; }

class RasterDecodeTest : public ::testing::TestWithParam<Case> {};

TEST_P(RasterDecodeTest, GivesThePixelsOfThePicture) {
  const std::optional<RasterFile> decoded = DecodeRasterFile(Bytes(GetParam().file));
  ASSERT_TRUE(decoded.has_value());
  const RasterFile expected = ReadPnm(GetParam().picture);
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
    ::testing::Values(
        // Written by other programs; their background is transparent.
        Case{"python.png", "python-over-white.ppm"}, Case{"python.bmp", "python-over-white.ppm"},
        Case{"python.tiff", "python-over-white.ppm"},
        // PNG: each row filter, interlacing, 1 to 16 bits, palettes,
        // transparency over white.
        Case{"rgb16-interlaced.png", "python.ppm"}, Case{"palette8-interlaced.png", "python.ppm"},
        Case{"grey1.png", "python.pbm"}, Case{"rgba8-half.png", "rgba8-half-over-white.ppm"},
        Case{"rgb8-key.png", "rgb8-key-over-white.ppm"},
        // BMP: rows top-down, a palette of 8 bits.
        Case{"rgb24-top-down.bmp", "python.ppm"}, Case{"palette8.bmp", "python.ppm"},
        // TIFF: LZW, Deflate with the predictor, PackBits, grey, white-is-zero
        // black and white, palette.
        Case{"rgb-deflate-predictor.tif", "python.ppm"}, Case{"grey-lzw.tif", "python.pgm"},
        Case{"bw-white-is-zero.tif", "python.pbm"}, Case{"palette-uncompressed.tif", "python.ppm"}),
    [](const auto& info) {
      std::string name = info.param.file;
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

}  // namespace
}  // namespace sheafwork::embedded
