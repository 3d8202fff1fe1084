#pragma once
// Files a drawing names that its plot goes without: raster images whose
// files are missing or unreadable (the plot draws their frames), external
// references left out beyond the host's limits. The user is told which.

#include "embedded/automation/host_core.h"

namespace sheafwork::embedded {

/// Names each image file of the document's drawing (and of the drawings it
/// references) that was not found or cannot be read, in the host's log and
/// on the progress display (stderr on the command line).
void ReportUnusableImages(HostCore& core, const DocumentState& doc);

/// Names, the same way, each external reference found but not loaded
/// because it lies beyond the host's limits (XrefLimits).
void ReportXrefsLeftOut(HostCore& core, const DocumentState& doc);

}  // namespace sheafwork::embedded
