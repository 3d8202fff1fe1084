#pragma once
// The group codes of plot settings, shared by LAYOUT and PLOTSETTINGS.

#include "embedded/dxf/context.h"

namespace sheafwork::embedded {

/// Applies one tag of an AcDbPlotSettings subclass; other codes are ignored.
void ApplyPlotSettingsTag(const Context& ctx, const Tag& t, PlotSettings& s);

}  // namespace sheafwork::embedded
