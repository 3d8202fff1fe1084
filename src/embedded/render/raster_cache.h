#pragma once
// Decoded raster image files, kept from one plot to the next: a drawing
// that shows the same image on every sheet decodes it once.

#include <memory>
#include <string>

#include "embedded/render/raster_file.h"

namespace sheafwork::embedded {

/// The decoded file at `path`, from the cache while the file keeps its size
/// and time; null when it cannot be read or decoded. The cache holds about
/// 256 MB, the images used longest ago leaving first.
std::shared_ptr<const RasterFile> LoadRasterImage(const std::string& path);

}  // namespace sheafwork::embedded
