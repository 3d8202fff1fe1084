#pragma once
// The host's own reader and plotter, used when the options name none.

#include "embedded/automation/embedded_host.h"

namespace sheafwork::embedded {

/// Reads with the DXF reader.
DrawingReader DefaultDrawingReader();
/// Plots with the plot engine.
Plotter DefaultPlotter();

}  // namespace sheafwork::embedded
