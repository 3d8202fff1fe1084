#pragma once
// Plot style tables a layout names that the host does not have. The host
// plots such a layout without its table (as drawn, in colour): worth a
// warning, not a failure, since drawings from elsewhere name their
// authors' own tables.

#include <optional>
#include <string>

#include "host/automation.h"

namespace sheafwork {

/// The table `config` plots with, when the host has no table of that file
/// name (letter case aside) and it is not a file on this machine either;
/// nullopt when it plots without one or the table is there. Throws
/// host::Error.
std::optional<std::string> MissingPlotStyleTable(host::PlotConfiguration& config);

/// The warning line for `table` missing from `layout` of `drawing`.
std::string MissingPlotStyleWarning(const std::string& table, const std::string& layout,
                                    const std::string& drawing);

}  // namespace sheafwork
