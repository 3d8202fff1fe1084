#pragma once
// Where a file that a drawing names is found: external references and the
// files of raster images are looked up the same way.

#include <filesystem>
#include <string>
#include <vector>

#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// The folders of a ";"-separated search path.
std::vector<std::filesystem::path> SearchFolders(const std::string& searchPath);

/// Where the file stored as `stored` (a "\" separates folders too) is found:
/// as given (relative to `drawingFolder`), then its file name in
/// `drawingFolder`, then in each of `support`. Empty when nowhere.
std::string LocateReferencedFile(const std::string& stored,
                                 const std::filesystem::path& drawingFolder,
                                 const std::vector<std::filesystem::path>& support);

/// Fills the resolved path of each of the drawing's image definitions,
/// looked up like LocateReferencedFile from the drawing's folder and the
/// folders of `supportPath`.
void ResolveImageFiles(Drawing& drawing, const std::string& supportPath);

}  // namespace sheafwork::embedded
