#pragma once
// The plot settings a drawing stores for each layout and each named page
// setup. Lengths on paper are in millimetres; the window is in drawing units.

#include <cmath>
#include <cstdint>
#include <string>

#include "embedded/model/geometry.h"

namespace sheafwork::embedded {

/// Bits of PlotSettings::flags.
enum PlotFlag : std::int32_t {
  kPlotViewportBorders = 1,
  kShowPlotStyles = 2,
  kPlotCentered = 4,
  kPlotHidden = 8,
  kUseStandardScale = 16,
  kPlotPlotStyles = 32,
  kScaleLineweights = 64,
  kPrintLineweights = 128,
  kDrawViewportsFirst = 512,
  kModelType = 1024,
};

/// PlotSettings::plotType.
enum PlotArea : std::int16_t {
  kPlotDisplay = 0,
  kPlotExtents = 1,
  kPlotLimits = 2,
  kPlotView = 3,
  kPlotWindow = 4,
  kPlotLayout = 5,
};

struct PlotSettings {
  std::string pageSetupName;  ///< the page setup last applied, often empty
  std::string configName;     ///< device: printer, .pc3 file, "none_device" or empty
  std::string mediaName;      ///< paper size by the device's name for it
  std::string viewName;       ///< the named view plotted with kPlotView
  std::string styleSheet;     ///< plot style table file, empty for none
  double marginLeft = 7.5;    ///< unprintable margins of the media, mm
  double marginBottom = 20;
  double marginRight = 7.5;
  double marginTop = 20;
  double paperWidth = 420;  ///< media as the device defines it (unrotated), mm
  double paperHeight = 297;
  Vec2 origin;  ///< plot origin offset, mm
  Vec2 windowMin;
  Vec2 windowMax;
  double customNumerator = 1;    ///< paper units ...
  double customDenominator = 1;  ///< ... per drawing units
  std::int32_t flags =
      kUseStandardScale | kPlotPlotStyles | kPrintLineweights | kDrawViewportsFirst;
  std::int16_t paperUnits = 1;  ///< 0 inches, 1 millimetres, 2 pixels
  std::int16_t rotation = 0;    ///< 0, 1 (90° ccw), 2 (180°), 3 (90° cw)
  std::int16_t plotType = kPlotLayout;
  std::int16_t standardScale = 16;  ///< 0 fit, 16 1:1 (see the standard-scale table)

  bool Has(PlotFlag flag) const { return (flags & flag) != 0; }
  /// True when the paper has a size to plot on: both sides positive and
  /// finite (a layout never set up stores 0 x 0 mm).
  bool HasUsablePaper() const {
    return paperWidth > 0 && paperHeight > 0 && std::isfinite(paperWidth) &&
           std::isfinite(paperHeight);
  }
  void Set(PlotFlag flag, bool on) { flags = on ? (flags | flag) : (flags & ~flag); }
};

}  // namespace sheafwork::embedded
