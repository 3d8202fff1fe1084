#include "embedded/plotstyle/lookup.h"

#include "log/paths.h"
#include "text/strings.h"

namespace sheafwork::embedded {

bool IsNamedPlotStyleTable(const std::string& name) { return EndsWithIgnoreCase(name, ".stb"); }

std::optional<std::string> FindPlotStyleFile(const std::string& name,
                                             const std::string& searchPath) {
  return FindFileAlongPath(name, searchPath);
}

}  // namespace sheafwork::embedded
