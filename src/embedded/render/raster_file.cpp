#include "embedded/render/raster_file.h"
#include "log/wide_path.h"

#include <fstream>
#include <iterator>

namespace sheafwork::embedded {

std::optional<RasterFile> DecodeRasterFile(std::string_view bytes) {
  if (bytes.starts_with("\x89PNG\r\n\x1a\n")) return DecodePng(bytes);
  if (bytes.starts_with("\xFF\xD8")) return ReadJpegHeader(bytes);
  if (bytes.starts_with("BM")) return DecodeBmp(bytes);
  if (bytes.starts_with("II*") || bytes.starts_with("MM\0*")) return DecodeTiff(bytes);
  return std::nullopt;
}

std::optional<RasterFile> ReadRasterFile(const std::string& path) {
  std::ifstream in(FsPath(path), std::ios::binary);
  if (!in) return std::nullopt;
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (in.bad()) return std::nullopt;
  return DecodeRasterFile(bytes);
}

}  // namespace sheafwork::embedded
