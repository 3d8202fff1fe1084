// TIFF: the first image of the file, in strips, its samples interleaved;
// uncompressed, PackBits, LZW or Deflate (with or without the horizontal
// predictor); black-and-white, grey, palette and RGB(A) with 1, 2, 4, 8
// or 16 bits per sample. Tiles, CCITT fax and JPEG compression are refused.

#include <array>
#include <vector>

#include "compress/zlib_stream.h"
#include "embedded/render/raster_file.h"
#include "embedded/render/raster_pixels.h"

namespace sheafwork::embedded {

namespace {

enum Compression : std::uint32_t {
  kNone = 1,
  kLzw = 5,
  kDeflate = 8,
  kPackBits = 32773,
  kOldDeflate = 32946,
};

struct Ifd {
  std::uint32_t width = 0, height = 0, bits = 1, compression = kNone, photometric = 1;
  std::uint32_t samples = 1, rowsPerStrip = 0xFFFFFFFF, planar = 1, predictor = 1;
  std::vector<std::uint32_t> offsets, counts, colormap;
  bool extraAlpha = false;
};

// The values of one directory entry (BYTE, SHORT or LONG).
std::vector<std::uint32_t> Values(const ByteReader& in, std::string_view bytes, std::size_t entry) {
  const std::uint32_t type = in.U16(entry + 2);
  const std::uint32_t count = in.U32(entry + 4);
  const std::size_t size = type == 3 ? 2 : type == 4 ? 4 : type == 1 ? 1 : 0;
  std::vector<std::uint32_t> values;
  if (size == 0 || count > bytes.size()) return values;
  const std::size_t at = size * count <= 4 ? entry + 8 : in.U32(entry + 8);
  values.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t p = at + i * size;
    values.push_back(size == 1 ? in.U8(p) : size == 2 ? in.U16(p) : in.U32(p));
  }
  return values;
}

bool UnpackBits(std::string_view in, std::string& out, std::size_t room) {
  for (std::size_t i = 0; i < in.size() && out.size() < room;) {
    const auto n = static_cast<std::int8_t>(in[i++]);
    if (n >= 0) {
      const std::size_t len = static_cast<std::size_t>(n) + 1;
      if (i + len > in.size()) return false;
      out.append(in.substr(i, len));
      i += len;
    } else if (n != -128) {
      if (i >= in.size()) return false;
      out.append(static_cast<std::size_t>(1 - n), in[i++]);
    }
  }
  return true;
}

bool Unlzw(std::string_view in, std::string& out, std::size_t room) {
  constexpr int kClear = 256, kEnd = 257;
  std::vector<std::int32_t> prefix(4096, -1);
  std::vector<std::uint8_t> suffix(4096), first(4096);
  for (int i = 0; i < 256; ++i) suffix[i] = first[i] = static_cast<std::uint8_t>(i);
  int next = 258, width = 9, previous = -1;
  std::uint32_t buffer = 0;
  int bitsHeld = 0;
  std::vector<std::uint8_t> stack;
  for (std::size_t i = 0; out.size() < room;) {
    while (bitsHeld < width && i < in.size()) {
      buffer = (buffer << 8) | static_cast<std::uint8_t>(in[i++]);
      bitsHeld += 8;
    }
    if (bitsHeld < width) break;
    const int code = static_cast<int>((buffer >> (bitsHeld - width)) & ((1u << width) - 1));
    bitsHeld -= width;
    if (code == kEnd) break;
    if (code == kClear) {
      next = 258;
      width = 9;
      previous = -1;
      continue;
    }
    int walk = code;
    if (code >= next) {
      if (code != next || previous < 0) return false;
      walk = previous;
    }
    stack.clear();
    if (code == next) stack.push_back(first[previous]);
    for (; walk >= 0; walk = prefix[walk]) stack.push_back(suffix[walk]);
    for (auto it = stack.rbegin(); it != stack.rend(); ++it) out.push_back(static_cast<char>(*it));
    if (previous >= 0 && next < 4096) {
      prefix[next] = previous;
      suffix[next] = stack.back();
      first[next] = first[previous];
      ++next;
    }
    previous = code;
    // The code width grows one code early.
    if (next + 1 >= (1 << width) && width < 12) ++width;
  }
  return true;
}

}  // namespace

std::optional<RasterFile> DecodeTiff(std::string_view bytes) {
  const ByteReader in(bytes, bytes.starts_with("II"));
  const std::size_t dir = in.U32(4);
  const std::size_t entries = in.U16(dir);
  if (dir == 0 || dir + 2 + entries * 12 > bytes.size()) return std::nullopt;
  Ifd f;
  std::vector<std::uint32_t> bitsPerSample;
  for (std::size_t k = 0; k < entries; ++k) {
    const std::size_t e = dir + 2 + k * 12;
    const std::vector<std::uint32_t> v = Values(in, bytes, e);
    if (v.empty()) continue;
    switch (in.U16(e)) {
      case 256:
        f.width = v[0];
        break;
      case 257:
        f.height = v[0];
        break;
      case 258:
        f.bits = v[0];
        break;
      case 259:
        f.compression = v[0];
        break;
      case 262:
        f.photometric = v[0];
        break;
      case 273:
        f.offsets = v;
        break;
      case 277:
        f.samples = v[0];
        break;
      case 278:
        f.rowsPerStrip = v[0];
        break;
      case 279:
        f.counts = v;
        break;
      case 284:
        f.planar = v[0];
        break;
      case 317:
        f.predictor = v[0];
        break;
      case 320:
        f.colormap = v;
        break;
      case 338:
        f.extraAlpha = v[0] == 1 || v[0] == 2;
        break;
      default:
        break;
    }
  }
  const bool bitsOk = f.bits == 1 || f.bits == 2 || f.bits == 4 || f.bits == 8 || f.bits == 16;
  const std::uint32_t colour = f.photometric == 2 ? 3 : 1;
  if (f.width == 0 || f.height == 0 || !bitsOk || f.planar != 1 || f.photometric > 3 ||
      f.samples < colour || f.offsets.empty() || f.offsets.size() != f.counts.size() ||
      static_cast<std::size_t>(f.width) * f.height > kMaxRasterPixels ||
      (f.photometric == 3 && f.colormap.size() < 3u << f.bits)) {
    return std::nullopt;
  }
  const std::size_t rowBytes = (static_cast<std::size_t>(f.width) * f.samples * f.bits + 7) / 8;
  const std::size_t room = rowBytes * f.height;
  std::string data;
  data.reserve(room);
  for (std::size_t s = 0; s < f.offsets.size() && data.size() < room; ++s) {
    if (f.offsets[s] > bytes.size() || f.counts[s] > bytes.size() - f.offsets[s])
      return std::nullopt;
    const std::string_view strip = bytes.substr(f.offsets[s], f.counts[s]);
    const std::size_t stripRows = std::min<std::size_t>(f.rowsPerStrip, f.height);
    std::string part;
    bool ok = true;
    switch (f.compression) {
      case kNone:
        part = strip;
        break;
      case kPackBits:
        ok = UnpackBits(strip, part, stripRows * rowBytes);
        break;
      case kLzw:
        ok = Unlzw(strip, part, stripRows * rowBytes);
        break;
      case kDeflate:
      case kOldDeflate: {
        Inflated z =
            InflateZlib({reinterpret_cast<const unsigned char*>(strip.data()), strip.size()},
                        stripRows * rowBytes);
        ok = z.status == Inflated::Status::Done;
        part = std::move(z.bytes);
        break;
      }
      default:
        return std::nullopt;
    }
    if (!ok) return std::nullopt;
    // A strip carries whole rows: a short one is completed, a long one cut.
    const std::size_t rows = (part.size() + rowBytes - 1) / rowBytes;
    part.resize(std::min(rows, stripRows) * rowBytes, '\0');
    data += part;
  }
  data.resize(room, '\0');
  const std::size_t bytesPerSample = f.bits == 16 ? 2 : 1;
  if (f.predictor == 2 && f.bits >= 8) {
    const std::size_t step = f.samples * bytesPerSample;
    for (std::size_t y = 0; y < f.height; ++y) {
      auto* row = reinterpret_cast<std::uint8_t*>(data.data() + y * rowBytes);
      if (f.bits == 8) {
        for (std::size_t i = step; i < rowBytes; ++i)
          row[i] = static_cast<std::uint8_t>(row[i] + row[i - step]);
      } else {
        const ByteReader r({reinterpret_cast<const char*>(row), rowBytes}, bytes.starts_with("II"));
        std::vector<std::uint32_t> sums(rowBytes / 2);
        for (std::size_t i = 0; i < sums.size(); ++i) {
          sums[i] = (r.U16(2 * i) + (i >= f.samples ? sums[i - f.samples] : 0)) & 0xFFFF;
        }
        for (std::size_t i = 0; i < sums.size(); ++i) {
          const bool little = bytes.starts_with("II");
          row[2 * i] = static_cast<std::uint8_t>(little ? sums[i] : sums[i] >> 8);
          row[2 * i + 1] = static_cast<std::uint8_t>(little ? sums[i] >> 8 : sums[i]);
        }
      }
    }
  }
  const ByteReader samples(data, bytes.starts_with("II"));
  const std::uint32_t maxLevel = (1u << f.bits) - 1;
  auto sample = [&](std::size_t y, std::size_t index) -> std::uint32_t {
    const std::size_t row = y * rowBytes;
    if (f.bits == 16) return samples.U16(row + 2 * index);
    if (f.bits == 8) return samples.U8(row + index);
    const std::size_t bit = index * f.bits;
    return (samples.U8(row + bit / 8) >> (8 - f.bits - bit % 8)) & maxLevel;
  };
  auto level = [&](std::uint32_t s) {
    return static_cast<std::uint8_t>(f.bits == 16 ? s >> 8 : s * 255 / maxLevel);
  };
  RasterCanvas out(f.width, f.height);
  for (std::size_t y = 0; y < f.height; ++y) {
    for (std::size_t x = 0; x < f.width; ++x) {
      const std::size_t i = x * f.samples;
      Rgba p;
      if (f.photometric == 2) {
        p = {level(sample(y, i)), level(sample(y, i + 1)), level(sample(y, i + 2)),
             f.extraAlpha && f.samples > 3 ? level(sample(y, i + 3)) : std::uint8_t{255}};
      } else if (f.photometric == 3) {
        const std::size_t n = std::size_t{1} << f.bits, index = sample(y, i);
        p = {static_cast<std::uint8_t>(f.colormap[index] >> 8),
             static_cast<std::uint8_t>(f.colormap[n + index] >> 8),
             static_cast<std::uint8_t>(f.colormap[2 * n + index] >> 8), 255};
      } else {
        std::uint8_t g = level(sample(y, i));
        if (f.photometric == 0) g = static_cast<std::uint8_t>(255 - g);  // white is zero
        p = {g, g, g, f.extraAlpha && f.samples > 1 ? level(sample(y, i + 1)) : std::uint8_t{255}};
      }
      out.Put(x, y, p);
    }
  }
  return std::move(out).Finish();
}

}  // namespace sheafwork::embedded
