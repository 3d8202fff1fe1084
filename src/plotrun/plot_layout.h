#pragma once
// Plotting one layout of the drawing open in the host.

#include <string>

#include "batch/batch_entry.h"
#include "host/host_session.h"
#include "log/log_file.h"
#include "platform/clock.h"
#include "plotcfg/page_setup.h"

namespace sheafwork {

/// What stays the same for every layout of a run.
struct LayoutPlotContext {
  HostSession& host;
  LogFile& errorLog;
  PaperChangeReport paperReport;
  /// The page setup read from another drawing for the current row.
  const PlotSetupRecord& record;
  Clock clock;
  /// The run's plot style table for every sheet; empty: the layout's own.
  std::string plotStyle;
};

/// Makes `layoutName` active, applies the row's page setup, layers and plot
/// settings in that order (the first failure stops it, with its error-log
/// line), and the run's plot style table, then plots to the row's device or
/// plot file. True when the host
/// accepted the plot; `elapsed` then holds the plot's duration as the journal
/// writes it. Never throws.
bool PlotLayout(const LayoutPlotContext& context, const BatchEntry& entry,
                const std::string& layoutName, bool planFound, std::string& elapsed);

/// The plot file of a row for one layout: the row's PlotFile trimmed; when
/// the row plots all layouts, its folder with "<drawing>-<layout>" instead.
std::string PlotFileFor(const BatchEntry& entry, const std::string& layoutName);

/// The device handed to the host for a row's PlotDevice: a bare ".pc3" name
/// found in one of the printer-configuration folders becomes that file's
/// full path; anything else is passed as it stands.
std::string ResolveDevice(const std::string& device, const std::string& printerConfigPath);

}  // namespace sheafwork
