#include "embedded/model/referenced_files.h"

#include "log/paths.h"
#include "log/wide_path.h"

namespace sheafwork::embedded {

namespace fs = std::filesystem;

namespace {

// Stored paths often come from Windows: "\" separates their folders too.
fs::path StoredPath(std::string stored) {
  for (char& c : stored) {
    if (c == '\\') c = '/';
  }
  return FsPath(stored);
}

}  // namespace

std::vector<fs::path> SearchFolders(const std::string& searchPath) {
  const std::vector<std::string> folders = SplitSearchPath(searchPath);
  return {folders.begin(), folders.end()};
}

std::string LocateReferencedFile(const std::string& stored, const fs::path& drawingFolder,
                                 const std::vector<fs::path>& support) {
  const fs::path path = StoredPath(stored);
  if (path.empty()) return {};
  const fs::path asGiven = path.is_absolute() ? path : drawingFolder / path;
  if (IsRegularFile(asGiven)) return PathText(asGiven.lexically_normal());
  const fs::path name = path.filename();
  if (name.empty()) return {};
  if (IsRegularFile(drawingFolder / name)) return PathText((drawingFolder / name).lexically_normal());
  for (const fs::path& folder : support) {
    if (IsRegularFile(folder / name)) return PathText((folder / name).lexically_normal());
  }
  return {};
}

void ResolveImageFiles(Drawing& drawing, const std::string& supportPath) {
  if (drawing.images.empty()) return;
  const fs::path folder = FsPath(drawing.path).parent_path();
  const std::vector<fs::path> support = SearchFolders(supportPath);
  for (auto& [handle, definition] : drawing.images) {
    definition.resolvedPath = LocateReferencedFile(definition.storedPath, folder, support);
  }
}

}  // namespace sheafwork::embedded
