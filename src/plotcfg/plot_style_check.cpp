#include "plotcfg/plot_style_check.h"

#include <algorithm>

#include "log/paths.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"

namespace sheafwork {

std::optional<std::string> MissingPlotStyleTable(host::PlotConfiguration& config) {
  if (!config.PlotWithPlotStyles()) return std::nullopt;
  const std::string table(TrimSpaces(config.StyleSheet()));
  if (table.empty()) return std::nullopt;
  // A table named with its folder is found there first, as the host does.
  const std::string_view bare = LastPathPart(table);
  if (bare != table && GetFileStatus(table) == kFileFound) return std::nullopt;
  const std::vector<std::string> names = config.GetPlotStyleTableNames();
  const bool known = std::any_of(names.begin(), names.end(), [&](const std::string& name) {
    return EqualsIgnoreCase(name, bare);
  });
  if (known) return std::nullopt;
  return table;
}

std::string MissingPlotStyleWarning(const std::string& table, const std::string& layout,
                                    const std::string& drawing) {
  return LoadResourceText(ids::kMissingPlotStyleStart) + table +
         LoadResourceText(ids::kMissingPlotStyleLayout) + layout +
         LoadResourceText(ids::kMissingPlotStyleEnd) + drawing;
}

}  // namespace sheafwork
