#include "plotrun/plot_layout.h"

#include "host/error.h"
#include "log/paths.h"
#include "plotcfg/devices.h"
#include "plotcfg/layer_settings.h"
#include "plotcfg/layout_setup.h"
#include "plotcfg/plot_settings.h"
#include "plotcfg/plot_style_check.h"
#include "plotrun/plot_run.h"
#include "res/string_ids.h"
#include "res/string_table.h"
#include "text/strings.h"

namespace sheafwork {

namespace {

/// A row's device overrides the layout's unless it is empty or the default.
std::optional<std::string> RowDevice(const BatchEntry& entry) {
  if (entry.PlotDevice.empty() || IsDefaultDevice(entry.PlotDevice)) return std::nullopt;
  return entry.PlotDevice;
}

/// Names in the error log a plot style table the layout about to be plotted
/// asks for and the host does not have; the host plots without it. Only a
/// warning: a host error while asking leaves the plot to go on.
void WarnOfMissingPlotStyle(HostSession& host, LogFile& errorLog, const BatchEntry& entry) {
  try {
    auto layout = host.App().ActiveDocument()->ActiveLayout();
    // By its own name: a row for the current tab names no layout.
    if (const auto missing = MissingPlotStyleTable(*layout)) {
      errorLog.WriteLogLine(MissingPlotStyleWarning(*missing, layout->Name(), entry.FileName));
    }
  } catch (const host::HostGone&) {
    throw;
  } catch (const host::Error&) {
  }
}

}  // namespace

std::string PlotFileFor(const BatchEntry& entry, const std::string& layoutName) {
  std::string name(TrimSpaces(entry.PlotFile));
  if (IsAllLayouts(entry.Layout)) {
    name =
        FolderFromPath(name) + StripExtension(FileNameFromPath(entry.FileName)) + "-" + layoutName;
  }
  return name;
}

std::string ResolveDevice(const std::string& device, const std::string& printerConfigPath) {
  if (!EndsWithIgnoreCase(device, "pc3") || !FolderFromPath(device).empty()) return device;
  for (const auto& folder : SplitSearchPath(printerConfigPath)) {
    std::string candidate = folder + FolderSeparator() + device;
    if (GetFileStatus(candidate) == kFileFound) return candidate;
  }
  return device;
}

bool PlotLayout(const LayoutPlotContext& context, const BatchEntry& entry,
                const std::string& layoutName, bool planFound, std::string& elapsed) {
  HostSession& host = context.host;
  LogFile& errorLog = context.errorLog;
  try {
    auto plot = host.App().ActiveDocument()->GetPlot();
    plot->SetQuietErrorMode(true);
    plot->SetNumberOfCopies(1);

    if (!SetupLayout(host, layoutName, ErrorOutput::ToLog(errorLog))) {
      errorLog.WriteLogLine(LoadResourceText(ids::kLayoutSetupFailed) + entry.FileName);
      return false;
    }
    if (!SetupNPS(host, entry.PlotSetup, planFound, context.record, context.paperReport)) {
      errorLog.WriteLogLine(LoadResourceText(ids::kSetupNpsFailed));
      return false;
    }
    if (!ApplyLayerSettings(host, entry, errorLog)) {
      errorLog.WriteLogLine(LoadResourceText(ids::kLayersFailed) + entry.FileName);
      return false;
    }
    if (!ApplyPlotSettings(host, entry, errorLog)) return false;
    if (!context.plotStyle.empty()) {
      auto layout = host.App().ActiveDocument()->ActiveLayout();
      layout->SetStyleSheet(context.plotStyle);
      layout->SetPlotWithPlotStyles(true);
    }
    WarnOfMissingPlotStyle(host, errorLog, entry);

    const LocalTime start = context.clock();
    bool plotted;
    const auto device = RowDevice(entry);
    if (entry.PlotFile.empty()) {
      if (device) {
        plotted = plot->PlotToDevice(
            ResolveDevice(*device, host.App().GetPreferences()->PrinterConfigPath()));
      } else {
        plotted = plot->PlotToDevice(std::nullopt);
      }
    } else {
      plotted = plot->PlotToFile(PlotFileFor(entry, layoutName), device);
    }
    const LocalTime end = context.clock();
    if (!plotted) return false;
    elapsed = FormatElapsedTime(start, end);
    return true;
  } catch (const host::HostGone&) {
    throw;  // the run cannot go on: the plot run ends it
  } catch (const host::Error&) {
    return false;
  }
}

}  // namespace sheafwork
