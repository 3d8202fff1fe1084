#include "embedded/plotstyle/lookup.h"

#include <algorithm>
#include <filesystem>

#include "log/paths.h"
#include "log/wide_path.h"
#include "text/strings.h"

namespace sheafwork::embedded {

bool IsNamedPlotStyleTable(const std::string& name) { return EndsWithIgnoreCase(name, ".stb"); }

std::optional<std::string> FindPlotStyleFile(const std::string& name,
                                             const std::string& searchPath) {
  return FindFileAlongPath(name, searchPath);
}

std::vector<std::string> PlotStyleFileNames(const std::string& searchPath) {
  std::vector<std::string> names;
  for (const std::string& folder : SplitSearchPath(searchPath)) {
    std::error_code ec;
    std::filesystem::directory_iterator it(FsPath(folder), ec);
    for (; !ec && it != std::filesystem::directory_iterator(); it.increment(ec)) {
      std::string name = PathText(it->path().filename());
      if (!EndsWithIgnoreCase(name, ".ctb") && !EndsWithIgnoreCase(name, ".stb")) continue;
      if (!IsRegularFile(it->path())) continue;
      const bool known = std::any_of(names.begin(), names.end(), [&](const std::string& other) {
        return EqualsIgnoreCase(other, name);
      });
      if (!known) names.push_back(std::move(name));
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace sheafwork::embedded
