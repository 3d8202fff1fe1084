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
  const auto note = [&](const std::string& line) {
    core.WriteLog(HostLogFile(core, doc), line);
    return nullptr;
  };
  if (IsNamedPlotStyleTable(name)) {
    return note(msg::NamedPlotStylesIgnored(doc.fullName, layoutName, name));
  }
  const auto path = FindPlotStyleFile(name, core.plotStylePath);
  if (!path) return note(msg::PlotStyleNotFound(doc.fullName, layoutName, name));
  try {
    return std::make_shared<const PlotStyleTable>(ReadPlotStyleFile(*path));
  } catch (const PlotStyleError& error) {
    return note(msg::PlotStyleUnreadable(doc.fullName, layoutName, error.what()));
  }
}

}  // namespace sheafwork::embedded
