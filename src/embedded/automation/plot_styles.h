#pragma once
// The plot style table a layout's plot goes through.

#include <memory>
#include <string>

#include "embedded/automation/host_core.h"
#include "embedded/plotstyle/plot_style_table.h"

namespace sheafwork::embedded {

/// The table `settings` name, when they plot with plot styles, found along
/// the host's plot-style path. Null when there is none to apply; a named
/// table (.stb) is noted in the host's log for `doc` and the plot goes on
/// without it. Throws PlotStyleError, naming the table and the fault, for a
/// table found nowhere or that cannot be read.
std::shared_ptr<const PlotStyleTable> LayoutPlotStyles(HostCore& core, const DocumentState& doc,
                                                       const std::string& layoutName,
                                                       const PlotSettings& settings);

}  // namespace sheafwork::embedded
