#include "embedded/render/plot_style_look.h"

#include <cmath>
#include <cstdlib>

#include "embedded/render/properties.h"

namespace sheafwork::embedded {

namespace {

constexpr int kWhiteOnBlack = 7;

int ValidAci(int number) {
  const int n = std::abs(number);  // a negative number marks a layer that is off
  return n >= 1 && n <= 255 ? n : kWhiteOnBlack;
}

}  // namespace

int LayerAci(const Layer* layer) {
  return layer != nullptr ? ValidAci(layer->color) : kWhiteOnBlack;
}

int EntityAci(const EntityProps& props, int layerAci, int blockAci) {
  if (props.color == kColorByLayer) return layerAci;
  if (props.color == kColorByBlock) return blockAci;
  return ValidAci(props.color);
}

PlotStylePen PlottedPen(const PlotStyleTable* table, int aci, std::uint32_t rgb,
                        double lineweightMm) {
  if (table == nullptr) return {rgb, lineweightMm};
  return table->Apply(aci, rgb, lineweightMm);
}

double ThinnestVisibleLineMm(double dotsPerMm) {
  if (!(dotsPerMm > 0) || !std::isfinite(dotsPerMm)) return kThinLineMm;
  return 1.0 / dotsPerMm;
}

}  // namespace sheafwork::embedded
