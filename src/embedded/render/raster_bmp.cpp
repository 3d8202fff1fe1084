// BMP: uncompressed 1, 4, 8, 16, 24 and 32 bits per pixel (bit fields
// included), rows bottom-up or top-down. Run-length compressed files and
// the old OS/2 header are refused.

#include <bit>
#include <vector>

#include "embedded/render/raster_file.h"
#include "embedded/render/raster_pixels.h"

namespace sheafwork::embedded {

namespace {

constexpr std::uint32_t kRgb = 0;
constexpr std::uint32_t kBitFields = 3;

// A channel of a 16- or 32-bit pixel by its mask, scaled to 8 bits.
std::uint8_t Channel(std::uint32_t pixel, std::uint32_t mask) {
  if (mask == 0) return 255;
  const int shift = std::countr_zero(mask);
  const std::uint32_t max = mask >> shift;
  return static_cast<std::uint8_t>(((pixel & mask) >> shift) * 255 / max);
}

}  // namespace

std::optional<RasterFile> DecodeBmp(std::string_view bytes) {
  const ByteReader in(bytes, true);
  if (bytes.size() < 54) return std::nullopt;
  const std::uint32_t pixelsAt = in.U32(10);
  const std::uint32_t headerSize = in.U32(14);
  if (headerSize < 40) return std::nullopt;
  const auto width = static_cast<std::int32_t>(in.U32(18));
  const auto signedHeight = static_cast<std::int32_t>(in.U32(22));
  const std::uint32_t depth = in.U16(28);
  const std::uint32_t compression = in.U32(30);
  const bool topDown = signedHeight < 0;
  const std::int64_t height = topDown ? -static_cast<std::int64_t>(signedHeight) : signedHeight;
  if (width <= 0 || height <= 0 ||
      static_cast<std::size_t>(width) * static_cast<std::size_t>(height) > kMaxRasterPixels) {
    return std::nullopt;
  }
  std::uint32_t masks[4] = {0x00FF0000, 0x0000FF00, 0x000000FF, 0};
  if (depth == 16) masks[0] = 0x7C00, masks[1] = 0x03E0, masks[2] = 0x001F;
  if (compression == kBitFields && (depth == 16 || depth == 32)) {
    // The masks follow a 40-byte header, or are part of a longer one.
    for (std::size_t i = 0; i < 3; ++i) masks[i] = in.U32(54 + 4 * i);
    if (headerSize >= 56) masks[3] = in.U32(54 + 12);
  } else if (compression != kRgb) {
    return std::nullopt;
  }
  std::vector<Rgba> palette;
  if (depth <= 8) {
    std::uint32_t colors = in.U32(46);
    if (colors == 0 || colors > (1u << depth)) colors = 1u << depth;
    const std::size_t at = 14 + headerSize;
    for (std::size_t i = 0; i < colors; ++i) {
      palette.push_back({static_cast<std::uint8_t>(in.U8(at + 4 * i + 2)),
                         static_cast<std::uint8_t>(in.U8(at + 4 * i + 1)),
                         static_cast<std::uint8_t>(in.U8(at + 4 * i)), 255});
    }
  } else if (depth != 16 && depth != 24 && depth != 32) {
    return std::nullopt;
  }
  const std::size_t stride = (static_cast<std::size_t>(width) * depth + 31) / 32 * 4;
  if (pixelsAt > bytes.size() ||
      (bytes.size() - pixelsAt) / stride < static_cast<std::size_t>(height)) {
    return std::nullopt;
  }
  RasterCanvas out(static_cast<std::size_t>(width), static_cast<std::size_t>(height));
  for (std::int64_t row = 0; row < height; ++row) {
    const std::size_t y = static_cast<std::size_t>(topDown ? row : height - 1 - row);
    const std::size_t start = pixelsAt + static_cast<std::size_t>(row) * stride;
    for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x) {
      Rgba p;
      if (depth <= 8) {
        const std::size_t bit = x * depth;
        const std::uint32_t index =
            (in.U8(start + bit / 8) >> (8 - depth - bit % 8)) & ((1u << depth) - 1);
        p = index < palette.size() ? palette[index] : Rgba{};
      } else if (depth == 24) {
        const std::size_t at = start + 3 * x;
        p = {static_cast<std::uint8_t>(in.U8(at + 2)), static_cast<std::uint8_t>(in.U8(at + 1)),
             static_cast<std::uint8_t>(in.U8(at)), 255};
      } else {
        const std::uint32_t v = depth == 16 ? in.U16(start + 2 * x) : in.U32(start + 4 * x);
        p = {Channel(v, masks[0]), Channel(v, masks[1]), Channel(v, masks[2]),
             masks[3] != 0 ? Channel(v, masks[3]) : std::uint8_t{255}};
      }
      out.Put(x, y, p);
    }
  }
  return std::move(out).Finish();
}

}  // namespace sheafwork::embedded
