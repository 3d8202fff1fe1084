#pragma once
// What the editing dialogs read from a drawing through the host: its layouts,
// page setups, views, layers and the plot settings of one of its layouts.
#include <string>
#include <vector>

#include "host/host_session.h"

namespace sheafwork::ui {

/// What to read; combine with |.
enum DrawingPart : unsigned {
  kReadLayouts = 1,
  kReadPageSetups = 2,
  kReadViews = 4,
  kReadLayers = 8,
  kReadSettings = 16,
};

struct LayerState {
  std::string name;
  bool plotted = true;  ///< on, thawed and plottable
};

/// A layout's plot area, scale and lineweight scaling in the row encodings.
struct PlotSettingsFields {
  std::string plotArea;
  std::string plotScale;
  bool scaleCustom = false;
  bool scaleLW = false;
};

struct DrawingInfo {
  bool opened = false;
  std::string error;                 ///< the host's description when the drawing did not open
  std::vector<std::string> layouts;  ///< every tab, model tab included, in tab order
  std::vector<std::string> pageSetups;
  bool pageSetupsOk = true;
  std::vector<std::string> views;
  bool viewsOk = true;
  std::vector<LayerState> layers;
  bool layersOk = true;
  /// The settings of the layout named by the row (kReadSettings).
  bool areaOk = false;
  bool scaleOk = false;
  PlotSettingsFields settings;
};

/// Opens `path` read-only in the host, reads the parts asked for, and closes
/// it again. `layout` is the row's Layout, whose settings kReadSettings reads.
/// A part that fails to read leaves its flag false and the others are still
/// read. Never throws.
DrawingInfo ReadDrawing(HostSession& host, const std::string& path, unsigned parts,
                        const std::string& layout = {});

/// The plot area code of a host plot type, or the view's name for a view.
std::string PlotAreaFor(int plotType, const std::string& view);

/// A custom scale number as the list stores it.
std::string FormatScaleNumber(double value);

}  // namespace sheafwork::ui
