#include "embedded/fonts/font_catalog.h"

#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "embedded/fonts/font_files.h"
#include "log/paths.h"
#include "text/strings.h"

namespace sheafwork::embedded {

namespace {

constexpr std::string_view kFallbackFamily = "DejaVu Sans";

std::string_view Stem(std::string_view file) {
  file = LastPathPart(file);
  const auto dot = file.rfind('.');
  return dot == std::string_view::npos ? file : file.substr(0, dot);
}

// Families with the advance widths of one that drawings often ask for and
// that systems other than the drawing's lack: text in a stand-in of other
// widths would wrap elsewhere and run longer or shorter than drawn.
struct MetricTwins {
  std::string_view family;
  std::array<std::string_view, 4> twins;
};
constexpr MetricTwins kMetricTwins[] = {
    {"arial", {"Liberation Sans", "Arimo", "Nimbus Sans", "Nimbus Sans L"}},
    {"helvetica", {"Liberation Sans", "Arimo", "Nimbus Sans", "Nimbus Sans L"}},
    {"arial narrow", {"Liberation Sans Narrow", "Nimbus Sans Narrow", "", ""}},
    {"times new roman", {"Liberation Serif", "Tinos", "Nimbus Roman", "Nimbus Roman No9 L"}},
    {"courier new", {"Liberation Mono", "Cousine", "Nimbus Mono PS", "Nimbus Mono L"}},
    {"calibri", {"Carlito", "", "", ""}},
    {"cambria", {"Caladea", "", "", ""}},
};
// The file names of those families' faces: a stem, then at most two letters
// of weight and slant ("arialbd", "timesi", "calibriz").
constexpr std::pair<std::string_view, std::string_view> kFileStems[] = {
    {"arialn", "arial narrow"}, {"arial", "arial"},     {"times", "times new roman"},
    {"cour", "courier new"},    {"calibri", "calibri"}, {"cambria", "cambria"},
};

// A face with the widths of the family asked for, or of the family whose
// file was named.
std::optional<FaceFile> FindMetricTwin(const FontFace& r) {
  std::string_view family = r.family;
  if (family.empty() && !r.file.empty()) {
    const std::string_view stem = Stem(r.file);
    for (const auto& [start, owner] : kFileStems) {
      if (StartsWithIgnoreCase(stem, start) && stem.size() <= start.size() + 2) {
        family = owner;
        break;
      }
    }
  }
  for (const MetricTwins& m : kMetricTwins) {
    if (!EqualsIgnoreCase(m.family, family)) continue;
    for (const std::string_view twin : m.twins) {
      if (twin.empty()) break;
      if (auto found = FindFamily(twin, r.bold, r.italic)) return found;
    }
  }
  return std::nullopt;
}

std::optional<FaceFile> Locate(const FontFace& r) {
  if (auto found = FindFamily(r.family, r.bold, r.italic)) return found;
  if (!r.file.empty()) {
    if (auto found = FindFontFile(r.file)) return found;
    if (auto found = FindFamily(Stem(r.file), r.bold, r.italic)) return found;
  }
  if (auto found = FindMetricTwin(r)) return found;
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
