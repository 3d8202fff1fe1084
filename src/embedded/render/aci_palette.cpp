#include "embedded/render/aci_palette.h"

#include <array>

namespace sheafwork::embedded {

namespace {

constexpr std::uint32_t Rgb(int r, int g, int b) {
  return (static_cast<std::uint32_t>(r) << 16) | (static_cast<std::uint32_t>(g) << 8) |
         static_cast<std::uint32_t>(b);
}

// Hue in degrees (a multiple of 15), value 0..255, saturation full or half;
// components are truncated, as the usual tables have them.
constexpr std::uint32_t HsvColor(int hue, int value, bool half) {
  const int sector = hue / 60;
  const double f = (hue % 60) / 60.0;
  const double v = value;
  const double s = half ? 0.5 : 1.0;
  const int p = static_cast<int>(v * (1 - s));
  const int q = static_cast<int>(v * (1 - s * f));
  const int t = static_cast<int>(v * (1 - s * (1 - f)));
  switch (sector) {
    case 0:
      return Rgb(value, t, p);
    case 1:
      return Rgb(q, value, p);
    case 2:
      return Rgb(p, value, t);
    case 3:
      return Rgb(p, q, value);
    case 4:
      return Rgb(t, p, value);
    default:
      return Rgb(value, p, q);
  }
}

// 1..9 fixed; 10..249 are 24 hues of 10 entries (five brightness levels,
// each at full then half saturation); 250..255 greys.
constexpr std::array<std::uint32_t, 256> MakePaperPalette() {
  std::array<std::uint32_t, 256> table{};
  const std::uint32_t fixed[10] = {
      Rgb(0, 0, 0),   Rgb(255, 0, 0),   Rgb(255, 255, 0), Rgb(0, 255, 0),     Rgb(0, 255, 255),
      Rgb(0, 0, 255), Rgb(255, 0, 255), Rgb(0, 0, 0),     Rgb(128, 128, 128), Rgb(192, 192, 192)};
  for (int i = 0; i < 10; ++i) table[i] = fixed[i];
  const int levels[5] = {255, 165, 127, 76, 38};
  for (int i = 10; i < 250; ++i) {
    const int hue = (i - 10) / 10 * 15;
    const int j = (i - 10) % 10;
    table[i] = HsvColor(hue, levels[j / 2], (j % 2) == 1);
  }
  const int greys[6] = {51, 91, 132, 173, 214, 255};
  for (int i = 0; i < 6; ++i) table[250 + i] = Rgb(greys[i], greys[i], greys[i]);
  return table;
}

constexpr std::array<std::uint32_t, 256> kPaperPalette = MakePaperPalette();

}  // namespace

std::uint32_t AciToRgb(int index) {
  if (index < 1 || index > 255) return 0;
  return kPaperPalette[static_cast<std::size_t>(index)];
}

}  // namespace sheafwork::embedded
