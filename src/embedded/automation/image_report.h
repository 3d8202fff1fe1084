#pragma once
// Raster images a drawing shows whose files are missing or unreadable: the
// plot draws their frames, and the user is told which files they are.

#include "embedded/automation/host_core.h"

namespace sheafwork::embedded {

/// Names each image file of the document's drawing (and of the drawings it
/// references) that was not found or cannot be read, in the host's log and
/// on the progress display (stderr on the command line).
void ReportUnusableImages(HostCore& core, const DocumentState& doc);

}  // namespace sheafwork::embedded
