#pragma once
// A row's layer overrides, applied to the current document's layers.

#include "batch/batch_entry.h"
#include "host/host_session.h"
#include "log/log_file.h"

namespace sheafwork {

/// Switches the layers named in the row's Layers text ("name flag" pairs,
/// flag 1 plot, 0 do not plot). A host error or a bad flag is logged
/// (message 100) and gives false.
bool ApplyLayerSettings(HostSession& host, const BatchEntry& entry, LogFile& errorLog);

}  // namespace sheafwork
