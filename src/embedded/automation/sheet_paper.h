#pragma once
// The paper a layout plots on with a given device. A layout keeps its own
// sheet as long as its size is usable; when the device offers that paper
// (by name, by the same name written otherwise, or by size) the device's
// paper is taken with its margins; a layout never set up (no usable size)
// plots on the device's default paper.

#include <string>

#include "embedded/devices/plotter_config.h"
#include "embedded/model/plot_settings.h"

namespace sheafwork::embedded {

/// Puts `paper` (name, size and margins) into `settings`.
void UsePaper(PlotSettings& settings, const Paper& paper);

/// What FitPaperToDevice did.
enum class PaperFit {
  Matched,  ///< the device's paper of that name or size
  Kept,     ///< the layout's own size, which the device does not offer
  Default,  ///< the device's default paper, for a paper without a usable size
  None,     ///< nothing usable: the device has no paper
};

/// Fits the paper of `settings` to `config` (see above).
PaperFit FitPaperToDevice(PlotSettings& settings, const PlotterConfig& config);

/// The paper of `settings` as the host's log names it: its name, else its
/// size.
std::string PaperForLog(const PlotSettings& settings);

}  // namespace sheafwork::embedded
