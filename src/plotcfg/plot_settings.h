#pragma once
// A row's plot area, scale and lineweight scaling, applied to the active
// layout.

#include "batch/batch_entry.h"
#include "host/host_session.h"
#include "log/log_file.h"

namespace sheafwork {

/// Writes the row's PlotArea, PlotScale, ScaleCustom and ScaleLW into the
/// active layout. Warnings and fallbacks go to `errorLog`; a host error is
/// logged (message 111) and gives false.
bool ApplyPlotSettings(HostSession& host, const BatchEntry& entry, LogFile& errorLog);

}  // namespace sheafwork
