#pragma once
// One row of the batch list: a drawing and how to plot it.

#include <string>

namespace sheafwork {

struct BatchEntry {
  std::string FileName;    ///< full path of the drawing or template
  std::string Layout;      ///< layout choice; empty: the current tab
  std::string PlotSetup;   ///< named page setup; empty: the drawing's own
  std::string PlotDevice;  ///< device or plotter configuration; empty: the default
  std::string Layers;      ///< layer on/off overrides ("name flag" pairs)
  std::string PlotArea;
  std::string PlotScale;
  bool ScaleCustom = false;
  bool ScaleLW = false;
  std::string PlotFile;  ///< plot-to-file name; empty: plot to the device

  bool operator==(const BatchEntry&) const = default;
};

/// Empties every text field and sets both flags to false.
void ClearBatchEntry(BatchEntry& entry);

}  // namespace sheafwork
