#include "embedded/model/xrefs.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

#include "embedded/model/referenced_files.h"

namespace sheafwork::embedded {

namespace fs = std::filesystem;

namespace {

std::string Identity(const std::string& path) {
  std::error_code ec;
  const fs::path canonical = fs::weakly_canonical(path, ec);
  return ec ? path : canonical.string();
}

void Resolve(Drawing& drawing, const std::vector<fs::path>& support, const DrawingLoader& load,
             std::set<std::string>& chain, bool nested) {
  drawing.xrefs.clear();
  const fs::path folder = fs::path(drawing.path).parent_path();
  for (const Block& block : drawing.blocks) {
    if (!block.IsXref()) continue;
    ExternalReference reference{block.name, block.xrefPath, {}, nullptr};
    // An overlay inside a reference is not part of the referencing drawing.
    const bool overlay = (block.flags & 8) != 0;
    if (!(nested && overlay)) {
      reference.resolvedPath = LocateReferencedFile(block.xrefPath, folder, support);
    }
    if (!reference.resolvedPath.empty()) {
      const std::string identity = Identity(reference.resolvedPath);
      if (!chain.contains(identity)) {
        try {
          std::shared_ptr<const Drawing> loaded = load(reference.resolvedPath);
          if (loaded) {
            auto copy = std::make_shared<Drawing>(*loaded);
            copy->path = reference.resolvedPath;
            chain.insert(identity);
            Resolve(*copy, support, load, chain, true);
            chain.erase(identity);
            reference.drawing = std::move(copy);
          }
        } catch (...) {
          // A reference that cannot be read counts as not found.
          reference.resolvedPath.clear();
        }
      }
    }
    drawing.xrefs.push_back(std::move(reference));
  }
}

}  // namespace

void ResolveExternalReferences(Drawing& drawing, const std::string& supportPath,
                               const DrawingLoader& load) {
  std::set<std::string> chain = {Identity(drawing.path)};
  Resolve(drawing, SearchFolders(supportPath), load, chain, false);
}

}  // namespace sheafwork::embedded
