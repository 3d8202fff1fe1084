#pragma once
// The pixels of the files raster images show, as the plot outputs take
// them: PNG, BMP and TIFF decoded to 8-bit RGB (transparent parts over the
// white sheet), JPEG kept as it is, with its size, for outputs that embed
// it (PDF) or decode it themselves (Qt).

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace sheafwork::embedded {

struct RasterFile {
  enum class Encoding { Rgb, Jpeg };
  Encoding encoding = Encoding::Rgb;
  int width = 0;
  int height = 0;
  int components = 3;  ///< JPEG: 1 grey, 3 colour, 4 CMYK; always 3 for Rgb
  /// Rgb: the samples row by row from the top; Jpeg: the whole file.
  std::string bytes;
};

/// The most pixels a raster image may have; larger ones are not decoded.
inline constexpr std::size_t kMaxRasterPixels = std::size_t{1} << 28;

/// The image in `bytes` (a whole file), its format found from its first
/// bytes; nullopt when it is none of those formats or is damaged.
std::optional<RasterFile> DecodeRasterFile(std::string_view bytes);

/// Reads and decodes the file at `path`; nullopt when it cannot be read.
std::optional<RasterFile> ReadRasterFile(const std::string& path);

// The decoders, each for one format (raster_png.cpp, raster_bmp.cpp,
// raster_tiff.cpp, raster_jpeg.cpp).
std::optional<RasterFile> DecodePng(std::string_view bytes);
std::optional<RasterFile> DecodeBmp(std::string_view bytes);
std::optional<RasterFile> DecodeTiff(std::string_view bytes);
std::optional<RasterFile> ReadJpegHeader(std::string_view bytes);

}  // namespace sheafwork::embedded
