#include "embedded/model/xrefs.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>

#include "embedded/model/referenced_files.h"
#include "log/wide_path.h"

namespace sheafwork::embedded {

namespace fs = std::filesystem;

namespace {

std::string Identity(const std::string& path) {
  std::error_code ec;
  const fs::path canonical = fs::weakly_canonical(path, ec);
  return ec ? path : PathText(canonical);
}

std::uintmax_t FileSize(const std::string& path) {
  std::error_code ec;
  const std::uintmax_t size = fs::file_size(path, ec);
  return ec ? 0 : size;
}

// Follows the references of one drawing opened. Each file is read once;
// the drawing made of it, its own references resolved, is shared by every
// reference to it that needs no deeper levels than it holds.
class Resolver {
 public:
  Resolver(std::vector<fs::path> support, const DrawingLoader& load, const XrefLimits& limits)
      : support_(std::move(support)), load_(load), limits_(limits) {}

  void Resolve(Drawing& drawing, int level) {
    chain_.insert(Identity(drawing.path));
    ResolveReferences(drawing, level);
  }

 private:
  // A file as read: its drawing, null when it could not be read or was
  // not read because of `limit`.
  struct Read {
    std::shared_ptr<const Drawing> drawing;
    XrefLimit limit = XrefLimit::None;
  };
  // A file's drawing with its references resolved `levels` further down,
  // `complete` when no reference was left out for depth.
  struct Made {
    std::shared_ptr<const Drawing> drawing;
    int levels = 0;
    bool complete = true;
  };

  void ResolveReferences(Drawing& drawing, int level) {
    drawing.xrefs.clear();
    const fs::path folder = FsPath(drawing.path).parent_path();
    for (const Block& block : drawing.blocks) {
      if (!block.IsXref()) continue;
      ExternalReference reference{block.name, block.xrefPath, {}, nullptr};
      // An overlay inside a reference is not part of the referencing drawing.
      const bool overlay = (block.flags & 8) != 0;
      if (!(level > 0 && overlay)) {
        reference.resolvedPath = LocateReferencedFile(block.xrefPath, folder, support_);
      }
      if (!reference.resolvedPath.empty()) Follow(reference, level + 1);
      drawing.xrefs.push_back(std::move(reference));
    }
  }

  // Gives the found `reference`, at `level`, its drawing.
  void Follow(ExternalReference& reference, int level) {
    const std::string identity = Identity(reference.resolvedPath);
    if (chain_.contains(identity)) return;  // a cycle: found, not loaded again
    if (level > limits_.maxDepth) {
      reference.beyond = XrefLimit::Depth;
      complete_ = false;
      return;
    }
    const int levels = limits_.maxDepth - level;
    if (const auto made = made_.find(identity);
        made != made_.end() && (made->second.complete || made->second.levels >= levels)) {
      reference.drawing = made->second.drawing;
      complete_ = complete_ && made->second.complete;
      return;
    }
    const Read& read = ReadOnce(identity, reference.resolvedPath);
    if (!read.drawing) {
      reference.beyond = read.limit;
      // A reference that cannot be read counts as not found.
      if (read.limit == XrefLimit::None) reference.resolvedPath.clear();
      return;
    }
    auto copy = std::make_shared<Drawing>(*read.drawing);
    copy->path = reference.resolvedPath;
    const bool outerComplete = complete_;
    complete_ = true;
    chain_.insert(identity);
    ResolveReferences(*copy, level);
    chain_.erase(identity);
    made_[identity] = Made{copy, levels, complete_};
    complete_ = outerComplete && complete_;
    reference.drawing = std::move(copy);
  }

  const Read& ReadOnce(const std::string& identity, const std::string& path) {
    if (const auto known = read_.find(identity); known != read_.end()) return known->second;
    Read& read = read_[identity];
    const std::uintmax_t size = FileSize(path);
    if (size > limits_.maxTotalBytes - std::min(total_, limits_.maxTotalBytes)) {
      read.limit = XrefLimit::Size;
      return read;
    }
    total_ += size;
    try {
      read.drawing = load_(path);
    } catch (...) {
      read.drawing = nullptr;
    }
    return read;
  }

  const std::vector<fs::path> support_;
  const DrawingLoader& load_;
  const XrefLimits limits_;
  std::set<std::string> chain_;
  std::map<std::string, Read> read_;
  std::map<std::string, Made> made_;
  std::uintmax_t total_ = 0;
  bool complete_ = true;  // no reference left out for depth under the one being made
};

}  // namespace

void ResolveExternalReferences(Drawing& drawing, const std::string& supportPath,
                               const DrawingLoader& load, const XrefLimits& limits) {
  Resolver(SearchFolders(supportPath), load, limits).Resolve(drawing, 0);
}

}  // namespace sheafwork::embedded
