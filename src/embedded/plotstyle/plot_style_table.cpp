#include "embedded/plotstyle/plot_style_table.h"

#include <algorithm>
#include <cmath>

namespace sheafwork::embedded {

namespace {

constexpr std::array<double, 27> kStandardLineweights = {
    0.00, 0.05, 0.09, 0.10, 0.13, 0.15, 0.18, 0.20, 0.25, 0.30, 0.35, 0.40, 0.45, 0.50,
    0.53, 0.60, 0.65, 0.70, 0.80, 0.90, 1.00, 1.06, 1.20, 1.40, 1.58, 2.00, 2.11};

std::uint32_t Channel(std::uint32_t rgb, int shift) { return (rgb >> shift) & 0xFFu; }

std::uint32_t Rgb(std::uint32_t r, std::uint32_t g, std::uint32_t b) {
  return (r << 16) | (g << 8) | b;
}

}  // namespace

std::int32_t EncodePlotStyleColor(std::uint32_t rgb, std::uint8_t kind) {
  return static_cast<std::int32_t>((std::uint32_t{kind} << 24) | (rgb & 0xFFFFFFu));
}

std::optional<std::uint32_t> PlotStyleEntry::PenRgb() const {
  if (color == kPlotStyleObjectColor || color == kPlotStyleObjectColor2) return std::nullopt;
  const auto bits = static_cast<std::uint32_t>(modeColor.value_or(color));
  if (modeColor == kPlotStyleObjectColor || modeColor == kPlotStyleObjectColor2) {
    return std::nullopt;
  }
  const std::uint32_t kind = bits >> 24;
  if (kind == kColorKindByLayer || kind == kColorKindByBlock) return std::nullopt;
  return bits & 0xFFFFFFu;
}

std::vector<double> StandardPlotStyleLineweights() {
  return {kStandardLineweights.begin(), kStandardLineweights.end()};
}

PlotStyleTable::PlotStyleTable() : lineweights(StandardPlotStyleLineweights()) {
  for (int i = 0; i < kPlotStyleCount; ++i) {
    PlotStyleEntry& entry = entries[static_cast<std::size_t>(i)];
    entry.name = "Color_" + std::to_string(i + 1);
    entry.localizedName = entry.name;
  }
}

std::optional<double> PlotStyleTable::EntryLineweightMm(const PlotStyleEntry& entry) const {
  if (entry.lineweight < 0 || static_cast<std::size_t>(entry.lineweight) >= lineweights.size()) {
    return std::nullopt;
  }
  const double mm = lineweights[static_cast<std::size_t>(entry.lineweight)];
  if (!(mm > 0) || !std::isfinite(mm)) return std::nullopt;
  return mm;
}

PlotStylePen PlotStyleTable::Apply(int aci, std::uint32_t rgb, double lineweightMm) const {
  PlotStylePen pen{rgb & 0xFFFFFFu, lineweightMm};
  if (aci < 1 || aci > kPlotStyleCount) return pen;
  const PlotStyleEntry& entry = entries[static_cast<std::size_t>(aci - 1)];
  if (const auto own = entry.PenRgb()) pen.rgb = *own;
  if ((entry.colorPolicy & kPolicyGrayscale) != 0) pen.rgb = GrayRgb(pen.rgb);
  pen.rgb = ScreenedRgb(pen.rgb, entry.screen);
  if (const auto mm = EntryLineweightMm(entry)) pen.lineweightMm = *mm;
  return pen;
}

std::uint32_t ScreenedRgb(std::uint32_t rgb, int screen) {
  const int s = std::clamp(screen, 0, 100);
  if (s == 100) return rgb & 0xFFFFFFu;
  const auto fade = [s](std::uint32_t c) {
    return static_cast<std::uint32_t>(std::lround(255.0 - (255.0 - c) * s / 100.0));
  };
  return Rgb(fade(Channel(rgb, 16)), fade(Channel(rgb, 8)), fade(Channel(rgb, 0)));
}

std::uint32_t GrayRgb(std::uint32_t rgb) {
  const double y = 0.299 * Channel(rgb, 16) + 0.587 * Channel(rgb, 8) + 0.114 * Channel(rgb, 0);
  const auto g = static_cast<std::uint32_t>(std::clamp(std::lround(y), 0L, 255L));
  return Rgb(g, g, g);
}

PlotStyleTable MonochromePlotStyleTable() {
  PlotStyleTable table;
  table.description = "Monochrome - every colour plots black";
  for (PlotStyleEntry& entry : table.entries) {
    entry.color = EncodePlotStyleColor(0x000000);
    entry.modeColor = entry.color;
    entry.screen = 100;
    entry.lineweight = kPlotStyleObjectLineweight;
  }
  return table;
}

}  // namespace sheafwork::embedded
