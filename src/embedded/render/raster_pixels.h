#pragma once
// What the raster decoders share: reading numbers from a file's bytes and
// the RGB canvas they decode into.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "embedded/render/raster_file.h"

namespace sheafwork::embedded {

struct Rgba {
  std::uint8_t r = 0, g = 0, b = 0, a = 255;
};

/// Unsigned numbers at byte offsets, little- or big-endian; 0 past the end.
class ByteReader {
 public:
  ByteReader(std::string_view bytes, bool littleEndian) : bytes_(bytes), little_(littleEndian) {}
  std::uint8_t U8(std::size_t at) const {
    return at < bytes_.size() ? static_cast<std::uint8_t>(bytes_[at]) : 0;
  }
  std::uint32_t U16(std::size_t at) const {
    const std::uint32_t first = U8(at), second = U8(at + 1);
    return little_ ? first | second << 8 : first << 8 | second;
  }
  std::uint32_t U32(std::size_t at) const {
    return little_ ? U16(at) | U16(at + 2) << 16 : U16(at) << 16 | U16(at + 2);
  }

 private:
  std::string_view bytes_;
  bool little_;
};

/// 8-bit RGB pixels, top row first, white until painted.
class RasterCanvas {
 public:
  RasterCanvas(std::size_t width, std::size_t height)
      : width_(width), height_(height), rgb_(width * height * 3, '\xFF') {}
  /// Pixel (x, y) from the top left, its alpha over white.
  void Put(std::size_t x, std::size_t y, Rgba p) {
    char* at = rgb_.data() + (y * width_ + x) * 3;
    at[0] = static_cast<char>(Over(p.r, p.a));
    at[1] = static_cast<char>(Over(p.g, p.a));
    at[2] = static_cast<char>(Over(p.b, p.a));
  }
  RasterFile Finish() && {
    return {RasterFile::Encoding::Rgb, static_cast<int>(width_), static_cast<int>(height_), 3,
            std::move(rgb_)};
  }

 private:
  static std::uint32_t Over(std::uint32_t c, std::uint32_t a) {
    return (c * a + 255 * (255 - a) + 127) / 255;
  }
  std::size_t width_;
  std::size_t height_;
  std::string rgb_;
};

}  // namespace sheafwork::embedded
