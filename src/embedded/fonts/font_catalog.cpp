#include "embedded/fonts/font_catalog.h"

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "embedded/fonts/font_files.h"
#include "log/paths.h"

namespace sheafwork::embedded {

namespace {

constexpr std::string_view kFallbackFamily = "DejaVu Sans";

std::string_view Stem(std::string_view file) {
  file = LastPathPart(file);
  const auto dot = file.rfind('.');
  return dot == std::string_view::npos ? file : file.substr(0, dot);
}

std::optional<FaceFile> Locate(const FontFace& r) {
  if (auto found = FindFamily(r.family, r.bold, r.italic)) return found;
  if (!r.file.empty()) {
    if (auto found = FindFontFile(r.file)) return found;
    if (auto found = FindFamily(Stem(r.file), r.bold, r.italic)) return found;
  }
  if (auto found = FindFamily(kFallbackFamily, r.bold, r.italic)) return found;
  return FindAnyFace();
}

class Catalog {
 public:
  ChosenFace Choose(const FontFace& r) {
    std::string key(r.family);
    key += '|';
    key += r.file;
    key += r.bold ? "|b" : "|";
    key += r.italic ? "i" : "";
    const std::lock_guard lock(mutex_);
    auto it = chosen_.find(key);
    if (it != chosen_.end()) return it->second;
    ChosenFace chosen;
    if (const std::optional<FaceFile> file = Locate(r)) {
      chosen.face = Open(*file);
      chosen.slant = r.italic && !file->italic;
    }
    return chosen_.emplace(std::move(key), chosen).first->second;
  }

 private:
  const TrueTypeFace* Open(const FaceFile& file) {
    auto key = std::make_pair(file.path, file.index);
    auto it = faces_.find(key);
    if (it == faces_.end()) {
      it = faces_.emplace(std::move(key), TrueTypeFace::Open(file.path, file.index)).first;
    }
    return it->second.get();
  }

  std::mutex mutex_;
  std::map<std::string, ChosenFace> chosen_;
  std::map<std::pair<std::string, int>, std::unique_ptr<TrueTypeFace>> faces_;
};

}  // namespace

ChosenFace ChooseFace(const FontFace& request) {
  static Catalog catalog;
  return catalog.Choose(request);
}

}  // namespace sheafwork::embedded
