#include "embedded/render/linetypes.h"

#include <cmath>

namespace sheafwork::embedded {

const Linetype* PatternNamed(const Drawing& drawing, std::string_view name) {
  if (name.empty()) return nullptr;
  const Linetype* linetype = drawing.FindLinetype(name);
  if (linetype == nullptr) return nullptr;
  bool gap = false;
  double length = 0;
  for (const double d : linetype->dashes) {
    gap = gap || d < 0;
    length += std::fabs(d);
  }
  return gap && length > 0 && std::isfinite(length) ? linetype : nullptr;
}

const Linetype* EntityPattern(const Drawing& drawing, std::string_view name,
                              const Linetype* layerPattern, const Linetype* blockPattern) {
  const std::string key = NameKey(name);
  if (key.empty() || key == "BYLAYER") return layerPattern;
  if (key == "BYBLOCK") return blockPattern;
  return PatternNamed(drawing, name);
}

}  // namespace sheafwork::embedded
