#include "embedded/automation/plot_styles.h"

#include "embedded/automation/variables.h"
#include "embedded/plotstyle/lookup.h"
#include "embedded/plotstyle/plot_style_file.h"

namespace sheafwork::embedded {

namespace msg = host_messages;

std::shared_ptr<const PlotStyleTable> LayoutPlotStyles(HostCore& core, const DocumentState& doc,
                                                       const std::string& layoutName,
                                                       const PlotSettings& settings) {
  const std::string& name = settings.styleSheet;
  if (!settings.Has(kPlotPlotStyles) || name.empty()) return nullptr;
  if (IsNamedPlotStyleTable(name)) {
    core.WriteLog(HostLogFile(core, doc),
                  msg::NamedPlotStylesIgnored(doc.fullName, layoutName, name));
    return nullptr;
  }
  // A table this machine does not have is what drawings from elsewhere
  // name most often (their authors' own tables): the layout is plotted
  // without it, as drawn, and the user is told which table to install. A
  // table that is there but cannot be read fails the plot: it was meant to
  // apply, and without it a layout set up for monochrome would come out in
  // colour.
  const auto path = FindPlotStyleFile(name, core.plotStylePath);
  if (!path) {
    const std::string missing = msg::PlotStyleMissing(doc.fullName, layoutName, name);
    core.WriteLog(HostLogFile(core, doc), missing);
    core.options.progress->Notice(missing);
    return nullptr;
  }
  return std::make_shared<const PlotStyleTable>(ReadPlotStyleFile(*path));
}

}  // namespace sheafwork::embedded
