// PNG: every colour type and bit depth, interlaced or not; transparency
// (alpha, tRNS) over white. The ancillary chunks that change colours
// (gamma, profiles) are ignored.

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "compress/zlib_stream.h"
#include "embedded/render/raster_file.h"
#include "embedded/render/raster_pixels.h"

namespace sheafwork::embedded {

namespace {

struct Header {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  int depth = 0;
  int colorType = 0;
  bool interlaced = false;
};

int Channels(int colorType) {
  switch (colorType) {
    case 0:
    case 3:
      return 1;
    case 2:
      return 3;
    case 4:
      return 2;
    case 6:
      return 4;
    default:
      return 0;
  }
}

bool ValidDepth(int colorType, int depth) {
  switch (colorType) {
    case 0:
      return depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 16;
    case 3:
      return depth == 1 || depth == 2 || depth == 4 || depth == 8;
    case 2:
    case 4:
    case 6:
      return depth == 8 || depth == 16;
    default:
      return false;
  }
}

std::uint8_t Paeth(int a, int b, int c) {
  const int p = a + b - c;
  const int pa = p > a ? p - a : a - p;
  const int pb = p > b ? p - b : b - p;
  const int pc = p > c ? p - c : c - p;
  if (pa <= pb && pa <= pc) return static_cast<std::uint8_t>(a);
  return static_cast<std::uint8_t>(pb <= pc ? b : c);
}

// Undoes the row filter of `row` (its filter byte removed) against `prior`.
bool Unfilter(int filter, std::uint8_t* row, const std::uint8_t* prior, std::size_t size,
              std::size_t bpp) {
  for (std::size_t i = 0; i < size; ++i) {
    const int a = i >= bpp ? row[i - bpp] : 0;
    const int b = prior[i];
    const int c = i >= bpp ? prior[i - bpp] : 0;
    switch (filter) {
      case 0:
        break;
      case 1:
        row[i] = static_cast<std::uint8_t>(row[i] + a);
        break;
      case 2:
        row[i] = static_cast<std::uint8_t>(row[i] + b);
        break;
      case 3:
        row[i] = static_cast<std::uint8_t>(row[i] + (a + b) / 2);
        break;
      case 4:
        row[i] = static_cast<std::uint8_t>(row[i] + Paeth(a, b, c));
        break;
      default:
        return false;
    }
  }
  return true;
}

class PngImage {
 public:
  PngImage(const Header& h, const std::vector<Rgba>& palette, std::optional<std::array<int, 3>> key)
      : h_(h), palette_(palette), key_(key), channels_(Channels(h.colorType)) {}

  /// The size in bytes of a row of `width` pixels, without its filter byte.
  std::size_t RowBytes(std::size_t width) const {
    return (width * static_cast<std::size_t>(channels_ * h_.depth) + 7) / 8;
  }

  /// Decodes one pass (the whole image when not interlaced) from `data` at
  /// `offset`, its pixels at (x0 + i·dx, y0 + j·dy).
  bool Pass(std::string& data, std::size_t& offset, std::size_t x0, std::size_t y0, std::size_t dx,
            std::size_t dy, RasterCanvas& out) {
    if (x0 >= h_.width || y0 >= h_.height) return true;
    const std::size_t width = (h_.width - x0 + dx - 1) / dx;
    const std::size_t height = (h_.height - y0 + dy - 1) / dy;
    const std::size_t size = RowBytes(width);
    const std::size_t bpp =
        std::max<std::size_t>(1, static_cast<std::size_t>(channels_ * h_.depth) / 8);
    std::vector<std::uint8_t> zero(size, 0);
    const std::uint8_t* prior = zero.data();
    for (std::size_t j = 0; j < height; ++j) {
      if (data.size() - offset < size + 1) return false;
      auto* row = reinterpret_cast<std::uint8_t*>(data.data() + offset + 1);
      if (!Unfilter(static_cast<std::uint8_t>(data[offset]), row, prior, size, bpp)) return false;
      for (std::size_t i = 0; i < width; ++i) {
        out.Put(x0 + i * dx, y0 + j * dy, Pixel(row, i));
      }
      prior = row;
      offset += size + 1;
    }
    return true;
  }

 private:
  int Sample(const std::uint8_t* row, std::size_t index) const {
    switch (h_.depth) {
      case 16:
        return (row[2 * index] << 8) | row[2 * index + 1];
      case 8:
        return row[index];
      default: {
        const std::size_t bit = index * static_cast<std::size_t>(h_.depth);
        const int shift = 8 - h_.depth - static_cast<int>(bit % 8);
        return (row[bit / 8] >> shift) & ((1 << h_.depth) - 1);
      }
    }
  }

  // A sample scaled to 8 bits.
  std::uint8_t Level(int sample) const {
    if (h_.depth == 16) return static_cast<std::uint8_t>(sample >> 8);
    return static_cast<std::uint8_t>(sample * 255 / ((1 << h_.depth) - 1));
  }

  Rgba Pixel(const std::uint8_t* row, std::size_t i) const {
    const std::size_t first = i * static_cast<std::size_t>(channels_);
    switch (h_.colorType) {
      case 3: {
        const auto index = static_cast<std::size_t>(Sample(row, first));
        return index < palette_.size() ? palette_[index] : Rgba{0, 0, 0, 255};
      }
      case 0: {
        const int s = Sample(row, first);
        const std::uint8_t g = Level(s);
        return {g, g, g, static_cast<std::uint8_t>(key_ && (*key_)[0] == s ? 0 : 255)};
      }
      case 4: {
        const std::uint8_t g = Level(Sample(row, first));
        return {g, g, g, Level(Sample(row, first + 1))};
      }
      default: {
        const int r = Sample(row, first), g = Sample(row, first + 1), b = Sample(row, first + 2);
        const std::uint8_t alpha =
            channels_ == 4
                ? Level(Sample(row, first + 3))
                : static_cast<std::uint8_t>(
                      key_ && (*key_)[0] == r && (*key_)[1] == g && (*key_)[2] == b ? 0 : 255);
        return {Level(r), Level(g), Level(b), alpha};
      }
    }
  }

  Header h_;
  const std::vector<Rgba>& palette_;
  std::optional<std::array<int, 3>> key_;
  int channels_;
};

}  // namespace

std::optional<RasterFile> DecodePng(std::string_view bytes) {
  ByteReader in(bytes, false);
  std::size_t at = 8;
  Header h;
  std::vector<Rgba> palette;
  std::optional<std::array<int, 3>> key;
  std::string compressed;
  bool sawHeader = false;
  while (at + 8 <= bytes.size()) {
    const std::uint32_t length = in.U32(at);
    const std::string_view type = bytes.substr(at + 4, 4);
    if (length > bytes.size() - at - 8) return std::nullopt;
    const std::size_t body = at + 8;
    if (type == "IHDR" && length >= 13) {
      h.width = in.U32(body);
      h.height = in.U32(body + 4);
      h.depth = in.U8(body + 8);
      h.colorType = in.U8(body + 9);
      h.interlaced = in.U8(body + 12) == 1;
      sawHeader = true;
    } else if (type == "PLTE") {
      for (std::size_t i = 0; i + 3 <= length; i += 3) {
        palette.push_back({in.U8(body + i), in.U8(body + i + 1), in.U8(body + i + 2), 255});
      }
    } else if (type == "tRNS") {
      if (h.colorType == 3) {
        for (std::size_t i = 0; i < length && i < palette.size(); ++i) {
          palette[i].a = in.U8(body + i);
        }
      } else if (h.colorType == 0 && length >= 2) {
        key = std::array<int, 3>{static_cast<int>(in.U16(body)), 0, 0};
      } else if (h.colorType == 2 && length >= 6) {
        key = std::array<int, 3>{static_cast<int>(in.U16(body)), static_cast<int>(in.U16(body + 2)),
                                 static_cast<int>(in.U16(body + 4))};
      }
    } else if (type == "IDAT") {
      compressed.append(bytes.substr(body, length));
    } else if (type == "IEND") {
      break;
    }
    at = body + length + 4;  // the CRC is not checked
  }
  if (!sawHeader || !ValidDepth(h.colorType, h.depth) || h.width == 0 || h.height == 0 ||
      static_cast<std::size_t>(h.width) * h.height > kMaxRasterPixels) {
    return std::nullopt;
  }
  PngImage image(h, palette, key);
  // Room for every row and its filter byte; the passes of an interlaced
  // image have more rows, each with its filter byte and a partial byte.
  const std::size_t room = (image.RowBytes(h.width) + 8) * h.height * (h.interlaced ? 2 : 1);
  Inflated data = InflateZlib(
      {reinterpret_cast<const unsigned char*>(compressed.data()), compressed.size()}, room);
  if (data.status != Inflated::Status::Done) return std::nullopt;
  RasterCanvas out(h.width, h.height);
  std::size_t offset = 0;
  if (!h.interlaced) {
    if (!image.Pass(data.bytes, offset, 0, 0, 1, 1, out)) return std::nullopt;
    return std::move(out).Finish();
  }
  static constexpr std::array<std::array<std::size_t, 4>, 7> kPasses = {{{0, 0, 8, 8},
                                                                         {4, 0, 8, 8},
                                                                         {0, 4, 4, 8},
                                                                         {2, 0, 4, 4},
                                                                         {0, 2, 2, 4},
                                                                         {1, 0, 2, 2},
                                                                         {0, 1, 1, 2}}};
  for (const auto& [x0, y0, dx, dy] : kPasses) {
    if (!image.Pass(data.bytes, offset, x0, y0, dx, dy, out)) return std::nullopt;
  }
  return std::move(out).Finish();
}

}  // namespace sheafwork::embedded
