// JPEG files are not decoded here: the PDF output embeds them as they are
// and the painted outputs decode them with Qt. Only the frame header is
// read, for the size and the number of components.

#include "embedded/render/raster_file.h"
#include "embedded/render/raster_pixels.h"

namespace sheafwork::embedded {

std::optional<RasterFile> ReadJpegHeader(std::string_view bytes) {
  const ByteReader in(bytes, false);
  std::size_t at = 2;
  while (at + 4 <= bytes.size()) {
    if (in.U8(at) != 0xFF) return std::nullopt;
    const std::uint32_t marker = in.U8(at + 1);
    if (marker == 0xFF) {  // fill byte
      ++at;
      continue;
    }
    const std::uint32_t length = in.U16(at + 2);
    // Start of frame: baseline, extended or progressive, Huffman coded;
    // arithmetic coding and lossless frames are refused.
    if (marker == 0xC0 || marker == 0xC1 || marker == 0xC2) {
      const int height = static_cast<int>(in.U16(at + 5));
      const int width = static_cast<int>(in.U16(at + 7));
      const int components = static_cast<int>(in.U8(at + 9));
      if (width <= 0 || height <= 0 || at + 10 > bytes.size()) return std::nullopt;
      if (components != 1 && components != 3 && components != 4) return std::nullopt;
      return RasterFile{RasterFile::Encoding::Jpeg, width, height, components, std::string(bytes)};
    }
    if ((marker >= 0xC3 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC) ||
        marker == 0xD9 || marker == 0xDA || length < 2) {
      return std::nullopt;
    }
    at += 2 + length;
  }
  return std::nullopt;
}

}  // namespace sheafwork::embedded
