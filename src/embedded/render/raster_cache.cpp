#include "embedded/render/raster_cache.h"

#include <filesystem>
#include <list>
#include <mutex>
#include <system_error>

namespace sheafwork::embedded {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kCacheBytes = std::size_t{256} << 20;

struct Entry {
  std::string path;
  std::uintmax_t size = 0;
  fs::file_time_type time;
  std::shared_ptr<const RasterFile> file;
};

std::mutex cacheMutex;
std::list<Entry> cache;  // most recently used first

std::size_t Bytes(const Entry& e) { return e.file ? e.file->bytes.size() : 0; }

}  // namespace

std::shared_ptr<const RasterFile> LoadRasterImage(const std::string& path) {
  std::error_code ec;
  const std::uintmax_t size = fs::file_size(path, ec);
  if (ec) return nullptr;
  const fs::file_time_type time = fs::last_write_time(path, ec);
  if (ec) return nullptr;
  {
    const std::lock_guard lock(cacheMutex);
    for (auto it = cache.begin(); it != cache.end(); ++it) {
      if (it->path != path) continue;
      if (it->size == size && it->time == time) {
        cache.splice(cache.begin(), cache, it);
        return it->file;
      }
      cache.erase(it);
      break;
    }
  }
  std::optional<RasterFile> decoded = ReadRasterFile(path);
  std::shared_ptr<const RasterFile> file =
      decoded ? std::make_shared<const RasterFile>(std::move(*decoded)) : nullptr;
  const std::lock_guard lock(cacheMutex);
  cache.push_front({path, size, time, file});
  std::size_t held = 0;
  for (auto it = cache.begin(); it != cache.end();) {
    held += Bytes(*it);
    // The newest entry stays, however large.
    if (held > kCacheBytes && it != cache.begin()) {
      held -= Bytes(*it);
      it = cache.erase(it);
    } else {
      ++it;
    }
  }
  return file;
}

}  // namespace sheafwork::embedded
