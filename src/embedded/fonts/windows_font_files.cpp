// Windows: the font files of the Windows folder's FONTS, each file's faces
// read from its own tables the first time a font is looked up, then kept for
// the program's life.
#include "embedded/fonts/font_files.h"

#include <mutex>
#include <vector>

#include "embedded/fonts/font_names.h"
#include "log/paths.h"
#include "platform/fonts.h"
#include "text/strings.h"

namespace sheafwork::embedded {

namespace {

bool IsFontFile(std::string_view name) {
  for (const std::string_view ext : {".ttf", ".otf", ".ttc", ".otc"}) {
    if (name.size() > ext.size() && EqualsIgnoreCase(name.substr(name.size() - ext.size()), ext))
      return true;
  }
  return false;
}

struct Face {
  FontFaceNames names;
  std::string path;
  std::string key;  // FamilyKey of the family
};

class FontFolder {
 public:
  static const FontFolder& Get() {
    static const FontFolder folder;
    return folder;
  }
  const std::vector<Face>& Faces() const { return faces_; }

 private:
  FontFolder() {
    const std::string folder = WindowsFontsFolder();
    for (const std::string& name : WindowsFontFileNames()) {
      if (IsFontFile(name)) Add(folder + "\\" + name);
    }
  }

  void Add(const std::string& path) {
    for (FontFaceNames& names : ReadFontFileFaceNames(path)) {
      std::string key = FamilyKey(names.family);
      faces_.push_back({std::move(names), path, std::move(key)});
    }
  }

  std::vector<Face> faces_;
};

FaceFile ToFaceFile(const Face& f) { return {f.path, f.names.index, f.names.italic, f.names.bold}; }

// The face of those given closest to bold and italic as asked: the slant
// matters more than the weight, then the weight nearest the usual one.
const Face* Closest(const std::vector<const Face*>& faces, bool bold, bool italic) {
  const Face* best = nullptr;
  int bestScore = 0;
  const int wanted = bold ? 700 : 400;
  for (const Face* f : faces) {
    const int score = (f->names.italic != italic ? 10000 : 0) + (f->names.bold != bold ? 1000 : 0) +
                      std::abs(f->names.weight - wanted);
    if (best == nullptr || score < bestScore) {
      best = f;
      bestScore = score;
    }
  }
  return best;
}

}  // namespace

std::optional<FaceFile> FindFamily(std::string_view family, bool bold, bool italic) {
  if (family.empty()) return std::nullopt;
  const std::string key = FamilyKey(family);
  std::vector<const Face*> faces;
  for (const Face& f : FontFolder::Get().Faces()) {
    if (f.key == key) faces.push_back(&f);
  }
  if (const Face* f = Closest(faces, bold, italic)) return ToFaceFile(*f);
  return std::nullopt;
}

std::optional<FaceFile> FindFontFile(std::string_view fileName) {
  fileName = LastPathPart(fileName);
  for (const Face& f : FontFolder::Get().Faces()) {
    if (f.names.index == 0 && EqualsIgnoreCase(LastPathPart(f.path), fileName))
      return ToFaceFile(f);
  }
  return std::nullopt;
}

std::optional<FaceFile> FindAnyFace() {
  for (const std::string_view family : {"Arial", "DejaVu Sans", "Liberation Sans", "Tahoma"}) {
    if (auto found = FindFamily(family, false, false)) return found;
  }
  std::vector<const Face*> faces;
  for (const Face& f : FontFolder::Get().Faces()) faces.push_back(&f);
  if (const Face* f = Closest(faces, false, false)) return ToFaceFile(*f);
  return std::nullopt;
}

}  // namespace sheafwork::embedded
