#pragma once
// How an entity's colour, lineweight and pen width follow from the entity,
// its layer and the block reference it sits in.

#include <cstdint>
#include <string>
#include <string_view>

#include "embedded/model/drawing.h"

namespace sheafwork::embedded {

/// The lineweight of "default": 0.25 mm.
inline constexpr double kDefaultLineweightMm = 0.25;
/// The width of lines whose weight is 0 or not plotted: thin, but a real
/// width on the sheet (never a device hairline).
inline constexpr double kThinLineMm = 0.1;

/// The layer that never plots, whatever its state.
bool IsDefpointsLayer(std::string_view name);

/// What a layer gives the entities on it.
struct LayerLook {
  bool frozen = false;  ///< frozen, also in the current viewport
  bool visible = true;  ///< on, thawed, plottable, not Defpoints
  std::uint32_t rgb = 0;
  double lineweightMm = kDefaultLineweightMm;
  int aci = 7;                         ///< its colour number, for plot style tables
  const Linetype* linetype = nullptr;  ///< its dash pattern, null for continuous
  std::string name;                    ///< as the drawing shows it ("XREF|name" for a reference's)
};

/// `layer` may be null (a layer missing from the table plots like a default
/// layer); `frozenHere` says the current viewport freezes it.
LayerLook LookOfLayer(const Layer* layer, std::string_view name, bool frozenHere);

/// 0xRRGGBB of an entity: true colour, else by layer, by block (`blockRgb`,
/// black outside any block) or its colour number.
std::uint32_t EntityRgb(const EntityProps& props, std::uint32_t layerRgb, std::uint32_t blockRgb);

/// Lineweight in mm: by layer, by block (`blockMm`), default or its own.
double EntityLineweightMm(std::int16_t lineweight, double layerMm, double blockMm);

/// How lineweights become pen widths for one plot.
struct LineweightPolicy {
  bool plotLineweights = true;  ///< the settings plot lineweights or plot styles
  double scale = 1;             ///< lineweights scaled with the plot scale
  double thinMm = kThinLineMm;  ///< the device's thinnest visible line

  double PenWidthMm(double lineweightMm) const;
};

}  // namespace sheafwork::embedded
