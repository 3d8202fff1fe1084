#include "embedded/render/properties.h"

#include <algorithm>
#include <cstdlib>

#include "embedded/render/aci_palette.h"
#include "embedded/render/plot_style_look.h"

namespace sheafwork::embedded {

bool IsDefpointsLayer(std::string_view name) { return NameKey(name) == "DEFPOINTS"; }

LayerLook LookOfLayer(const Layer* layer, std::string_view name, bool frozenHere) {
  LayerLook look;
  look.frozen = frozenHere || (layer != nullptr && layer->frozen);
  look.aci = LayerAci(layer);
  look.visible = !look.frozen && !IsDefpointsLayer(name) &&
                 (layer == nullptr || (layer->on && layer->plottable));
  if (layer != nullptr) {
    look.rgb = layer->trueColor ? (*layer->trueColor & 0xFFFFFFu)
                                : AciToRgb(std::abs(static_cast<int>(layer->color)));
    look.lineweightMm = layer->lineweight >= 0 ? layer->lineweight / 100.0 : kDefaultLineweightMm;
  } else {
    look.rgb = AciToRgb(7);
  }
  return look;
}

std::uint32_t EntityRgb(const EntityProps& props, std::uint32_t layerRgb, std::uint32_t blockRgb) {
  if (props.trueColor) return *props.trueColor & 0xFFFFFFu;
  if (props.color == kColorByLayer) return layerRgb;
  if (props.color == kColorByBlock) return blockRgb;
  return AciToRgb(std::abs(static_cast<int>(props.color)));
}

double EntityLineweightMm(std::int16_t lineweight, double layerMm, double blockMm) {
  switch (lineweight) {
    case kLineweightByLayer:
      return layerMm;
    case kLineweightByBlock:
      return blockMm;
    case kLineweightDefault:
      return kDefaultLineweightMm;
    default:
      return lineweight >= 0 ? lineweight / 100.0 : kDefaultLineweightMm;
  }
}

double LineweightPolicy::PenWidthMm(double lineweightMm) const {
  if (!plotLineweights || lineweightMm <= 0) return thinMm;
  return std::max(lineweightMm * scale, thinMm);
}

}  // namespace sheafwork::embedded
