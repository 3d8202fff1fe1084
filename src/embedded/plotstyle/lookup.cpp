#include "embedded/plotstyle/lookup.h"

#include <filesystem>
#include <system_error>

#include "log/paths.h"
#include "text/strings.h"

namespace sheafwork::embedded {

namespace fs = std::filesystem;

namespace {

std::optional<fs::path> InFolder(const fs::path& folder, const std::string& fileName) {
  const fs::path exact = folder / fileName;
  if (IsRegularFile(exact)) return exact;
  std::error_code ec;
  fs::directory_iterator it(folder, ec);
  if (ec) return std::nullopt;
  std::optional<fs::path> found;
  for (; it != fs::directory_iterator(); it.increment(ec)) {
    if (ec) break;
    const fs::path candidate = it->path();
    // The first match in name order, so that the choice does not depend on
    // the order the folder lists its files in.
    if (EqualsIgnoreCase(candidate.filename().string(), fileName) && IsRegularFile(candidate) &&
        (!found || candidate.filename() < found->filename())) {
      found = candidate;
    }
  }
  return found;
}

}  // namespace

bool IsNamedPlotStyleTable(const std::string& name) { return EndsWithIgnoreCase(name, ".stb"); }

std::optional<std::string> FindPlotStyleFile(const std::string& name,
                                             const std::string& searchPath) {
  const std::string bare(LastPathPart(name));
  if (bare.empty()) return std::nullopt;
  if (bare != name && IsRegularFile(fs::path(name))) return name;
  for (const std::string& folder : SplitSearchPath(searchPath)) {
    if (const auto found = InFolder(fs::path(folder), bare)) return found->string();
  }
  return std::nullopt;
}

}  // namespace sheafwork::embedded
